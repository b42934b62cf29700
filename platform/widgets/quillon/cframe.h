#pragma once

#include "quillon/quillon_export.h"

#include <QFrame>

namespace Quillon {

// Base frame of the library's composite widgets; a distinct type so style
// sheets can address library frames without catching every QFrame.
class QUILLON_EXPORT CFrame : public QFrame
{
    Q_OBJECT
public:
    explicit CFrame(QWidget *parent = nullptr, Qt::WindowFlags f = Qt::WindowFlags());
    ~CFrame() override;
};

} // namespace Quillon
