#include "../panel/paneltestenv.h"

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

namespace {
const QString kFishEye = QString::fromLatin1(demo::kFishEye);
} // namespace

// Presets of a fish-eye picture belong to the software PTZ: they keep and restore
// the cut-out view and never reach the device.
class TestPreviewPTZWndFishEyePresets : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void addAndCallKeepTheViewOffTheDevice();

private:
    template <typename T>
    T *child(const char *name) const
    {
        return m_panel->findChild<T *>(QString::fromLatin1(name));
    }

    PanelTestEnv m_env;
    CPreviewPTZWnd *m_panel = nullptr;
    zeph_ptz_controller::CSimpleFishEyeController *m_fishEye = nullptr;
};

void TestPreviewPTZWndFishEyePresets::init()
{
    m_env.setUp();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
    m_panel = new CPreviewPTZWnd(0, true, false);
    m_panel->SetPTZController(m_env.controller(), nullptr);
    m_fishEye = new zeph_ptz_controller::CSimpleFishEyeController(4);
    m_panel->SetFishEyeController(m_fishEye);
}

void TestPreviewPTZWndFishEyePresets::cleanup()
{
    delete m_panel;
    m_panel = nullptr;
    delete m_fishEye;
    m_fishEye = nullptr;
    m_env.tearDown();
    zeph_ptz_controller::CPTZGetController::ClearCachedData();
}

void TestPreviewPTZWndFishEyePresets::addAndCallKeepTheViewOffTheDevice()
{
    m_panel->SetCamera(QString(), kFishEye, false, false);
    m_fishEye->SetFishEyeWndOpen(true);
    emit m_fishEye->SignalFishEyeWndOpen(true);
    QCOMPARE(m_panel->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
    auto *add = child<QPushButton>("ptz_add_preset_btn_");
    QTRY_VERIFY(add->isEnabled());

    m_fishEye->SetSemisphereFishEyePTZPos(40.0, -30.0, 2.0);
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
    QCOMPARE(list->index(0, 2).data(Quillon::ItemFirstStateRole).toInt(), int(ptz_plugin_protocol::PRESET_TYPE_FISHEYE));
    QTRY_COMPARE(child<QLabel>("ptz_preset_label_")->text(), QStringLiteral("(1/256)"));

    m_fishEye->SetSemisphereFishEyePTZPos(200.0, -60.0, 1.0);
    emit view->SignalPlayPreset(list->index(0, 2));
    double pan = 0, tilt = 0, zoom = 0;
    m_fishEye->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
    QCOMPARE(pan, 40.0);
    QCOMPARE(tilt, -30.0);
    QCOMPARE(zoom, 2.0);

    const auto ops = m_env.operations(kFishEye);
    QVERIFY(!ops.contains(DriverOperation::SetPreset));
    QVERIFY(!ops.contains(DriverOperation::GotoPreset));
}

QTEST_MAIN(TestPreviewPTZWndFishEyePresets)
#include "tst_cpreviewptzwnd_fisheyepresets.moc"
