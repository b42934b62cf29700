#include "zeph_ptz_controller/iptzfisheyecontroller.h"

namespace zeph_ptz_controller {

IPTZFishEyeController::IPTZFishEyeController(QObject *parent)
    : QObject(parent)
{
}

IPTZFishEyeController::~IPTZFishEyeController() = default;

} // namespace zeph_ptz_controller
