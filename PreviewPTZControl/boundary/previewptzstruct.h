#pragma once

namespace PreviewPTZControl {
namespace PreviewPTZStruct {

// Operations on the live-view picture that the panel asks the host to allow through the
// delegate-state callback. The values of the picture actions match the function numbers
// the panel exchanges with the live view.
enum PreviewWndOperate {
    OperateNone = 0,
    Operate3DPositioning = 1,
    OperateAutoScan = 2,
    OperateManualTracking = 4,
    OperateFaceCapture = 5,
    OperatePTZControl = 6,
};

} // namespace PreviewPTZStruct
} // namespace PreviewPTZControl
