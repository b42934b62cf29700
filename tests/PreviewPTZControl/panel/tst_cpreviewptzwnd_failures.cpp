#include "support/panelfixture.h"

#include "preset/cpresettableview.h"
#include "quillon/citemdatarole.h"
#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;

// Refusals of the camera reach the operator once, in the camera's words, and leave the
// buttons showing what the camera has.
class TestPreviewPTZWndFailures : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_env.bind(kDome);
        m_env.settle();
        m_tips = std::make_unique<QSignalSpy>(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded);
    }
    void cleanup()
    {
        m_tips.reset();
        m_env.tearDown();
    }

    void refusalIsShownOnceInTheCameraWords_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<DriverOperation>("operation");
        QTest::newRow("preset call") << "callPreset" << DriverOperation::GotoPreset;
        QTest::newRow("update PTZ") << "update" << DriverOperation::ListPresets;
        QTest::newRow("light on") << "lightOn" << DriverOperation::Light;
        QTest::newRow("light off") << "lightOff" << DriverOperation::Light;
        QTest::newRow("wiper off") << "wiperOff" << DriverOperation::Wiper;
        QTest::newRow("one-key focus") << "oneKeyFocus" << DriverOperation::OneKeyFocus;
    }
    void refusalIsShownOnceInTheCameraWords()
    {
        QFETCH(QString, action);
        QFETCH(DriverOperation, operation);
        const QString words = QStringLiteral("device busy (%1)").arg(action);
        auto *view = m_env.child<CPresetTableView>("m_pTreeViewPreset");

        if (action == QLatin1String("callPreset")) {
            dome()->setPreset(1, QStringLiteral("gate"));
            m_env.panel()->OnTabIndexChanged(0);
            QTRY_COMPARE(view->model()->rowCount(), 1);
        } else if (action == QLatin1String("lightOff")) {
            m_env.child<QPushButton>("m_pBtnLight")->click();
            QTRY_VERIFY(dome()->status().light);
        } else if (action == QLatin1String("wiperOff")) {
            m_env.child<QPushButton>("m_pBtnWiper")->click();
            QTRY_VERIFY(dome()->status().wiper);
        }
        m_env.settle();
        m_tips->clear();

        dome()->failOperation(operation, words);
        if (action == QLatin1String("callPreset"))
            m_env.panel()->OnRunPresetBtnClicked(view->model()->index(0, 2));
        else if (action == QLatin1String("update"))
            m_env.child<QPushButton>("ptr_update_ptz_btn_")->click();
        else if (action.startsWith(QLatin1String("light")))
            m_env.panel()->OnLight(action == QLatin1String("lightOn"));
        else if (action == QLatin1String("wiperOff"))
            m_env.panel()->OnWiper(false);
        else
            m_env.child<QPushButton>("m_pBtnKeyFocus")->click();

        QTRY_VERIFY(m_tips->count() >= 1);
        m_env.settle();
        QCOMPARE(m_tips->count(), 1);
        QCOMPARE(m_tips->at(0), (QVariantList{words, 0}));
    }
    void auxiliaryButtonFollowsTheCameraAfterARefusal_data()
    {
        QTest::addColumn<bool>("light");    // else the wiper
        QTest::addColumn<bool>("switchOn"); // the refused switch; the camera stays at !switchOn
        QTest::newRow("light on") << true << true;
        QTest::newRow("light off") << true << false;
        QTest::newRow("wiper on") << false << true;
        QTest::newRow("wiper off") << false << false;
    }
    void auxiliaryButtonFollowsTheCameraAfterARefusal()
    {
        QFETCH(bool, light);
        QFETCH(bool, switchOn);
        auto cameraHas = [&] { return light ? dome()->status().light : dome()->status().wiper; };

        CPreviewPTZWnd second(1, false, false);
        second.SetPTZController(m_env.controller(), nullptr);
        second.SetCamera(QString(), kDome, false, false);
        // Found while off, by the dark name: it blinks between two names while on.
        const QString name = light ? QStringLiteral("m_pBtnLight") : QStringLiteral("m_pBtnWiper");
        QPushButton *mine = m_env.panel()->findChild<QPushButton *>(name);
        QPushButton *theirs = second.findChild<QPushButton *>(name);
        if (!switchOn) {
            mine->click();
            QTRY_VERIFY(cameraHas());
            QTRY_VERIFY(theirs->isChecked());
        }
        m_env.settle();

        dome()->failOperation(light ? DriverOperation::Light : DriverOperation::Wiper, QStringLiteral("relay stuck"));
        mine->click();
        QCOMPARE(mine->isChecked(), switchOn); // shown at once, before the camera answers
        m_env.settle();

        QCOMPARE(cameraHas(), !switchOn);
        QCOMPARE(mine->isChecked(), !switchOn);
        auto *storage = zeph_ptz_controller::CPTZStateStorageManager::Instance();
        QCOMPARE(light ? storage->IsLight(kDome) : storage->IsWiper(kDome), !switchOn);
        QCOMPARE(theirs->isChecked(), !switchOn);
    }
    void updateButtonComesBackWhenTheScreenStops_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("stop work") << "stopWork";
        QTest::newRow("unbind") << "unbind";
        QTest::newRow("other camera") << "rebind";
        QTest::newRow("answer") << "answer";
    }
    void updateButtonComesBackWhenTheScreenStops()
    {
        QFETCH(QString, how);
        QSignalSpy enabled(m_env.panel(), &CPreviewPTZWnd::SignalUpdatePtzInfoEnabled);
        auto *update = m_env.child<QPushButton>("ptr_update_ptz_btn_");
        update->click();
        QCOMPARE(enabled.count(), 1);

        if (how == QLatin1String("stopWork"))
            m_env.panel()->StopWork();
        else if (how != QLatin1String("answer"))
            m_env.panel()->SetCamera(QString(), how == QLatin1String("rebind") ? kBasic : QString(), false, false);
        QTRY_COMPARE(enabled.count(), 2);
        m_env.settle();
        QCOMPARE(enabled.count(), 2);
        QCOMPARE(enabled.at(0).at(0).toBool(), false);
        QCOMPARE(enabled.at(1).at(0).toBool(), true);
        QCOMPARE(update->isEnabled(), m_env.panel()->IsWorking());
    }

private:
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }

    PanelFixture m_env;
    std::unique_ptr<QSignalSpy> m_tips;
};

QTEST_MAIN(TestPreviewPTZWndFailures)
#include "tst_cpreviewptzwnd_failures.moc"
