#include "quillon/csortfiltermodel.h"

#include <QCollator>
#include <QLocale>

namespace Quillon {

CSortFilterModel::CSortFilterModel(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    setSortCaseSensitivity(Qt::CaseInsensitive);
}

CSortFilterModel::~CSortFilterModel() = default;

namespace {

// Numeric mode needs a real locale: the C locale compares code units only.
QCollator NaturalCollator()
{
    QLocale locale;
    if (locale.language() == QLocale::C)
        locale = QLocale(QLocale::English, QLocale::UnitedStates);
    QCollator collator(locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

int Sign(int value)
{
    return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

} // namespace

int CSortFilterModel::NaturalCompare(const QString &left, const QString &right)
{
    // One collator per thread: sorting may run on any thread, and building one is not cheap.
    thread_local const QCollator collator = NaturalCollator();
    if (const int c = collator.compare(left, right))
        return Sign(c);
    // Equal to the collator ("a7" and "a07", "A" and "a"): shorter first, then
    // by code unit, so the order stays total and stable.
    if (left.size() != right.size())
        return left.size() < right.size() ? -1 : 1;
    return Sign(QString::compare(left, right, Qt::CaseSensitive));
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
