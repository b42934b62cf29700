#include "support/panelfixture.h"

#include "zeph_ptz_controller/cptzstatestoragemanager.h"

#include "preset/caddpresetdialog.h"
#include "preset/ceditpresetdialog.h"
#include "preset/cpresettablemodel.h"
#include "preset/cpresettableview.h"
#include "preset/presetnamerules.h"

#include "quillon/citemdatarole.h"
#include "quillon/cplaceholdlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"
#include "zeph_ptz_controller/cptzgetcontroller.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>

using namespace PreviewPTZControl;
using ptz_devices::DriverOperation;
using vs_ui_data_controller::CNomalMessageManager;
namespace demo = site_store::demo;

namespace {

// Answers the next modal dialog of type D from inside its event loop.
template <typename D> void AnswerNextDialog(bool *seen, std::function<void(D *)> fill, bool accept)
{
    QTimer::singleShot(0, qApp, [seen, fill, accept]() {
        auto *dialog = qobject_cast<D *>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        *seen = true;
        if (fill)
            fill(dialog);
        if (accept)
            dialog->GetConfirmButton()->click();
        else
            dialog->GetCancelButton()->click();
    });
}
} // namespace

class TestPreviewPTZWndPresets : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_tips.clear();
        m_asked.clear();
        m_confirmAnswer = CNomalMessageManager::AnswerConfirm;
        CNomalMessageManager::Instance()->SetAnswerProvider([this](const QString &text) {
            m_asked << text;
            return m_confirmAnswer;
        });
        bind();
    }
    void cleanup()
    {
        CNomalMessageManager::Instance()->SetAnswerProvider({});
        m_env.tearDown();
    }

    void addStoresCurrentPositionOnTheCamera()
    {
        QCOMPARE(countText(), QStringLiteral("(0/256)"));
        dome()->setPosition(120.0, -30.0, 3.0);
        QVERIFY(addPreset(1, QStringLiteral("Gate")));
        QTRY_COMPARE(dome()->presets().size(), 1);
        const auto stored = dome()->presets().first();
        QCOMPARE(stored.number, 1);
        QCOMPARE(stored.name, QStringLiteral("Gate"));
        QCOMPARE(stored.pan, 120.0);
        QTRY_COMPARE(names(), QStringList { QStringLiteral("Gate") });
        QTRY_COMPARE(countText(), QStringLiteral("(1/256)"));
        QVERIFY(addButton()->isEnabled());

        // The next free number is offered next.
        QVERIFY(addPreset(2, QStringLiteral("Yard")));
        QTRY_COMPARE(countText(), QStringLiteral("(2/256)"));
    }
    void callRestoresPositionAndStopsRunningFunctions()
    {
        dome()->setPosition(200.0, -20.0, 2.0);
        QVERIFY(addPreset(1, QStringLiteral("Door")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();

        // Auto-scan running, and a patrol recorded as running on the camera.
        emit child<CPTZCloud>("ptr_cloud_")->signalPressSection(nullptr, CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        m_env.clock()->advance(2000);
        zeph_ptz_controller::CPTZStateStorageManager::Instance()->SetCruising(kDome, true, 2);
        dome()->clearRequestLog();

        emit view()->SignalPlayPreset(rowOf(1));
        QTRY_VERIFY(m_env.operations(kDome).contains(DriverOperation::GotoPreset));
        QTRY_VERIFY(!dome()->status().autoScan);
        QTRY_VERIFY(!zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsAutoScan(kDome, false));
        QTRY_VERIFY(zeph_ptz_controller::CPTZStateStorageManager::Instance()->GetRunningCruise(kDome) <= 0);
        QTRY_VERIFY(m_env.operations(kDome).contains(DriverOperation::StopPatrol));
        for (int i = 0; i < 100 && (std::abs(dome()->status().pan - 200.0) > 0.01); ++i) {
            m_env.clock()->advance(500);
            QCoreApplication::processEvents();
        }
        QCOMPARE(dome()->status().pan, 200.0);
        QCOMPARE(dome()->status().tilt, -20.0);
        QCOMPARE(dome()->status().zoom, 2.0);
    }
    void savingKeepsAutoScanRunning()
    {
        emit child<CPTZCloud>("ptr_cloud_")->signalPressSection(nullptr, CPTZCloud::Center);
        QTRY_VERIFY(dome()->status().autoScan);
        QVERIFY(addPreset(1, QStringLiteral("While scanning")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();
        QVERIFY(dome()->status().autoScan);
        QVERIFY(zeph_ptz_controller::CPTZStateStorageManager::Instance()->IsAutoScan(kDome, false));
        QVERIFY(!m_env.operations(kDome).contains(DriverOperation::StopPatrol));
    }
    void renameChangesCameraAndRow()
    {
        QVERIFY(addPreset(1, QStringLiteral("Old")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();
        bool seen = false;
        AnswerNextDialog<CEditPresetDialog>(
            &seen,
            [](CEditPresetDialog *dialog) {
                QCOMPARE(dialog->GetPresetName(), QStringLiteral("Old"));
                dialog->GetNameEdit()->setText(QStringLiteral("Новый"));
            },
            true);
        emit view()->SignalEditPreset(rowOf(1));
        QVERIFY(seen);
        QTRY_COMPARE(dome()->presets().value(0).name, QStringLiteral("Новый"));
        QTRY_COMPARE(names(), QStringList { QStringLiteral("Новый") });
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
    }
    void deleteAfterConfirmation()
    {
        QVERIFY(addPreset(1, QStringLiteral("A")));
        QTRY_VERIFY(rowOf(1).isValid());
        QVERIFY(addPreset(2, QStringLiteral("B")));
        QTRY_VERIFY(rowOf(2).isValid());
        settle();
        emit view()->SignalDeletePreset(rowOf(1));
        QCOMPARE(m_asked, QStringList { QStringLiteral("ConfirmToDelete") });
        QTRY_COMPARE(dome()->presets().size(), 1);
        QCOMPARE(dome()->presets().first().number, 2);
        QTRY_COMPARE(names(), QStringList { QStringLiteral("B") });
        QTRY_COMPARE(countText(), QStringLiteral("(1/256)"));
    }
    void cancelChangesNothing_data()
    {
        QTest::addColumn<QString>("action");
        QTest::newRow("add") << "add";
        QTest::newRow("edit") << "edit";
        QTest::newRow("delete") << "delete";
    }
    void cancelChangesNothing()
    {
        QFETCH(QString, action);
        QVERIFY(addPreset(1, QStringLiteral("Keep")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();
        dome()->clearRequestLog();
        bool seen = false;
        if (action == QLatin1String("add")) {
            AnswerNextDialog<CAddPresetDialog>(
                &seen, [](CAddPresetDialog *d) { d->GetNameEdit()->setText("X"); }, false);
            addButton()->click();
        } else if (action == QLatin1String("edit")) {
            AnswerNextDialog<CEditPresetDialog>(
                &seen, [](CEditPresetDialog *d) { d->GetNameEdit()->setText("X"); }, false);
            emit view()->SignalEditPreset(rowOf(1));
        } else {
            m_confirmAnswer = CNomalMessageManager::AnswerCancel;
            seen = true;
            emit view()->SignalDeletePreset(rowOf(1));
        }
        QVERIFY(seen);
        QCoreApplication::processEvents();
        QCOMPARE(dome()->requestLog().size(), 0);
        QCOMPARE(names(), QStringList { QStringLiteral("Keep") });
        QCOMPARE(dome()->presets().size(), 1);
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
    }
    void limitOf256DisablesAddUntilOneIsDeleted()
    {
        for (int n = 1; n <= 256; ++n)
            dome()->setPreset(n, QStringLiteral("P%1").arg(n));
        QTRY_COMPARE(dome()->presets().size(), 256);
        // Read the list again, as the tab does when it comes to the front.
        m_env.panel()->OnTabIndexChanged(0);
        QTRY_COMPARE(countText(), QStringLiteral("(256/256)"));
        QCOMPARE(list()->rowCount(), 256);
        QVERIFY(!addButton()->isEnabled());

        // Calling a preset does not lift the limit.
        emit view()->SignalPlayPreset(rowOf(7));
        QTRY_VERIFY(m_env.operations(kDome).contains(DriverOperation::GotoPreset));
        QTRY_COMPARE(dome()->pendingRequestCount(), 0);
        QCoreApplication::processEvents();
        QVERIFY(!addButton()->isEnabled());

        emit view()->SignalDeletePreset(rowOf(200));
        QTRY_COMPARE(countText(), QStringLiteral("(255/256)"));
        QTRY_VERIFY(addButton()->isEnabled());
        QCOMPARE(list()->rowCount(), 255);

        // The freed number is the one offered.
        QVERIFY(addPreset(200, QStringLiteral("Back")));
        QTRY_COMPARE(countText(), QStringLiteral("(256/256)"));
        QTRY_VERIFY(!addButton()->isEnabled());
    }
    void refusedRequestKeepsTheList_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("level");
        QTest::newRow("add") << "add" << int(DriverOperation::SetPreset) << 2;
        QTest::newRow("rename") << "edit" << int(DriverOperation::RenamePreset) << 2;
        QTest::newRow("delete") << "delete" << int(DriverOperation::RemovePreset) << 0;
    }
    void refusedRequestKeepsTheList()
    {
        QFETCH(QString, action);
        QFETCH(int, operation);
        QFETCH(int, level);
        QVERIFY(addPreset(1, QStringLiteral("Stay")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();
        m_tips.clear();
        const QString error = QStringLiteral("Device busy");
        dome()->failOperation(DriverOperation(operation), error);
        bool seen = false;
        if (action == QLatin1String("add")) {
            QVERIFY(addPreset(2, QStringLiteral("New")));
        } else if (action == QLatin1String("edit")) {
            AnswerNextDialog<CEditPresetDialog>(
                &seen, [](CEditPresetDialog *d) { d->GetNameEdit()->setText("New"); }, true);
            emit view()->SignalEditPreset(rowOf(1));
            QVERIFY(seen);
        } else {
            emit view()->SignalDeletePreset(rowOf(1));
        }
        QTRY_VERIFY(m_tips.contains(qMakePair(error, level)));
        settle();
        // Shown once, at the level of the action.
        QCOMPARE(std::count_if(
                     m_tips.cbegin(), m_tips.cend(), [&](const QPair<QString, int> &t) { return t.first == error; }),
            qsizetype(1));
        QCOMPARE(names(), QStringList { QStringLiteral("Stay") });
        QCOMPARE(dome()->presets().size(), 1);
        QCOMPARE(dome()->presets().first().name, QStringLiteral("Stay"));
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        QVERIFY(addButton()->isEnabled());
    }
    void listOfAnotherCameraChangesNothing()
    {
        QVERIFY(addPreset(1, QStringLiteral("Mine")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();
        m_env.panel()->OnGetPresetSuc(QString::fromLatin1(demo::kPtzNoPattern));
        m_env.panel()->OnGetPresetFailed(QString::fromLatin1(demo::kPtzNoPattern), QStringLiteral("x"));
        QCOMPARE(names(), QStringList { QStringLiteral("Mine") });
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        QVERIFY(m_tips.isEmpty());
        m_env.panel()->OnGetPresetFailed(kDome, QStringLiteral("x"));
        QCOMPARE(m_tips.value(0), qMakePair(QStringLiteral("FailedToGetThePresetjcOUTbb"), 0));
    }
    void countOnlyCurrentTypeButListsBoth()
    {
        m_env.store()->setBoolSetting(site_store::CSiteStore::kIsSupportVirtualPTZ, true);
        for (int n = 1; n <= 3; ++n)
            dome()->setPreset(n, QStringLiteral("D%1").arg(n));
        QTRY_COMPARE(dome()->presets().size(), 3);
        auto *getter = m_env.panel()->findChild<zeph_ptz_controller::CPTZGetController *>();
        QVERIFY(getter);
        for (int n = 10; n <= 11; ++n) {
            ptz_plugin_protocol::PresetInfo preset;
            preset.preset_index = n;
            preset.preset_type = ptz_plugin_protocol::PRESET_TYPE_VIRTUAL;
            preset.preset_name = QStringLiteral("V%1").arg(n).toStdString();
            QVERIFY(getter->AddOnePreset(kDome, preset));
        }
        m_env.panel()->OnTabIndexChanged(0);
        QTRY_COMPARE(list()->rowCount(), 5);
        QTRY_COMPARE(countText(), QStringLiteral("(3/256)"));
    }
    void virtualPresetSurvivesStoreReopen()
    {
        m_env.dropPanel();
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("site.sqlite"));
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::Open(path));
        m_env.store()->setCurrentUser(QString::fromLatin1(demo::kOperator));
        m_env.store()->setBoolSetting(site_store::CSiteStore::kIsSupportVirtualPTZ, true);
        m_env.manager()->Reload();
        bind();

        child<QPushButton>("btn_virtual_preset")->click();
        QCOMPARE(m_env.panel()->PresetType(), ptz_plugin_protocol::PRESET_TYPE_VIRTUAL);
        QTRY_VERIFY(addButton()->isEnabled());
        dome()->clearRequestLog();
        QVERIFY(addPreset(1, QStringLiteral("Virtual gate")));
        QTRY_COMPARE(names(), QStringList { QStringLiteral("Virtual gate") });
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        // A virtual preset never reaches the camera.
        QVERIFY(!m_env.operations(kDome).contains(DriverOperation::SetPreset));
        QCOMPARE(dome()->presets().size(), 0);

        m_env.dropPanel();
        m_env.manager()->Clear();
        site_store::CSiteStore::InstallCurrent(nullptr);
        zeph_ptz_controller::CPTZGetController::ClearCachedData();
        site_store::CSiteStore::InstallCurrent(site_store::CSiteStore::Open(path));
        m_env.store()->setCurrentUser(QString::fromLatin1(demo::kOperator));
        m_env.manager()->Reload();
        bind();
        QTRY_COMPARE(names(), QStringList { QStringLiteral("Virtual gate") });
        QCOMPARE(rowOf(1).data(Quillon::ItemFirstStateRole).toInt(), int(ptz_plugin_protocol::PRESET_TYPE_VIRTUAL));
    }
    void virtualPresetRenameAndDeleteStayOffTheCamera()
    {
        m_env.store()->setBoolSetting(site_store::CSiteStore::kIsSupportVirtualPTZ, true);
        QVERIFY(addPreset(1, QStringLiteral("Device one")));
        QTRY_VERIFY(rowOf(1).isValid());
        settle();
        child<QPushButton>("btn_virtual_preset")->click();
        QTRY_VERIFY(addButton()->isEnabled());
        QCOMPARE(countText(), QStringLiteral("(0/256)"));
        QVERIFY(addPreset(2, QStringLiteral("Virtual two")));
        QTRY_COMPARE(names(), (QStringList { QStringLiteral("Virtual two"), QStringLiteral("Device one") }));
        QCOMPARE(countText(), QStringLiteral("(1/256)"));
        dome()->clearRequestLog();

        bool seen = false;
        AnswerNextDialog<CEditPresetDialog>(
            &seen, [](CEditPresetDialog *d) { d->GetNameEdit()->setText("Renamed"); }, true);
        emit view()->SignalEditPreset(rowOf(2));
        QVERIFY(seen);
        QCOMPARE(list()->index(rowOf(2).row(), 1).data().toString(), QStringLiteral("Renamed"));
        QCOMPARE(m_env.store()->virtualPreset(kDome, 2)->name, QStringLiteral("Renamed"));

        // Deleting through the filtered list removes the right row.
        child<QLineEdit>("ptr_line_edit_")->setText(QStringLiteral("ren"));
        QCOMPARE(list()->rowCount(), 1);
        emit view()->SignalDeletePreset(list()->index(0, 2));
        QVERIFY(!m_env.store()->virtualPreset(kDome, 2).has_value());
        child<QLineEdit>("ptr_line_edit_")->clear();
        QCOMPARE(names(), QStringList { QStringLiteral("Device one") });
        QCOMPARE(countText(), QStringLiteral("(0/256)"));
        QVERIFY(addButton()->isEnabled());
        QCoreApplication::processEvents();
        QCOMPARE(dome()->requestLog().size(), 0);
        QCOMPARE(dome()->presets().size(), 1);
    }
    void editOrDeleteWithoutRowAsksForOne_data()
    {
        QTest::addColumn<bool>("edit");
        QTest::addColumn<QString>("tip");
        QTest::newRow("edit") << true << QStringLiteral("PleaseSelectAPresetPaIngnBeI");
        QTest::newRow("delete") << false << QStringLiteral("PleaseSelectAPresetPrknxDNBA");
    }
    void editOrDeleteWithoutRowAsksForOne()
    {
        QFETCH(bool, edit);
        QFETCH(QString, tip);
        m_tips.clear();
        if (edit)
            m_env.panel()->OnEditPresetBtnClicked(QModelIndex());
        else
            m_env.panel()->OnDeletePresetBtnClicked(QModelIndex());
        QCOMPARE(m_tips, (QList<QPair<QString, int>> { qMakePair(tip, 2) }));
        QVERIFY(m_asked.isEmpty());
    }
    void filterBoxFiltersByName()
    {
        QVERIFY(addPreset(1, QStringLiteral("Preset12")));
        QTRY_VERIFY(rowOf(1).isValid());
        QVERIFY(addPreset(2, QStringLiteral("Gate")));
        QTRY_VERIFY(rowOf(2).isValid());
        child<QLineEdit>("ptr_line_edit_")->setText(QStringLiteral("PRE"));
        QCOMPARE(names(), QStringList { QStringLiteral("Preset12") });
        child<QLineEdit>("ptr_line_edit_")->clear();
        QCOMPARE(list()->rowCount(), 2);
    }
    void listRenameCheckUsesPanelRules()
    {
        // Reached through the same helper the panel calls; a 21-character name that the
        // dialog refuses is accepted here.
        QVERIFY(addPreset(1, QStringLiteral("Gate")));
        QTRY_VERIFY(rowOf(1).isValid());
        QString message;
        QVERIFY(CheckListPresetName(QString(21, QLatin1Char('n')), list(), &message));
        QVERIFY(!CheckListPresetName(QStringLiteral("   "), list(), &message));
        QCOMPARE(message, QStringLiteral("NameCanNotBeEmpty"));
    }

private:
    template <typename T> T *child(const char *name) const { return m_env.child<T>(name); }
    CPresetTableView *view() const { return child<CPresetTableView>("m_pTreeViewPreset"); }
    QAbstractItemModel *list() const { return view()->model(); }
    QString countText() const { return child<QLabel>("ptz_preset_label_")->text(); }
    QPushButton *addButton() const { return child<QPushButton>("ptz_add_preset_btn_"); }
    ptz_devices::CSimulatedCamera *dome() const { return m_env.camera(kDome); }
    QModelIndex rowOf(int number) const
    {
        for (int r = 0; r < list()->rowCount(); ++r) {
            const QModelIndex index = list()->index(r, 0);
            if (index.data(Quillon::ItemNumberRole).toInt() == number)
                return list()->index(r, 2);
        }
        return QModelIndex();
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
        bool seen = false;
        int number = -1;
        AnswerNextDialog<CAddPresetDialog>(
            &seen,
            [&number, name](CAddPresetDialog *dialog) {
                number = dialog->GetPresetIndex();
                dialog->GetNameEdit()->setText(name);
            },
            true);
        addButton()->click();
        return seen && number == expectedNumber;
    }
    void settle()
    {
        QTRY_COMPARE(dome()->pendingRequestCount(), 0);
        QTRY_VERIFY(addButton()->isEnabled() || countText().startsWith(QLatin1String("(256")));
    }

    PanelFixture m_env;
    QList<QPair<QString, int>> m_tips;
    int m_confirmAnswer = CNomalMessageManager::AnswerConfirm;
    QStringList m_asked;
};

QTEST_MAIN(TestPreviewPTZWndPresets)
#include "tst_cpreviewptzwnd_presets.moc"
