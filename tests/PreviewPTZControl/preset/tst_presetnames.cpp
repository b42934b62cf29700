// Preset names and the dialogs that take them. One table of names runs through every place
// that accepts a name: the dialog's editor and save check, the panel's list check, the
// controller (device SetPreset, client presets of the getter) and the host's preset store.
#include "support/ptztestenv.h"
#include "support/questions.h"
#include "support/records.h"

#include "preset/caddpresetdialog.h"
#include "preset/cbasepresetdialog.h"
#include "preset/ceditpresetdialog.h"
#include "preset/cpresettablemodel.h"
#include "preset/csortpresetfiltermodel.h"
#include "preset/presetnamerules.h"

#include "quillon/cplaceholdlineedit.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSignalSpy>
#include <QtTest>

#include <optional>

using namespace PreviewPTZControl;
using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZGetController;
using zeph_ptz_controller::CUniversalPTZController;

Q_DECLARE_METATYPE(std::string)

namespace {
const std::string kTaken = "Gate"; // preset 1 of every kind carries it
const QString kForbiddenTip = QStringLiteral("InvalidPresetPointName TheInputCannotContainAnyOfTheFollowingCharacters"
                                             " / \\ : * ? \" < > |");
enum Verdict { Refused, Accepted };
} // namespace

class TestPresetNames : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_env.setUp();
        m_env.camera(kDome)->setPreset(1, QString::fromStdString(kTaken));
        AddPresetRequest add;
        add.camera_index_code = kDome.toStdString();
        add.preset = RawPreset(1, PRESET_TYPE_VIRTUAL, kTaken);
        AddPresetResponse added;
        QVERIFY2(m_env.business()->AddPreset(add, added), added.error_text.c_str());
        add.preset = RawPreset(2, PRESET_TYPE_VIRTUAL, "Yard");
        QVERIFY2(m_env.business()->AddPreset(add, added), added.error_text.c_str());

        // The getter's list is what the controller knows of the camera's names.
        CPTZGetController getter;
        QSignalSpy listed(&getter, &CPTZGetController::SignalGetPresetsSuc);
        getter.StartGetPresets(kDome);
        QTRY_COMPARE(listed.count(), 1);
        m_model = new CPresetTableModel(1.0);
        m_model->UpdatePresetList(
            {Preset(1, 1, "Gate"), Preset(2, 3, "Door"), Preset(7, 1, "Twin"), Preset(8, 3, "Twin")}, true);
        m_questions.emplace();
    }
    void cleanup()
    {
        m_questions.reset();
        delete m_model;
        m_env.tearDown();
    }
    // The add dialog's save check (20 characters, no name of another preset) and the list's rename
    // check (64 characters, trimmed; the renamed row itself carries the name once).
    void nameChecks_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("dialogTip"); // empty: accepted
        QTest::addColumn<QString>("listTip");
        const QString long20 = QStringLiteral("InvalidPresetPointName NoMoreThan20CharactersCanBeInput");
        const QString long64 = QStringLiteral("InvalidPresetPointName NoMoreThan64CharactersCanBeInput");
        const QString dup = QStringLiteral("ThePresetPointNameAlakrzNA");
        const QString ok;
        QTest::newRow("empty") << ok << QStringLiteral("TheNameCannotBeEmptyuwCnESOS") << "NameCanNotBeEmpty";
        QTest::newRow("blanks only") << "   " << ok << "NameCanNotBeEmpty";
        QTest::newRow("forbidden") << "ab*cd" << kForbiddenTip << kForbiddenTip;
        QTest::newRow("forbidden wins over length")
            << "|" + QString(70, QLatin1Char('a')) << kForbiddenTip << kForbiddenTip;
        QTest::newRow("apostrophe and percent saved") << "O'Neil 50%" << ok << ok;
        QTest::newRow("unicode letters") << QStringLiteral("Tür Ворота 大门 é") << ok << ok;
        QTest::newRow("20 characters") << QString(20, QLatin1Char('x')) << ok << ok;
        QTest::newRow("21 characters") << QString(21, QLatin1Char('x')) << long20 << ok;
        QTest::newRow("64 after trimming") << "  " + QString(64, QLatin1Char('x')) + "  " << long20 << ok;
        QTest::newRow("65 characters") << QString(65, QLatin1Char('x')) << long20 << long64;
        QTest::newRow("another preset's name") << "Gate" << dup << ok;
        QTest::newRow("a virtual preset's name") << "Door" << dup << ok;
        QTest::newRow("two rows carry it") << "Twin" << dup << "PresetNameAlreadyExists";
        QTest::newRow("case differs") << "twin" << ok << ok;
        QTest::newRow("substring") << "Gat" << ok << ok;
    }
    void nameChecks()
    {
        QFETCH(QString, name);
        QFETCH(QString, dialogTip);
        QFETCH(QString, listTip);
        CAddPresetDialog dialog(nullptr, {Preset(1, 1, "Gate"), Preset(2, 3, "Door")});
        dialog.SetPresetModel(m_model);
        dialog.GetNameEdit()->setText(name);
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.GetConfirmButton()->click();
        QCOMPARE(m_questions->asked, dialogTip.isEmpty() ? QStringList() : QStringList{dialogTip});
        QCOMPARE(accepted.count(), dialogTip.isEmpty() ? 1 : 0);

        CSortPresetFilterModel proxy;
        proxy.setSourceModel(m_model);
        QString tip = QStringLiteral("stale");
        QCOMPARE(CheckListPresetName(name, &proxy, &tip), listTip.isEmpty());
        QCOMPARE(tip, listTip);
        QVERIFY(!CheckListPresetName(name, nullptr, &tip));
        QCOMPARE(tip, QString());
    }
    void duplicatesSkipClearedAndEdited()
    {
        m_model->ClearPresetItem(0);
        // The cleared row keeps its number but is disabled; its default name is no duplicate.
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Preset1"), m_model, -1), QString());
        // Keeping the edited preset's own name is fine; another preset's name is not.
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Door"), m_model, 2, 3), QString());
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Door"), m_model, 5),
                 QStringLiteral("ThePresetPointNameAlakrzNA"));
        CEditPresetDialog dialog(nullptr, Preset(2, 3, "Door"));
        dialog.SetPresetModel(m_model);
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.GetConfirmButton()->click();
        QCOMPARE(accepted.count(), 1);
        QCOMPARE(dialog.GetPresetIndex(), 2);
        QVERIFY(!dialog.GetNumberComboBox()->isEnabled());
    }
    // Typed keys: the editor drops the characters a name may not hold and stops at 64.
    void validatorRefusesTypedCharacters()
    {
        CAddPresetDialog dialog(nullptr, {});
        dialog.GetNameEdit()->clear();
        const QString typed = QStringLiteral("a\\/:*?\"<|'%>b Тор é") + QString(70, QLatin1Char('y'));
        for (const QChar c : typed) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
            QCoreApplication::sendEvent(dialog.GetNameEdit(), &press);
        }
        const QString kept = QStringLiteral("ab Тор é");
        QCOMPARE(dialog.GetNameEdit()->text(), kept + QString(64 - kept.size(), QLatin1Char('y')));
    }
    void freeNumbers_data()
    {
        QTest::addColumn<QVector<int>>("used");
        QTest::addColumn<int>("max");
        QTest::addColumn<QVector<int>>("head");
        QTest::addColumn<int>("count");
        QTest::newRow("1 2 4 used") << QVector<int>{1, 2, 4} << 256 << QVector<int>{3, 5, 6, 7} << 253;
        QTest::newRow("repeated numbers") << QVector<int>{2, 2, 3} << 5 << QVector<int>{1, 4, 5} << 3;
        QTest::newRow("all used") << QVector<int>{1, 2, 3} << 3 << QVector<int>{} << 0;
        QTest::newRow("numbers above the limit ignored") << QVector<int>{300} << 2 << QVector<int>{1, 2} << 2;
    }
    void freeNumbers()
    {
        QFETCH(QVector<int>, used);
        QFETCH(int, max);
        QFETCH(QVector<int>, head);
        QFETCH(int, count);
        QVector<PresetInfo> presets;
        for (int n : used)
            presets << Preset(n, 1, QStringLiteral("p%1").arg(n));
        const QVector<int> free = CAddPresetDialog::FreePresetNumbers(presets, max);
        QCOMPARE(free.size(), count);
        QCOMPARE(free.mid(0, head.size()), head);

        CAddPresetDialog dialog(nullptr, presets, max);
        QCOMPARE(dialog.GetPresetIndex(), head.value(0, -1));
        if (count < 2)
            return;
        // The name field offers the default name of the selected number.
        QCOMPARE(dialog.GetPresetName(), QStringLiteral("Preset%1").arg(head.first()));
        dialog.GetNumberComboBox()->setCurrentIndex(1);
        QCOMPARE(dialog.GetPresetName(), QStringLiteral("Preset%1").arg(free.at(1)));
    }

    void everyPathRefusesTheSameNames_data()
    {
        // `text` is what a user could enter; `bytes` what a request record carries
        // (rows that only exist as bytes leave `text` null and skip the widgets).
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::string>("bytes");
        QTest::addColumn<int>("verdict");
        auto row = [](const char *name, const QString &text, Verdict verdict) {
            const QByteArray utf8 = text.toUtf8();
            QTest::newRow(name) << text << std::string(utf8.constData(), size_t(utf8.size())) << int(verdict);
        };
        auto bytesOnly = [](const char *name, const std::string &bytes) {
            QTest::newRow(name) << QString() << bytes << int(Refused);
        };

        row("plain", QStringLiteral("Loading bay"), Accepted);
        row("eleven emoji fit twenty", QString::fromUcs4(U"\U0001F600").repeated(11), Accepted);
        row("letters of many scripts", QStringLiteral("Tür Ворота 大门"), Accepted);

        for (const QChar c : QStringLiteral("\\/:*?\"<>|"))
            row(qPrintable(QStringLiteral("forbidden %1").arg(c)), QStringLiteral("ab") + c + "cd", Refused);
        row("65 characters", QString(65, QLatin1Char('x')), Refused);
        row("65 emoji", QString::fromUcs4(U"\U0001F600").repeated(65), Refused);
        row("duplicate", QString::fromStdString(kTaken), Refused);
        row("NUL", QStringLiteral("ab") + QChar(0) + QStringLiteral("cd"), Refused);
        row("newline", QStringLiteral("ab\ncd"), Refused);
        row("right-to-left override", QStringLiteral("ab") + QChar(0x202E) + QStringLiteral("cd"), Refused);
        QTest::newRow("lone high surrogate")
            << (QStringLiteral("ab") + QChar(0xD800)) << std::string("ab\xED\xA0\x80") << int(Refused);
        QTest::newRow("lone low surrogate") << (QChar(0xDC00) + QStringLiteral("ab"))
                                            << std::string("\xED\xB0\x80"
                                                           "ab")
                                            << int(Refused);
        bytesOnly("invalid UTF-8", "ab\xC3\x28");
        bytesOnly("overlong slash", "ab\xC0\xAF");
        bytesOnly("cut-off sequence", "ab\xE2\x82");
    }
    void everyPathRefusesTheSameNames()
    {
        QFETCH(QString, text);
        QFETCH(std::string, bytes);
        QFETCH(int, verdict);
        const bool accepted = verdict == Accepted;

        if (!text.isNull()) {
            // The dialog's editor, with its 64-character input limit.
            CAddPresetDialog dialog(nullptr, {});
            const QValidator *validator = dialog.GetNameEdit()->validator();
            QVERIFY(validator);
            QString typed = text;
            int cursor = 0;
            const bool isDuplicateRow = QTest::currentDataTag() == QByteArray("duplicate");
            QCOMPARE(validator->validate(typed, cursor) == QValidator::Acceptable, accepted || isDuplicateRow);

            // The dialog's save check (20 characters) and the panel's list check (64).
            CPresetTableModel model(1.0);
            model.UpdatePresetList({RawPreset(1, PRESET_TYPE_DEVICE, kTaken)}, true);
            QCOMPARE(CBasePresetDialog::CheckName(text, &model, -1).isEmpty(), accepted);
            model.AddPresetItem(RawPreset(9, PRESET_TYPE_DEVICE, bytes), true, false); // the renamed row
            CSortPresetFilterModel proxy;
            proxy.setSourceModel(&model);
            QString tip;
            QCOMPARE(CheckListPresetName(text, &proxy, &tip), accepted);
        }

        // The controller: a device preset named through SetPreset.
        CUniversalPTZController controller;
        QSignalSpy finished(&controller, &CUniversalPTZController::signalPresetFinished);
        PresetControlRequest set;
        set.operation = "SetPreset";
        set.camera_index_code = kDome.toStdString();
        set.preset_index = 5;
        set.preset_name = bytes;
        controller.Preset(set);
        QTRY_COMPARE(finished.count(), 1);
        QCOMPARE(finished.at(0).at(1).toString().isEmpty(), accepted);

        // The controller's client presets.
        CPTZGetController getter;
        QString error;
        QCOMPARE(getter.AddOnePreset(kDome, RawPreset(5, PRESET_TYPE_VIRTUAL, bytes), error), accepted);
        QCOMPARE(error.isEmpty(), accepted);
        if (accepted)
            QVERIFY(getter.DelPreset(kDome, 5));

        // The host's store of client presets.
        AddPresetRequest add;
        add.camera_index_code = kDome.toStdString();
        add.preset = RawPreset(6, PRESET_TYPE_VIRTUAL, bytes);
        AddPresetResponse added;
        QCOMPARE(m_env.business()->AddPreset(add, added), accepted);
        QCOMPARE(added.error_text.empty(), accepted);
        if (accepted)
            QVERIFY(m_env.store()->removeVirtualPreset(kDome, 6));

        // Renames of an existing client preset, through the controller and the host.
        if (!text.isNull())
            QCOMPARE(getter.ModifyPresetName(kDome, 2, text, error), accepted);
        UpdatePresetRequest update;
        update.camera_index_code = kDome.toStdString();
        update.preset = RawPreset(2, PRESET_TYPE_VIRTUAL, bytes);
        UpdatePresetResponse updated;
        QCOMPARE(m_env.business()->UpdatePreset(update, updated), accepted);

        // Refused means nothing changed; accepted means kept exactly as given.
        const auto kept = m_env.store()->virtualPreset(kDome, 2);
        QVERIFY(kept);
        QCOMPARE(kept->name.toStdString(), accepted ? bytes : std::string("Yard"));
    }

private:
    PtzTestEnv m_env;
    CPresetTableModel *m_model = nullptr;
    std::optional<QuestionRecorder> m_questions;
};

QTEST_MAIN(TestPresetNames)
#include "tst_presetnames.moc"
