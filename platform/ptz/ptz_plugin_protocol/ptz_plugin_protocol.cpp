#include "ptz_plugin_protocol/ptz_plugin_protocol.h"

#include <mutex>

namespace ptz_plugin_protocol {

void registerMetaTypes()
{
    static std::once_flag once;
    std::call_once(once, [] {
        qRegisterMetaType<CruiseType>("CruiseType");
        qRegisterMetaType<CruiseType>("ptz_plugin_protocol::CruiseType");
        qRegisterMetaType<PTZPresetType>("PTZPresetType");
        qRegisterMetaType<PTZPresetType>("ptz_plugin_protocol::PTZPresetType");
        qRegisterMetaType<PTZControlCommand>("PTZControlCommand");
        qRegisterMetaType<PTZControlCommand>("ptz_plugin_protocol::PTZControlCommand");
        qRegisterMetaType<PresetInfo>("PresetInfo");
        qRegisterMetaType<PresetInfo>("ptz_plugin_protocol::PresetInfo");
        qRegisterMetaType<PresetControlRequest>("PresetControlRequest");
        qRegisterMetaType<PresetControlRequest>("ptz_plugin_protocol::PresetControlRequest");
        qRegisterMetaType<CruisePoint>("CruisePoint");
        qRegisterMetaType<CruisePoint>("ptz_plugin_protocol::CruisePoint");
        qRegisterMetaType<CruiseInfo>("CruiseInfo");
        qRegisterMetaType<CruiseInfo>("ptz_plugin_protocol::CruiseInfo");
        qRegisterMetaType<CruiseControlRequest>("CruiseControlRequest");
        qRegisterMetaType<CruiseControlRequest>("ptz_plugin_protocol::CruiseControlRequest");
        qRegisterMetaType<QVector<PresetInfo>>("QVector<PresetInfo>");
        qRegisterMetaType<QVector<PresetInfo>>("QVector<ptz_plugin_protocol::PresetInfo>");
        qRegisterMetaType<QVector<CruiseInfo>>("QVector<CruiseInfo>");
        qRegisterMetaType<QVector<CruiseInfo>>("QVector<ptz_plugin_protocol::CruiseInfo>");
        qRegisterMetaType<std::list<CruisePoint>>("std::list<CruisePoint>");
        qRegisterMetaType<std::list<CruisePoint>>("std::list<ptz_plugin_protocol::CruisePoint>");
        qRegisterMetaType<std::vector<CruisePoint>>("std::vector<CruisePoint>");
        qRegisterMetaType<std::vector<CruisePoint>>("std::vector<ptz_plugin_protocol::CruisePoint>");
        qRegisterMetaType<QVector<int>>("QVector<int>");

        qRegisterMetaType<GetCruiseRouteResponse>();
        qRegisterMetaType<SetParkActionRequest>();
        qRegisterMetaType<GetParkActionRequest>();
        qRegisterMetaType<GetParkActionResponse>();
        qRegisterMetaType<SetPatrolRecoverConfigRequest>();
        qRegisterMetaType<GetPatrolRecoverConfigRequest>();
        qRegisterMetaType<GetPatrolRecoverConfigResponse>();
        qRegisterMetaType<SetAutoTrackRequest>();
        qRegisterMetaType<GetAutoTrackRequest>();
        qRegisterMetaType<GetUserPtzPermRequest>();
        qRegisterMetaType<GetUserPtzPermResponse>();
        qRegisterMetaType<PTZLockStatusRequest>();
        qRegisterMetaType<PTZLockStatusResponse>();
        qRegisterMetaType<GetPresetRequest>();
        qRegisterMetaType<GetPresetResponse>();
        qRegisterMetaType<AddPresetRequest>();
        qRegisterMetaType<AddPresetResponse>();
        qRegisterMetaType<UpdatePresetRequest>();
        qRegisterMetaType<UpdatePresetResponse>();
        qRegisterMetaType<DeletePresetRequest>();
        qRegisterMetaType<DeletePresetResponse>();
        qRegisterMetaType<GetCruisesRequest>();
        qRegisterMetaType<GetCruiseResponse>();
        qRegisterMetaType<AddCruiseRequest>();
        qRegisterMetaType<AddCruiseResponse>();
        qRegisterMetaType<UpdateCruiseRequest>();
        qRegisterMetaType<UpdateCruiseResponse>();
        qRegisterMetaType<DeleteCruiseRequest>();
        qRegisterMetaType<DeleteCruiseResponse>();
    });
}

} // namespace ptz_plugin_protocol
