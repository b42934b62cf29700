// One table of preset names run through every place that accepts a name: the
// dialog's editor and save check, the panel's list check, the controller
// (device SetPreset, client presets of the getter) and the host's preset store.
#include "support/ptztestenv.h"
#include "support/records.h"

#include "preset/caddpresetdialog.h"
#include "preset/cbasepresetdialog.h"
#include "preset/cpresettablemodel.h"
#include "preset/csortpresetfiltermodel.h"
#include "preset/presetnamerules.h"

#include "quillon/cplaceholdlineedit.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QRegularExpressionValidator>
#include <QSignalSpy>
#include <QtTest>

using namespace PreviewPTZControl;
using namespace ptz_plugin_protocol;
using zeph_ptz_controller::CPTZGetController;
using zeph_ptz_controller::CUniversalPTZController;

Q_DECLARE_METATYPE(std::string)

namespace {

const std::string kTaken = "Gate"; // preset 1 of every kind carries it

enum Verdict { Refused, Accepted };

} // namespace

class TestPresetNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyPathRefusesTheSameNames_data();
    void everyPathRefusesTheSameNames();

private:
    PtzTestEnv m_env;
};

void TestPresetNames::init()
{
    m_env.setUp();
    CUniversalPTZController controller;
    QSignalSpy finished(&controller, &CUniversalPTZController::signalPresetFinished);
    PresetControlRequest set;
    set.operation = "SetPreset";
    set.camera_index_code = kDome.toStdString();
    set.preset_index = 1;
    set.preset_name = kTaken;
    controller.Preset(set);
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(finished.at(0).at(1).toString(), QString());

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
}

void TestPresetNames::cleanup()
{
    m_env.tearDown();
}

void TestPresetNames::everyPathRefusesTheSameNames_data()
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

    const QString nine = QStringLiteral("\\/:*?\"<>|");
    const char *forbiddenNames[] = {"backslash",    "slash",     "colon",        "asterisk",    "question mark",
                                    "double quote", "less than", "greater than", "vertical bar"};
    for (int i = 0; i < nine.size(); ++i)
        row(forbiddenNames[i], QStringLiteral("ab") + nine.at(i) + QStringLiteral("cd"), Refused);
    row("65 characters", QString(65, QLatin1Char('x')), Refused);
    row("100000 characters", QString(100000, QLatin1Char('x')), Refused);
    row("65 emoji", QString::fromUcs4(U"\U0001F600").repeated(65), Refused);
    row("duplicate", QString::fromStdString(kTaken), Refused);
    row("NUL", QStringLiteral("ab") + QChar(0) + QStringLiteral("cd"), Refused);
    row("newline", QStringLiteral("ab\ncd"), Refused);
    row("bell", QStringLiteral("ab\acd"), Refused);
    row("right-to-left override", QStringLiteral("ab") + QChar(0x202E) + QStringLiteral("cd"), Refused);
    QTest::newRow("lone high surrogate") << (QStringLiteral("ab") + QChar(0xD800)) << std::string("ab\xED\xA0\x80")
                                         << int(Refused);
    QTest::newRow("lone low surrogate") << (QChar(0xDC00) + QStringLiteral("ab"))
                                        << std::string("\xED\xB0\x80"
                                                       "ab")
                                        << int(Refused);
    bytesOnly("invalid UTF-8", "ab\xC3\x28");
    bytesOnly("overlong slash", "ab\xC0\xAF");
    bytesOnly("cut-off sequence", "ab\xE2\x82");
}

void TestPresetNames::everyPathRefusesTheSameNames()
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

QTEST_MAIN(TestPresetNames)
#include "tst_presetnames.moc"
