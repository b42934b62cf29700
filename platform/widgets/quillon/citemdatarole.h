#pragma once

#include "quillon/quillon_export.h"

#include <QObject>

namespace Quillon {
Q_NAMESPACE_EXPORT(QUILLON_EXPORT)

// Item-data roles understood by the library's views and delegates. The numbers
// are a contract with every model that feeds them: never renumber.
enum CItemDataRole {
    ItemNumberRole = 306,                      // int: number of the object the row stands for
    ItemInertPixmapRole = 356,                 // pixmap that is shown but is no action; clicks reporting it are ignored
    ItemTextRole = 362,                        // QString: text painted for the item (falls back to Qt::DisplayRole)
    ItemTextColorRole = 363,                   // QColor: colour of that text
    ColumnWidthRole = 388,                     // int, horizontal header data: width of the column in pixels
    ItemRunningRole = 430,                     // bool: the row's object is running
    ItemFirstRightPixmapRole = 436,            // QPixmap: first of the three right-aligned action pixmaps
    ItemSecondRightPixmapRole = 437,           // QPixmap: second action pixmap
    ItemThirdRightPixmapRole = 438,            // QPixmap: third (right-most) action pixmap
    ItemLeadingPixmapRole = 441,               // QPixmap: type pixmap at the start of the row
    ItemFirstRightPixmapTipRole = 466,         // QString: tool tip of the first action pixmap
    ItemSecondRightPixmapTipRole = 467,        // QString: tool tip of the second action pixmap
    ItemThirdRightPixmapTipRole = 468,         // QString: tool tip of the third action pixmap
    ItemExtraTextRole = 471,                   // QString: secondary text kept with the item
    ItemFirstStateRole = Qt::UserRole + 1001,  // 1257: free state slots for the model's own use
    ItemSecondStateRole = Qt::UserRole + 1002, // 1258
    ItemThirdStateRole = Qt::UserRole + 1003,  // 1259
};
Q_ENUM_NS(CItemDataRole)

// The tip role that belongs to one of the three action pixmap roles, or -1.
inline int RightPixmapTipRole(int pixmapRole)
{
    switch (pixmapRole) {
    case ItemFirstRightPixmapRole:
        return ItemFirstRightPixmapTipRole;
    case ItemSecondRightPixmapRole:
        return ItemSecondRightPixmapTipRole;
    case ItemThirdRightPixmapRole:
        return ItemThirdRightPixmapTipRole;
    default:
        return -1;
    }
}

} // namespace Quillon
