#pragma once

// The test site plus builders of the controller library's request records.
#include "support/testenv.h"

#include "site_store/demosite.h"

#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QSignalSpy>

#include <vector>

// Kept in a namespace so programs with helpers of the same names are not disturbed.
namespace ptz_test {

inline zeph_ptz_controller::CPTZStateStorageManager *Storage()
{
    return zeph_ptz_controller::CPTZStateStorageManager::Instance();
}

inline ptz_plugin_protocol::PTZControlCommand Cmd(const QString &camera, uint32_t code, uint32_t action, int speed = 20,
                                                  int param = 0)
{
    ptz_plugin_protocol::PTZControlCommand c;
    c.camera_index_code = camera.toStdString();
    c.command = code;
    c.action = action;
    c.speed = speed;
    c.param = param;
    return c;
}

inline ptz_plugin_protocol::PresetControlRequest
PresetRequest(const std::string &operation, int number, const std::string &name = std::string(),
              const QString &camera = QString::fromLatin1(site_store::demo::kSpeedDome))
{
    ptz_plugin_protocol::PresetControlRequest r;
    r.operation = operation;
    r.camera_index_code = camera.toStdString();
    r.preset_index = number;
    r.preset_name = name;
    return r;
}

// `count` points over presets 1, 2, ... (wrapping after 256).
inline std::vector<ptz_plugin_protocol::CruisePoint> CruisePoints(int count, int speed = 10, int dwell = 15)
{
    std::vector<ptz_plugin_protocol::CruisePoint> out;
    for (int i = 0; i < count; ++i) {
        ptz_plugin_protocol::CruisePoint p;
        p.preset_index = uint32_t(i % 256 + 1);
        p.speed = speed;
        p.dwell_time = dwell;
        out.push_back(p);
    }
    return out;
}

inline ptz_plugin_protocol::CruiseControlRequest
CruiseRequest(const std::string &operation, int number, int action, int points = 2,
              const QString &camera = QString::fromLatin1(site_store::demo::kSpeedDome))
{
    ptz_plugin_protocol::CruiseControlRequest r;
    r.camera_index_code = camera.toStdString();
    r.operation = operation;
    r.cruise_index = number;
    r.action = action;
    r.points = CruisePoints(points, 20, 5);
    return r;
}

// Every answer signal of a controller; each request gets exactly one of them.
struct Answers
{
    using C = zeph_ptz_controller::CUniversalPTZController;
    explicit Answers(C *c)
        : ok(c, &C::SignalExecutionSucceeded)
        , failed(c, &C::SignalExecutionFailed)
        , tips(c, &C::SignalMessageTipNeeded)
        , presets(c, &C::signalPresetFinished)
        , cruises(c, &C::signalCruiseFinished)
        , park(c, &C::SignalParkActionFinished)
        , recover(c, &C::SignalCruiseRecoverFinished)
        , track(c, &C::SignalPTZAutoTrackState)
        , position(c, &C::SignalPosition3DFinished)
    {
    }
    int count() const
    {
        return ok.count() + failed.count() + presets.count() + cruises.count() + park.count() + recover.count()
               + track.count() + position.count();
    }
    // The failure text: the error tip, else the one a preset answer carried.
    QString error() const
    {
        for (const auto &tip : tips) {
            if (tip.at(1).toInt() == 0)
                return tip.at(0).toString();
        }
        return presets.isEmpty() ? QString() : presets.at(0).at(1).toString();
    }
    QSignalSpy ok, failed, tips, presets, cruises, park, recover, track, position;
};

} // namespace ptz_test
