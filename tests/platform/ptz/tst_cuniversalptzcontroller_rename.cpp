// A "SetPreset" for a number the camera already has is the edit dialog
// renaming the preset: the name changes, the stored position does not.
#include "support/ptztestenv.h"

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QSignalSpy>
#include <QTest>

using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CUniversalPTZController;
using ptz_devices::DriverOperation;
namespace demo = site_store::demo;

namespace {

const QString kDome = QString::fromLatin1(demo::kSpeedDome);

PresetControlRequest Request(const char *operation, int number, const char *name = "")
{
    PresetControlRequest r;
    r.operation = operation;
    r.camera_index_code = kDome.toStdString();
    r.preset_index = number;
    r.preset_name = name;
    return r;
}

} // namespace

class TestUniversalPTZControllerRename : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_env.setUp(); }
    void cleanup() { m_env.tearDown(); }
    void renameKeepsThePosition();
    void freeNumberStoresTheCurrentView();

private:
    void preset(CUniversalPTZController &controller, const PresetControlRequest &request);

    PtzTestEnv m_env;
};

void TestUniversalPTZControllerRename::preset(CUniversalPTZController &controller, const PresetControlRequest &request)
{
    QSignalSpy finished(&controller, &CUniversalPTZController::signalPresetFinished);
    controller.Preset(request);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(1).toString(), QString());
}

void TestUniversalPTZControllerRename::renameKeepsThePosition()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    cam->setPosition(120.0, -30.0, 4.0);
    preset(controller, Request("SetPreset", 7, "Lobby door"));

    // The operator looks elsewhere, then edits the preset's name.
    cam->setPosition(300.0, -5.0, 1.0);
    cam->clearRequestLog();
    preset(controller, Request("SetPreset", 7, "Front door"));
    QCOMPARE(cam->requestLog().size(), 1);
    QCOMPARE(cam->requestLog().at(0).operation, DriverOperation::RenamePreset);
    const QVector<ptz_devices::DevicePreset> presets = cam->presets();
    QCOMPARE(presets.size(), 1);
    QCOMPARE(presets.at(0).name, QStringLiteral("Front door"));

    preset(controller, Request("GotoPreset", 7));
    m_env.clock()->advance(20000);
    const ptz_devices::DeviceStatus status = cam->status();
    QVERIFY2(qAbs(status.pan - 120.0) < 0.5, qPrintable(QString::number(status.pan)));
    QVERIFY2(qAbs(status.tilt + 30.0) < 0.5, qPrintable(QString::number(status.tilt)));
    QVERIFY2(qAbs(status.zoom - 4.0) < 0.05, qPrintable(QString::number(status.zoom)));
}

void TestUniversalPTZControllerRename::freeNumberStoresTheCurrentView()
{
    ptz_devices::CSimulatedCamera *cam = m_env.camera(demo::kSpeedDome);
    CUniversalPTZController controller;
    preset(controller, Request("SetPreset", 7, "Lobby door"));
    cam->setPosition(45.0, -10.0, 2.0);
    cam->clearRequestLog();
    preset(controller, Request("SetPreset", 8, "Yard"));
    QCOMPARE(cam->requestLog().at(0).operation, DriverOperation::SetPreset);
    const QVector<ptz_devices::DevicePreset> presets = cam->presets();
    QCOMPARE(presets.size(), 2);
    QVERIFY(qAbs(presets.at(1).pan - 45.0) < 0.01);
}

QTEST_GUILESS_MAIN(TestUniversalPTZControllerRename)
#include "tst_cuniversalptzcontroller_rename.moc"
