#include "quillon/cstandarditem.h"

#include "quillon/citemdatarole.h"

namespace Quillon {

CStandardItem::CStandardItem() = default;

CStandardItem::CStandardItem(const QString &text)
    : QStandardItem(text)
{
}

CStandardItem::CStandardItem(const QIcon &icon, const QString &text)
    : QStandardItem(icon, text)
{
}

CStandardItem::~CStandardItem() = default;

int CStandardItem::type() const
{
    return Type;
}

QStandardItem *CStandardItem::clone() const
{
    return new CStandardItem(*this);
}

void CStandardItem::SetItemText(const QString &text)
{
    setText(text);
    setData(text, ItemTextRole);
}

QString CStandardItem::GetItemText() const
{
    const QVariant v = data(ItemTextRole);
    return v.isValid() ? v.toString() : text();
}

void CStandardItem::SetItemEnabled(bool enabled)
{
    setEnabled(enabled);
}

bool CStandardItem::IsItemEnabled() const
{
    return isEnabled();
}

} // namespace Quillon
