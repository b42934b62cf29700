#pragma once

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "ptz_plugin_protocol/ptzlimits.h"

#include <QString>
#include <QVector>

#include <optional>
#include <vector>

namespace ptz_devices {
class IPtzDriver;
struct DriverReply;
} // namespace ptz_devices

namespace zeph_ptz_controller {
namespace detail {

// One asynchronous read (or patrol write) of CPTZGetController, from its
// start to the signal that answers it.
struct GetQuery
{
    enum Kind {
        Presets,
        SyncPresets,
        AllPatrols,
        SinglePatrol,
        PatrolTypeOpen,
        PatrolTypeDelete,
        ExecPatrol,
        SetPatrol,
        Patterns,
        LockStatus,
        KindCount
    };

    Kind kind = Presets;
    QString camera;
    int cruise_index = 0;
    bool stop = false;
    int type = ptz_plugin_protocol::CRUISE_TYPE_NONE;
    std::vector<ptz_plugin_protocol::CruisePoint> points;
    quint64 generation = 0;

    bool ok = false;
    QString error;
    QVector<int> patterns;
    QVector<ptz_plugin_protocol::CruiseInfo> patrols;
    int min_dwell = ptz_plugin_protocol::kVirtualMinDwell;
    int max_dwell = ptz_plugin_protocol::kVirtualMaxDwell;
    QString cruise_id;
};

// What a query's camera offers when the query starts.
struct GetQueryContext
{
    ptz_devices::IPtzDriver *driver = nullptr;
    QString driver_error;                                  // why there is no driver, when there is none
    bool device = false;                                   // the driver keeps presets, patrols and patterns of its own
    std::optional<ptz_plugin_protocol::CruiseInfo> stored; // the client's record of the query's patrol slot
};

// A handler either answers the query at once (ok or error filled in, sent
// false) or hands it to the driver under the returned request id.
struct GetQueryStart
{
    bool sent = false;
    quint64 request_id = 0;
};

using GetQueryStarter = GetQueryStart (*)(GetQuery &query, const GetQueryContext &context);
using GetQueryReplyHandler = void (*)(GetQuery &query, const ptz_devices::DriverReply &reply);

// The handler of each query kind, indexed by GetQuery::Kind.
GetQueryStarter StarterFor(GetQuery::Kind kind);
GetQueryReplyHandler ReplyHandlerFor(GetQuery::Kind kind);

// The slots the camera reported, completed with the patrols the client keeps.
QVector<ptz_plugin_protocol::CruiseInfo> MergeStoredPatrols(const QString &camera,
                                                            const QVector<ptz_plugin_protocol::CruiseInfo> &device);

} // namespace detail
} // namespace zeph_ptz_controller
