// Figures of the preset tab: filling the list with 256 presets (model behind its
// proxy and a shown view, as in the panel) and one keystroke in the name filter
// over 256 rows. Prints medians; runs offscreen unless a platform is given.

#include "preset/cpresettablemodel.h"
#include "preset/cpresettableview.h"
#include "preset/csortpresetfiltermodel.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace PreviewPTZControl;
using ptz_plugin_protocol::PresetInfo;

namespace {

constexpr int kRuns = 101;

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0.0 : values[values.size() / 2];
}

QVector<PresetInfo> MakePresets(int count)
{
    QVector<PresetInfo> presets;
    presets.reserve(count);
    for (int n = 1; n <= count; ++n) {
        PresetInfo p;
        p.preset_index = n;
        p.preset_type = n % 4 == 0 ? ptz_plugin_protocol::PRESET_TYPE_VIRTUAL : ptz_plugin_protocol::PRESET_TYPE_DEVICE;
        p.preset_name = QStringLiteral("Preset%1 gate %2").arg(n).arg(n % 7).toStdString();
        presets << p;
    }
    return presets;
}

struct Tab
{
    CPresetTableModel model{1.0};
    CSortPresetFilterModel proxy;
    CPresetTableView view;

    Tab()
    {
        proxy.setSourceModel(&model);
        proxy.setFilterKeyColumn(1);
        proxy.setDynamicSortFilter(true);
        proxy.setFilterCaseSensitivity(Qt::CaseInsensitive);
        view.setModel(&proxy);
        view.resize(320, 480);
        view.show();
        QCoreApplication::processEvents();
    }
};

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QLoggingCategory::setFilterRules(QStringLiteral("ZephClientInfo.info=false"));
    QApplication app(argc, argv);

    const QVector<PresetInfo> presets = MakePresets(256);

    std::vector<double> fill_first;
    std::vector<double> fill_again;
    for (int run = 0; run < kRuns; ++run) {
        Tab tab;
        QElapsedTimer timer;
        timer.start();
        tab.model.SetPresetType(ptz_plugin_protocol::PRESET_TYPE_DEVICE);
        tab.model.UpdatePresetList(presets, true);
        fill_first.push_back(timer.nsecsElapsed() / 1e6);
        // A later answer for the same camera updates the rows in place.
        timer.restart();
        tab.model.UpdatePresetList(presets, true);
        fill_again.push_back(timer.nsecsElapsed() / 1e6);
    }

    Tab tab;
    tab.model.UpdatePresetList(presets, true);
    QCoreApplication::processEvents();
    const QStringList keystrokes{QStringLiteral("g"),      QStringLiteral("ga"),   QStringLiteral("gat"),
                                 QStringLiteral("gate 3"), QStringLiteral("gate"), QString()};
    std::vector<double> keystroke;
    for (int run = 0; run < kRuns; ++run) {
        for (const QString &text : keystrokes) {
            QElapsedTimer timer;
            timer.start();
            tab.proxy.setFilterFixedString(text);
            keystroke.push_back(timer.nsecsElapsed() / 1e6);
        }
    }

    std::printf("preset list fill, 256 presets into an empty list: median %.3f ms (target <= 5 ms, %d runs)\n",
                Median(fill_first), kRuns);
    std::printf("preset list update, 256 known presets:           median %.3f ms (%d runs)\n", Median(fill_again),
                kRuns);
    std::printf("name filter keystroke over 256 rows:             median %.3f ms (target <= 1 ms, %zu keystrokes)\n",
                Median(keystroke), keystroke.size());
    return 0;
}
