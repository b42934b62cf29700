#include "support/records.h"

#include "preset/caddpresetdialog.h"
#include "preset/cbasepresetdialog.h"
#include "preset/ceditpresetdialog.h"
#include "preset/cpresettablemodel.h"
#include "preset/csortpresetfiltermodel.h"
#include "preset/presetnamerules.h"

#include "quillon/cplaceholdlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QComboBox>
#include <QKeyEvent>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using namespace PreviewPTZControl;
using ptz_plugin_protocol::PresetInfo;
using vs_ui_data_controller::CNomalMessageManager;

namespace {
const QString kForbiddenTip = QStringLiteral("InvalidPresetPointName TheInputCannotContainAnyOfTheFollowingCharacters"
                                             " / \\ : * ? \" < > |");
} // namespace

class TstPresetDialogs : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_model = new CPresetTableModel(1.0);
        m_model->UpdatePresetList({Preset(1, 1, QStringLiteral("Gate")), Preset(2, 3, QStringLiteral("Door"))}, true);
        m_messages.clear();
        CNomalMessageManager::Instance()->SetAnswerProvider([this](const QString &text) {
            m_messages << text;
            return int(CNomalMessageManager::AnswerConfirm);
        });
    }
    void cleanup()
    {
        CNomalMessageManager::Instance()->SetAnswerProvider({});
        delete m_model;
    }
    void dialogSaveChecks_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message"); // empty: accepted
        const QString tooLong = QStringLiteral("InvalidPresetPointName NoMoreThan20CharactersCanBeInput");
        QTest::newRow("empty") << QString() << QStringLiteral("TheNameCannotBeEmptyuwCnESOS");
        QTest::newRow("blanks only pass") << QStringLiteral("   ") << QString();
        const QString forbidden = QStringLiteral("\\/:*?\"<>|");
        for (const QChar c : forbidden)
            QTest::newRow(qPrintable(QStringLiteral("forbidden %1").arg(c)))
                << (QStringLiteral("ab") + c + "cd") << kForbiddenTip;
        QTest::newRow("forbidden wins over length") << QString(30, QLatin1Char('a')) + "|" << kForbiddenTip;
        QTest::newRow("apostrophe saved") << QStringLiteral("O'Neil") << QString();
        QTest::newRow("percent saved") << QStringLiteral("50%") << QString();
        QTest::newRow("20 characters") << QString(20, QLatin1Char('x')) << QString();
        QTest::newRow("21 characters") << QString(21, QLatin1Char('x')) << tooLong;
        QTest::newRow("64 characters") << QString(64, QLatin1Char('x')) << tooLong;
        QTest::newRow("65 typed, 64 kept") << QString(65, QLatin1Char('x')) << tooLong;
        QTest::newRow("unicode letters") << QStringLiteral("Tür Ворота 大门 é") << QString();
        QTest::newRow("duplicate") << QStringLiteral("Gate") << QStringLiteral("ThePresetPointNameAlakrzNA");
        QTest::newRow("duplicate of virtual") << QStringLiteral("Door") << QStringLiteral("ThePresetPointNameAlakrzNA");
        QTest::newRow("case differs") << QStringLiteral("gate") << QString();
        QTest::newRow("substring") << QStringLiteral("Gat") << QString();
    }
    void dialogSaveChecks()
    {
        QFETCH(QString, name);
        QFETCH(QString, message);
        CAddPresetDialog dialog(nullptr, {Preset(1, 1, "Gate"), Preset(2, 3, "Door")});
        dialog.SetPresetModel(m_model);
        dialog.GetNameEdit()->setText(name);
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.GetConfirmButton()->click();
        if (message.isEmpty()) {
            QCOMPARE(m_messages, QStringList());
            QCOMPARE(accepted.count(), 1);
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
        } else {
            QCOMPARE(m_messages, QStringList{message});
            QCOMPARE(accepted.count(), 0);
        }
    }
    void duplicatesSkipEmptyDisabledAndEdited()
    {
        m_model->AddPresetItem(Preset(3, 1, "Yard"), true, false);
        m_model->AddPresetItem(Preset(4, 1, "Roof"), true, false);
        m_model->AddPresetItem(Preset(5, 1, "Dock"), true, false);
        m_model->ClearPresetItem(3); // "Roof" row: disabled, named Preset4
        m_model->ResetPresetItems(); // every row empty now: names Preset1..Preset5
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Preset1"), m_model, -1), QString());

        CPresetTableModel model(1.0);
        model.UpdatePresetList({Preset(1, 1, "Gate"), Preset(2, 3, "Door"), Preset(3, 1, "Dev three")}, true);
        model.ClearPresetItem(0);
        // The cleared row keeps its number but is disabled; its default name is no duplicate.
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Preset1"), &model, -1), QString());
        // Keeping the edited preset's own name is fine; another preset's name is not.
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Door"), &model, 2, 3), QString());
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Dev three"), &model, 2, 3),
                 QStringLiteral("ThePresetPointNameAlakrzNA"));
        QCOMPARE(CBasePresetDialog::CheckName(QStringLiteral("Door"), &model, 5),
                 QStringLiteral("ThePresetPointNameAlakrzNA"));

        CEditPresetDialog dialog(nullptr, Preset(2, 3, "Door"));
        dialog.SetPresetModel(&model);
        QSignalSpy accepted(&dialog, &QDialog::accepted);
        dialog.GetConfirmButton()->click();
        QCOMPARE(accepted.count(), 1);
    }
    void validatorRefusesTypedCharacters_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("kept");
        QTest::newRow("plain") << "Gate 1"
                               << "Gate 1";
        const QString refused = QStringLiteral("\\/:*?\"<|'%>");
        for (const QChar c : refused)
            QTest::newRow(qPrintable(QStringLiteral("refuses %1").arg(c))) << (QStringLiteral("a") + c + "b") << "ab";
        QTest::newRow("unicode") << QStringLiteral("Тор é") << QStringLiteral("Тор é");
        QTest::newRow("stops at 64") << QString(70, QLatin1Char('y')) << QString(64, QLatin1Char('y'));
    }
    void validatorRefusesTypedCharacters()
    {
        QFETCH(QString, typed);
        QFETCH(QString, kept);
        CAddPresetDialog dialog(nullptr, {});
        dialog.GetNameEdit()->clear();
        // Key events carrying text, so non-Latin characters are typed as well.
        for (const QChar c : typed) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(c));
            QCoreApplication::sendEvent(dialog.GetNameEdit(), &press);
        }
        QCOMPARE(dialog.GetNameEdit()->text(), kept);
    }
    void freeNumbers_data()
    {
        QTest::addColumn<QVector<int>>("used");
        QTest::addColumn<int>("max");
        QTest::addColumn<QVector<int>>("head");
        QTest::addColumn<int>("count");
        QTest::newRow("1 2 4 used") << QVector<int>{1, 2, 4} << 256 << QVector<int>{3, 5, 6, 7} << 253;
        QTest::newRow("none used") << QVector<int>{} << 256 << QVector<int>{1, 2, 3} << 256;
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
        QComboBox *box = dialog.GetNumberComboBox();
        QCOMPARE(box->count(), count);
        if (count == 0) {
            QCOMPARE(dialog.GetPresetIndex(), -1);
            return;
        }
        QCOMPARE(box->currentIndex(), 0);
        QCOMPARE(dialog.GetPresetIndex(), head.first());
        QCOMPARE(dialog.GetPresetName(), QStringLiteral("Preset%1").arg(head.first()));
        box->setCurrentIndex(1);
        QCOMPARE(dialog.GetPresetName(), QStringLiteral("Preset%1").arg(free.at(1)));
    }
    void editDialogKeepsNumberAndName()
    {
        CEditPresetDialog dialog(nullptr, Preset(17, 1, "Gate"));
        QCOMPARE(dialog.GetPresetName(), QStringLiteral("Gate"));
        QCOMPARE(dialog.GetPresetIndex(), 17);
        QVERIFY(!dialog.GetNumberComboBox()->isEnabled());
    }
    void listRenameRules_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("message");
        const QString tooLong = QStringLiteral("InvalidPresetPointName NoMoreThan64CharactersCanBeInput");
        QTest::newRow("empty") << QString() << QStringLiteral("NameCanNotBeEmpty");
        QTest::newRow("blanks only") << QStringLiteral(" \t ") << QStringLiteral("NameCanNotBeEmpty");
        for (const QChar c : QStringLiteral("\\/:*?\"<>|"))
            QTest::newRow(qPrintable(QStringLiteral("forbidden %1").arg(c)))
                << (QStringLiteral("x") + c) << kForbiddenTip;
        QTest::newRow("21 characters pass") << QString(21, QLatin1Char('x')) << QString();
        QTest::newRow("64 characters") << QString(64, QLatin1Char('x')) << QString();
        QTest::newRow("64 after trimming") << QStringLiteral("  ") + QString(64, QLatin1Char('x')) + "  " << QString();
        QTest::newRow("65 characters") << QString(65, QLatin1Char('x')) << tooLong;
        QTest::newRow("unicode") << QStringLiteral("Въезд 東門") << QString();
        QTest::newRow("own name once") << QStringLiteral("Gate") << QString();
        QTest::newRow("two rows carry it") << QStringLiteral("Twin") << QStringLiteral("PresetNameAlreadyExists");
        QTest::newRow("case differs") << QStringLiteral("twin") << QString();
    }
    void listRenameRules()
    {
        QFETCH(QString, name);
        QFETCH(QString, message);
        m_model->AddPresetItem(Preset(7, 1, "Twin"), true, false);
        m_model->AddPresetItem(Preset(8, 3, "Twin"), true, false);
        CSortPresetFilterModel proxy;
        proxy.setSourceModel(m_model);
        QString tip = QStringLiteral("stale");
        QCOMPARE(CheckListPresetName(name, &proxy, &tip), message.isEmpty());
        QCOMPARE(tip, message);
        QVERIFY(!CheckListPresetName(name, nullptr, &tip));
        QCOMPARE(tip, QString());
    }

private:
    CPresetTableModel *m_model = nullptr;
    QStringList m_messages;
};

QTEST_MAIN(TstPresetDialogs)
#include "tst_presetdialogs.moc"
