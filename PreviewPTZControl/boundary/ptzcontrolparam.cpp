#include "boundary/ptzcontrolparam.h"

namespace PreviewPTZControl {

PTZControlParam::PTZControlParam(const QString &camera_index_code, quint32 command, quint32 action, quint32 extra)
    : camera_index_code(camera_index_code)
    , command(command)
    , action(action)
    , extra(extra)
{
}

PTZControlParam::PTZControlParam(const QString &owner_index_code, const QString &camera_index_code, quint32 command,
                                 quint32 action, bool skip)
    : camera_index_code(camera_index_code)
    , owner_index_code(owner_index_code)
    , command(command)
    , action(action)
    , skip(skip)
{
}

} // namespace PreviewPTZControl
