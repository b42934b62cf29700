#include "quillon/cframe.h"

namespace Quillon {

CFrame::CFrame(QWidget *parent, Qt::WindowFlags f)
    : QFrame(parent, f)
{
}

CFrame::~CFrame() = default;

} // namespace Quillon
