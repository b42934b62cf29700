// Figures of the patrol path editor: opening a slot whose path has 32 points (the most a patrol
// holds) over a camera with 256 presets, into a shown editor, as the panel does on every open:
// the old drop-downs go, the dwell range is rebuilt, 96 drop-downs are placed. Also the first
// paint that follows. Prints medians; runs offscreen unless a platform is given.

#include "patrol/ccruisetableeditmodel.h"
#include "patrol/ccruisetableeditview.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace PreviewPTZControl;

namespace {

constexpr int kRuns = 51;

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

QVector<ptz_plugin_protocol::PresetInfo> MakePresets(int count)
{
    QVector<ptz_plugin_protocol::PresetInfo> presets;
    for (int n = 1; n <= count; ++n) {
        ptz_plugin_protocol::PresetInfo p;
        p.preset_index = n;
        p.preset_type = ptz_plugin_protocol::PRESET_TYPE_DEVICE;
        p.preset_name = n % 5 == 0 ? std::string() : "Gate " + std::to_string(n);
        presets << p;
    }
    return presets;
}

ptz_plugin_protocol::GetCruiseRouteResponse MakePath(int points)
{
    ptz_plugin_protocol::GetCruiseRouteResponse route;
    route.cruise_index = 1;
    route.cruise_type = ptz_plugin_protocol::CRUISE_TYPE_DEVICE;
    for (int i = 0; i < points; ++i) {
        ptz_plugin_protocol::CruisePoint p;
        p.preset_index = uint32_t(1 + (i * 7) % 256);
        p.speed = 1 + i % 40;
        p.dwell_time = 1 + i % 30;
        route.points.push_back(p);
    }
    return route;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("ZephClientInfo.info=false"));
    QApplication app(argc, argv);

    const auto presets = MakePresets(256);
    const auto path = MakePath(32);

    CCruiseTableEditView editor;
    editor.resize(320, 480);
    editor.show();
    editor.GetEditModel()->SetPresetType(ptz_plugin_protocol::PRESET_TYPE_DEVICE);
    QCoreApplication::processEvents();

    std::vector<double> open;
    std::vector<double> paint;
    for (int run = 0; run < kRuns; ++run) {
        QElapsedTimer timer;
        timer.start();
        editor.GetEditModel()->SetDwellRange(1, 30);
        editor.SetPath(path, presets);
        open.push_back(timer.nsecsElapsed() / 1e6);
        timer.restart();
        editor.viewport()->repaint();
        paint.push_back(timer.nsecsElapsed() / 1e6);
        // The drop-downs of the previous opening are deleted from the event loop, as in the panel.
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    std::printf("patrol editor, open a 32-point path over 256 presets: median %.3f ms (target <= 10 ms, %d runs)\n",
                Median(open), kRuns);
    std::printf("patrol editor, first repaint after opening:          median %.3f ms (%d runs)\n", Median(paint),
                kRuns);
    return 0;
}
