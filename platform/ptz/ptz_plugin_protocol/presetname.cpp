#include "ptz_plugin_protocol/presetname.h"

#include "ptz_plugin_protocol/ptzlimits.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QTextCodec>

namespace ptz_plugin_protocol {

namespace {
QString Tr(const char *text)
{
    return QCoreApplication::translate("ptz_plugin_protocol", text);
}

// Text-direction marks, embeddings, overrides and isolates: they reorder how
// a name reads without showing themselves.
bool IsDirectionControl(char32_t c)
{
    return c == 0x061C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

// The same set inside a character class, for the editor's expression.
const char kInvisibleClass[] = "\\p{Cc}\\x{061C}\\x{200E}\\x{200F}\\x{202A}-\\x{202E}\\x{2066}-\\x{2069}";
} // namespace

QString PresetNameForbiddenList()
{
    return QStringLiteral(" / \\ : * ? \" < > |");
}

const QRegularExpression &PresetNameForbiddenExpression()
{
    static const QRegularExpression forbidden(QStringLiteral("\\\\|\\/|\\:|\\*|\\?|\\\"|\\<|\\>|\\|"));
    return forbidden;
}

QRegularExpression PresetNameInputExpression(int max_length)
{
    return QRegularExpression(QStringLiteral("^[^\\\\/:*?\"<|'%>") + QLatin1String(kInvisibleClass)
                              + QStringLiteral("]{1,%1}$").arg(max_length));
}

bool PresetNameHasInvisibleCharacters(const QString &name)
{
    for (int i = 0; i < name.size(); ++i) {
        const QChar c = name.at(i);
        if (c.isHighSurrogate()) {
            if (i + 1 >= name.size() || !name.at(i + 1).isLowSurrogate())
                return true;
            ++i;
            continue;
        }
        if (c.isLowSurrogate() || c.category() == QChar::Other_Control || IsDirectionControl(c.unicode()))
            return true;
    }
    return false;
}

int PresetNameLength(const QString &name)
{
    int length = 0;
    for (int i = 0; i < name.size(); ++i, ++length) {
        if (name.at(i).isHighSurrogate() && i + 1 < name.size() && name.at(i + 1).isLowSurrogate())
            ++i;
    }
    return length;
}

bool DecodePresetName(const std::string &utf8, QString *name)
{
    QTextCodec::ConverterState state(QTextCodec::ConvertInvalidToNull);
    const QString text = QTextCodec::codecForMib(106)->toUnicode(utf8.data(), int(utf8.size()), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return false;
    if (name)
        *name = text;
    return true;
}

QString CheckPresetName(const std::string &utf8_name)
{
    QString name;
    if (!DecodePresetName(utf8_name, &name))
        return Tr("The preset name is not valid UTF-8 text.");
    return CheckPresetName(name);
}

QString CheckPresetName(const QString &name)
{
    if (name.trimmed().isEmpty())
        return Tr("A preset needs a name.");
    if (PresetNameForbiddenExpression().match(name).hasMatch())
        return Tr("A preset name cannot contain any of%1.").arg(PresetNameForbiddenList());
    if (PresetNameHasInvisibleCharacters(name))
        return Tr("A preset name cannot contain control characters or text-direction marks.");
    const int length = PresetNameLength(name);
    if (length > kMaxPresetNameLength)
        return Tr("A preset name holds at most %1 characters, not %2.").arg(kMaxPresetNameLength).arg(length);
    return QString();
}

QString DuplicatePresetNameError(const QString &name)
{
    return Tr("Another preset of this camera is already called \"%1\".").arg(name);
}

} // namespace ptz_plugin_protocol
