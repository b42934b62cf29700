#include "quillon/csortfiltermodel.h"

namespace Quillon {

CSortFilterModel::CSortFilterModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    setSortCaseSensitivity(Qt::CaseInsensitive);
}

CSortFilterModel::~CSortFilterModel() = default;

int CSortFilterModel::NaturalCompare(const QString &left, const QString &right)
{
    int i = 0;
    int j = 0;
    while (i < left.size() && j < right.size()) {
        const QChar a = left.at(i);
        const QChar b = right.at(j);
        if (a.isDigit() && b.isDigit()) {
            // Compare digit runs by value: skip leading zeros, then length, then digits.
            int si = i;
            int sj = j;
            while (si < left.size() && left.at(si) == QLatin1Char('0'))
                ++si;
            while (sj < right.size() && right.at(sj) == QLatin1Char('0'))
                ++sj;
            int ei = si;
            int ej = sj;
            while (ei < left.size() && left.at(ei).isDigit())
                ++ei;
            while (ej < right.size() && right.at(ej).isDigit())
                ++ej;
            if (ei - si != ej - sj)
                return (ei - si) < (ej - sj) ? -1 : 1;
            for (int k = 0; k < ei - si; ++k) {
                if (left.at(si + k) != right.at(sj + k))
                    return left.at(si + k) < right.at(sj + k) ? -1 : 1;
            }
            // Equal values: fewer leading zeros first, so the order stays total.
            if (si - i != sj - j)
                return (si - i) < (sj - j) ? -1 : 1;
            i = ei;
            j = ej;
            continue;
        }
        const QChar fa = a.toCaseFolded();
        const QChar fb = b.toCaseFolded();
        if (fa != fb)
            return fa < fb ? -1 : 1;
        ++i;
        ++j;
    }
    if (left.size() - i != right.size() - j)
        return (left.size() - i) < (right.size() - j) ? -1 : 1;
    // Same text apart from case: fall back to a case-sensitive order.
    const int c = QString::compare(left, right, Qt::CaseSensitive);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int CSortFilterModel::CompareValues(const QVariant &left, const QVariant &right) const
{
    const auto isNumber = [](const QVariant &v) {
        switch (v.userType()) {
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
        case QMetaType::ULongLong:
        case QMetaType::Double:
        case QMetaType::Float:
        case QMetaType::Bool:
            return true;
        default:
            return false;
        }
    };
    if (isNumber(left) && isNumber(right)) {
        const double a = left.toDouble();
        const double b = right.toDouble();
        return a < b ? -1 : (b < a ? 1 : 0);
    }
    return NaturalCompare(left.toString(), right.toString());
}

bool CSortFilterModel::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    const QVariant l = left.data(sortRole());
    const QVariant r = right.data(sortRole());
    if (l.userType() == QMetaType::QString && r.userType() == QMetaType::QString)
        return NaturalCompare(l.toString(), r.toString()) < 0;
    return QSortFilterProxyModel::lessThan(left, right);
}

} // namespace Quillon
