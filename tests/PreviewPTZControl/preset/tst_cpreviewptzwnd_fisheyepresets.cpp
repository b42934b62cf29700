#include "support/panelfixture.h"

#include "preset/caddpresetdialog.h"
#include "preset/cpresettableview.h"

#include "quillon/citemdatarole.h"
#include "quillon/cplaceholdlineedit.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
namespace demo = site_store::demo;

// Presets of a fish-eye picture belong to the software PTZ: they keep and restore
// the cut-out view and never reach the device.
class TestPreviewPTZWndFishEyePresets : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_env.setUp(true); }
    void cleanup() { m_env.tearDown(); }
    void addAndCallKeepTheViewOffTheDevice()
    {
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        emit m_env.fishEye()->SignalFishEyeWndOpen(true);
        QCOMPARE(m_env.panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
        auto *add = child<QPushButton>("ptz_add_preset_btn_");
        QTRY_VERIFY(add->isEnabled());

        m_env.fishEye()->SetSemisphereFishEyePTZPos(40.0, -30.0, 2.0);
        bool seen = false;
        QTimer::singleShot(0, qApp, [&seen]() {
            if (auto *dialog = qobject_cast<CAddPresetDialog *>(QApplication::activeModalWidget())) {
                seen = dialog->GetPresetIndex() == 1;
                dialog->GetNameEdit()->setText(QStringLiteral("Entrance"));
                dialog->GetConfirmButton()->click();
            }
        });
        add->click();
        QVERIFY(seen);

        auto *view = child<CPresetTableView>("m_pTreeViewPreset");
        QAbstractItemModel *list = view->model();
        QTRY_COMPARE(list->rowCount(), 1);
        QCOMPARE(list->index(0, 1).data().toString(), QStringLiteral("Entrance"));
        QCOMPARE(
            list->index(0, 2).data(Quillon::ItemFirstStateRole).toInt(), int(ptz_plugin_protocol::PRESET_TYPE_FISHEYE));
        QTRY_COMPARE(child<QLabel>("ptz_preset_label_")->text(), QStringLiteral("(1/256)"));

        m_env.fishEye()->SetSemisphereFishEyePTZPos(200.0, -60.0, 1.0);
        emit view->SignalPlayPreset(list->index(0, 2));
        double pan = 0, tilt = 0, zoom = 0;
        m_env.fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        QCOMPARE(pan, 40.0);
        QCOMPARE(tilt, -30.0);
        QCOMPARE(zoom, 2.0);

        const auto ops = m_env.operations(kFishEye);
        QVERIFY(!ops.contains(DriverOperation::SetPreset));
        QVERIFY(!ops.contains(DriverOperation::GotoPreset));
    }

private:
    template <typename T> T *child(const char *name) const { return m_env.child<T>(name); }

    PanelFixture m_env;
};

QTEST_MAIN(TestPreviewPTZWndFishEyePresets)
#include "tst_cpreviewptzwnd_fisheyepresets.moc"
