#pragma once

#include "previewptzcontrol_export.h"

#include <QString>
#include <QtGlobal>

namespace PreviewPTZControl {

// One command as the panel's buttons and stop operations describe it; turned into a
// controller command record by CPreviewPTZWnd::ExecutePTZControl.
struct PREVIEWPTZCONTROL_EXPORT PTZControlParam
{
    PTZControlParam() = default;
    // Short form used by the buttons: no owner, never skipped.
    PTZControlParam(const QString &camera_index_code, quint32 command, quint32 action, quint32 extra);
    // Long form used by the stop operations; skip = true records the stop locally only.
    PTZControlParam(const QString &owner_index_code, const QString &camera_index_code, quint32 command, quint32 action,
                    bool skip);

    QString camera_index_code;
    QString owner_index_code;
    quint32 command = 0;
    quint32 action = 0; // 0 start, 1 stop
    bool skip = false;
    quint32 extra = 0;
    // The command's own argument: the pattern number of the pattern commands.
    qint32 parameter = 0;
};

} // namespace PreviewPTZControl
