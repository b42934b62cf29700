#include "support/panelfixture.h"
#include "support/questions.h"

#include "preset/caddpresetdialog.h"
#include "preset/ceditpresetdialog.h"
#include "preset/cpresettableview.h"

#include "quillon/citemdatarole.h"
#include "quillon/cplaceholdlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"
#include "zeph_ptz_controller/csimplefisheyecontroller.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <optional>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using vs_ui_data_controller::CNomalMessageManager;
using Tip = QPair<QString, int>;

class TestPreviewPTZWndPresets : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_tips.clear();
        m_questions.emplace();
        bind();
    }
    void cleanup()
    {
        m_questions.reset();
        m_env.tearDown();
    }

    void addRenameAndDeleteReachTheCamera()
    {
        QCOMPARE(countText(), QStringLiteral("(0/256)"));
        dome()->setPosition(120.0, -30.0, 3.0);
        QVERIFY(addPreset(1, QStringLiteral("Gate")));
        QTRY_COMPARE(dome()->presets().size(), 1);
        QCOMPARE(dome()->presets().first().name, QStringLiteral("Gate"));
        QCOMPARE(dome()->presets().first().pan, 120.0);
        QTRY_COMPARE(names(), QStringList{"Gate"});
        QTRY_COMPARE(countText(), QStringLiteral("(1/256)"));
        // The next free number is offered next.
        QVERIFY(addPreset(2, QStringLiteral("Yard")));
        QTRY_COMPARE(countText(), QStringLiteral("(2/256)"));
        m_env.settle();

        bool seen = false;
        PanelFixture::answerNextDialog<CEditPresetDialog>(
            [](CEditPresetDialog *dialog) {
                QCOMPARE(dialog->GetPresetName(), QStringLiteral("Gate"));
                dialog->GetNameEdit()->setText(QStringLiteral("Новый"));
            },
            true, &seen);
        emit view()->SignalEditPreset(rowOf(1));
        QVERIFY(seen);
        QTRY_COMPARE(dome()->presets().value(0).name, QStringLiteral("Новый"));
        QTRY_COMPARE(names(), (QStringList{"Новый", "Yard"}));

        emit view()->SignalDeletePreset(rowOf(1));
        QCOMPARE(m_questions->asked, QStringList{"ConfirmToDelete"});
        QTRY_COMPARE(dome()->presets().size(), 1);
        QCOMPARE(dome()->presets().first().number, 2);
        QTRY_COMPARE(names(), QStringList{"Yard"});
        QTRY_COMPARE(countText(), QStringLiteral("(1/256)"));
    }
    void callRestoresPositionAndStopsRunningFunctions()
    {
        dome()->setPosition(200.0, -20.0, 2.0);
        QVERIFY(addPreset(1, QStringLiteral("Door")));
        QTRY_VERIFY(rowOf(1).isValid());
        m_env.settle();
        // Saving keeps auto-scan running.
        m_env.pressSection(CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        QVERIFY(addPreset(2, QStringLiteral("While scanning")));
        QTRY_VERIFY(rowOf(2).isValid());
        m_env.settle();
        QVERIFY(dome()->status().autoScan);
        QVERIFY(m_env.storage()->IsAutoScan(kDome, false));
        QVERIFY(!m_env.operations(kDome).contains(DriverOperation::StopPatrol));

        // Calling ends auto-scan and a patrol recorded as running on the camera.
        m_env.clock()->advance(2000);
        m_env.storage()->SetCruising(kDome, true, 2);
        dome()->clearRequestLog();
        emit view()->SignalPlayPreset(rowOf(1));
        QTRY_VERIFY(m_env.operations(kDome).contains(DriverOperation::GotoPreset));
        QTRY_VERIFY(!dome()->status().autoScan);
        QTRY_VERIFY(!m_env.storage()->IsAutoScan(kDome, false));
        QTRY_VERIFY(m_env.storage()->GetRunningCruise(kDome) <= 0);
        QTRY_VERIFY(m_env.operations(kDome).contains(DriverOperation::StopPatrol));
        QTRY_VERIFY((m_env.clock()->advance(500), std::abs(dome()->status().pan - 200.0) < 0.01));
        QCOMPARE(dome()->status().tilt, -20.0);
        QCOMPARE(dome()->status().zoom, 2.0);
    }
    void cancelOrRefusalKeepsTheList_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("refused"); // -1: the operator cancels
        QTest::addColumn<int>("level");
        QTest::newRow("add cancelled") << "add" << -1 << 0;
        QTest::newRow("rename cancelled") << "edit" << -1 << 0;
        QTest::newRow("delete cancelled") << "delete" << -1 << 0;
        QTest::newRow("add refused") << "add" << int(DriverOperation::SetPreset) << 2;
        QTest::newRow("rename refused") << "edit" << int(DriverOperation::RenamePreset) << 2;
        QTest::newRow("delete refused") << "delete" << int(DriverOperation::RemovePreset) << 0;
    }
    void cancelOrRefusalKeepsTheList()
    {
        QFETCH(QString, action);
        QFETCH(int, refused);
        QFETCH(int, level);
        QVERIFY(addPreset(1, QStringLiteral("Stay")));
        QTRY_VERIFY(rowOf(1).isValid());
        m_env.settle();
        m_tips.clear();
        dome()->clearRequestLog();
        const QString error = QStringLiteral("Device busy");
        const bool cancel = refused < 0;
        if (!cancel)
            dome()->failOperation(DriverOperation(refused), error);
        bool seen = false;
        auto rename = [](auto *dialog) { dialog->GetNameEdit()->setText(QStringLiteral("New")); };
        if (action == QLatin1String("add")) {
            PanelFixture::answerNextDialog<CAddPresetDialog>(rename, !cancel, &seen);
            addButton()->click();
        } else if (action == QLatin1String("edit")) {
            PanelFixture::answerNextDialog<CEditPresetDialog>(rename, !cancel, &seen);
            emit view()->SignalEditPreset(rowOf(1));
        } else {
            m_questions->answer = cancel ? CNomalMessageManager::AnswerCancel : CNomalMessageManager::AnswerConfirm;
            seen = true;
            emit view()->SignalDeletePreset(rowOf(1));
        }
        QVERIFY(seen);
        if (cancel) {
            QCoreApplication::processEvents();
            QCOMPARE(dome()->requestLog().size(), 0);
        } else {
            // Shown once, at the level of the action.
            QTRY_VERIFY(m_tips.contains(qMakePair(error, level)));
            m_env.settle();
            QCOMPARE(m_tips.count(qMakePair(error, level)), 1);
        }
        QCOMPARE(names(), QStringList{"Stay"});
        QCOMPARE(dome()->presets().size(), 1);
        QCOMPARE(dome()->presets().first().name, QStringLiteral("Stay"));
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        QVERIFY(addButton()->isEnabled());
    }
    void limitOf256DisablesAddUntilOneIsDeleted()
    {
        for (int n = 1; n <= 256; ++n)
            dome()->setPreset(n, QStringLiteral("P%1").arg(n));
        // Read the list again, as the tab does when it comes to the front.
        m_env.panel()->OnTabIndexChanged(0);
        QTRY_COMPARE(countText(), QStringLiteral("(256/256)"));
        QCOMPARE(list()->rowCount(), 256);
        QVERIFY(!addButton()->isEnabled());

        // Calling a preset does not lift the limit.
        emit view()->SignalPlayPreset(rowOf(7));
        QTRY_VERIFY(m_env.operations(kDome).contains(DriverOperation::GotoPreset));
        m_env.settle();
        QVERIFY(!addButton()->isEnabled());

        emit view()->SignalDeletePreset(rowOf(200));
        QTRY_COMPARE(countText(), QStringLiteral("(255/256)"));
        QTRY_VERIFY(addButton()->isEnabled());
        QCOMPARE(list()->rowCount(), 255);
        // The freed number is the one offered, and the 256th closes the list again.
        QVERIFY(addPreset(200, QStringLiteral("Back")));
        QTRY_COMPARE(countText(), QStringLiteral("(256/256)"));
        m_env.settle();
        QVERIFY(!addButton()->isEnabled());
    }
    void answersOfAnotherCameraChangeNothing()
    {
        QVERIFY(addPreset(1, QStringLiteral("Mine")));
        QTRY_VERIFY(rowOf(1).isValid());
        m_env.settle();
        m_env.panel()->OnGetPresetSuc(kBasic);
        m_env.panel()->OnGetPresetFailed(kBasic, QStringLiteral("x"));
        QCOMPARE(names(), QStringList{"Mine"});
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        QVERIFY(m_tips.isEmpty());
        m_env.panel()->OnGetPresetFailed(kDome, QStringLiteral("x"));
        QCOMPARE(m_tips, QList<Tip>{qMakePair(QStringLiteral("FailedToGetThePresetjcOUTbb"), 0)});
    }
    // Client presets are counted apart from the camera's but listed with them.
    void virtualPresetsStayOffTheCamera()
    {
        m_env.store()->setBoolSetting(site_store::CSiteStore::kIsSupportVirtualPTZ, true);
        bind();
        QVERIFY(addPreset(1, QStringLiteral("Device one")));
        QTRY_VERIFY(rowOf(1).isValid());
        m_env.settle();

        m_env.child<QPushButton>("btn_virtual_preset")->click();
        QCOMPARE(m_env.panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_VIRTUAL);
        QTRY_VERIFY(addButton()->isEnabled());
        QCOMPARE(countText(), QStringLiteral("(0/256)"));
        dome()->clearRequestLog();
        QVERIFY(addPreset(2, QStringLiteral("Virtual two")));
        QVERIFY(addPreset(3, QStringLiteral("Virtual gate")));
        QTRY_COMPARE(names(), (QStringList{"Virtual gate", "Virtual two", "Device one"}));
        QCOMPARE(countText(), QStringLiteral("(2/256)"));

        PanelFixture::answerNextDialog<CEditPresetDialog>(
            [](CEditPresetDialog *d) { d->GetNameEdit()->setText(QStringLiteral("Renamed")); });
        emit view()->SignalEditPreset(rowOf(2));
        QCOMPARE(list()->index(rowOf(2).row(), 1).data().toString(), QStringLiteral("Renamed"));
        QCOMPARE(m_env.store()->virtualPreset(kDome, 2)->name, QStringLiteral("Renamed"));
        // Deleting through the filtered list removes the right row.
        m_env.child<QLineEdit>("ptr_line_edit_")->setText(QStringLiteral("ren"));
        QCOMPARE(list()->rowCount(), 1);
        emit view()->SignalDeletePreset(list()->index(0, 2));
        QVERIFY(!m_env.store()->virtualPreset(kDome, 2).has_value());
        m_env.child<QLineEdit>("ptr_line_edit_")->clear();
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        QCoreApplication::processEvents();
        QCOMPARE(dome()->requestLog().size(), 0);
        QCOMPARE(dome()->presets().size(), 1);
    }
    // Presets of a fish-eye picture belong to the software PTZ: they keep and restore the cut-out view.
    void fishEyePresetsKeepTheViewOffTheDevice()
    {
        m_env.newPanel(true);
        m_env.panel()->SetCamera(QString(), kFishEye, false, false);
        m_env.fishEye()->SetFishEyeWndOpen(true);
        QCOMPARE(m_env.panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_FISHEYE);
        QTRY_VERIFY(addButton()->isEnabled());
        m_env.fishEye()->SetSemisphereFishEyePTZPos(40.0, -30.0, 2.0);
        QVERIFY(addPreset(1, QStringLiteral("Entrance")));
        QTRY_COMPARE(names(), QStringList{"Entrance"});
        QCOMPARE(rowOf(1).data(Quillon::ItemFirstStateRole).toInt(), int(ptz_plugin_protocol::PRESET_TYPE_FISHEYE));
        QTRY_COMPARE(countText(), QStringLiteral("(1/256)"));

        m_env.fishEye()->SetSemisphereFishEyePTZPos(200.0, -60.0, 1.0);
        emit view()->SignalPlayPreset(rowOf(1));
        double pan = 0, tilt = 0, zoom = 0;
        m_env.fishEye()->GetSemisphereFishEyePTZPos(pan, tilt, zoom);
        QCOMPARE(QList<double>({pan, tilt, zoom}), QList<double>({40.0, -30.0, 2.0}));
        QVERIFY(!m_env.operations(kFishEye).contains(DriverOperation::SetPreset));
        QVERIFY(!m_env.operations(kFishEye).contains(DriverOperation::GotoPreset));
    }
    void editOrDeleteWithoutRowAsksForOne()
    {
        m_env.panel()->OnEditPresetBtnClicked(QModelIndex());
        m_env.panel()->OnDeletePresetBtnClicked(QModelIndex());
        QCOMPARE(m_tips, (QList<Tip>{qMakePair(QStringLiteral("PleaseSelectAPresetPaIngnBeI"), 2),
                                     qMakePair(QStringLiteral("PleaseSelectAPresetPrknxDNBA"), 2)}));
        QVERIFY(m_questions->asked.isEmpty());
    }
    void filterBoxMatchesNamesOnly_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("empty shows all") << QString() << QStringList{"Preset12", "PRESET", "Gate", "Door 12"};
        QTest::newRow("any case") << "pre" << QStringList{"Preset12", "PRESET"};
        QTest::newRow("middle of the name") << "ATE" << QStringList{"Gate"};
        QTest::newRow("digits in names only, not numbers") << "12" << QStringList{"Preset12", "Door 12"};
        QTest::newRow("preset number is not searched") << "7" << QStringList{};
        QTest::newRow("wildcards are literal") << "P*" << QStringList{};
    }
    void filterBoxMatchesNamesOnly()
    {
        QFETCH(QString, text);
        QFETCH(QStringList, expected);
        const QStringList all{"Preset12", "PRESET", "Gate", "Door 12"};
        for (int i = 0; i < all.size(); ++i)
            dome()->setPreset(i * 10 + 7, all.at(i));
        m_env.panel()->OnTabIndexChanged(0);
        QTRY_COMPARE(names(), all);
        m_env.child<QLineEdit>("ptr_line_edit_")->setText(text);
        QCOMPARE(names(), expected);
        m_env.child<QLineEdit>("ptr_line_edit_")->clear();
        QCOMPARE(names(), all);
    }

private:
    CPresetTableView *view() const { return m_env.child<CPresetTableView>("m_pTreeViewPreset"); }
    QAbstractItemModel *list() const { return view()->model(); }
    QString countText() const { return m_env.child<QLabel>("ptz_preset_label_")->text(); }
    QPushButton *addButton() const { return m_env.child<QPushButton>("ptz_add_preset_btn_"); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    QModelIndex rowOf(int number) const
    {
        const QModelIndexList found =
            list()->match(list()->index(0, 0), Quillon::ItemNumberRole, number, 1, Qt::MatchExactly);
        return found.isEmpty() ? QModelIndex() : found.first().siblingAtColumn(2);
    }
    QStringList names() const
    {
        QStringList result;
        for (int r = 0; r < list()->rowCount(); ++r)
            result << list()->index(r, 1).data().toString();
        return result;
    }
    void bind()
    {
        m_env.newPanel();
        connect(m_env.panel(), &CPreviewPTZWnd::SignalMessageTipNeeded, this,
                [this](const QString &tip, int level) { m_tips << qMakePair(tip, level); });
        m_env.panel()->resize(600, 800);
        m_env.panel()->SetCamera(QString(), kDome, false, false);
        QVERIFY(m_env.panel()->IsWorking());
        QTRY_VERIFY(addButton()->isEnabled());
    }
    bool addPreset(int expectedNumber, const QString &name)
    {
        int number = -1;
        PanelFixture::answerNextDialog<CAddPresetDialog>([&number, name](CAddPresetDialog *dialog) {
            number = dialog->GetPresetIndex();
            dialog->GetNameEdit()->setText(name);
        });
        addButton()->click();
        return number == expectedNumber;
    }

    PanelFixture m_env;
    QList<Tip> m_tips;
    std::optional<QuestionRecorder> m_questions;
};

QTEST_MAIN(TestPreviewPTZWndPresets)
#include "tst_cpreviewptzwnd_presets.moc"
