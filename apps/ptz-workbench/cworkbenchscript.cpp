#include "cworkbenchscript.h"

#include "cworkbenchwindow.h"

#include "boundary/themename.h"
#include "panel/cpreviewptzwnd.h"

#include <QAbstractButton>
#include <QEventLoop>
#include <QRegularExpression>
#include <QTextCodec>
#include <QTimer>

namespace {

struct Direction
{
    const char *name;
    int key;
    bool keypad;
};

const Direction kDirections[] = {
    {"up", Qt::Key_Up, false},         {"down", Qt::Key_Down, false},  {"left", Qt::Key_Left, false},
    {"right", Qt::Key_Right, false},   {"upleft", Qt::Key_7, true},    {"upright", Qt::Key_9, true},
    {"downleft", Qt::Key_1, true},     {"downright", Qt::Key_3, true}, {"zoomin", Qt::Key_Plus, false},
    {"zoomout", Qt::Key_Minus, false},
};

const Direction *FindDirection(const QString &name)
{
    for (const Direction &d : kDirections) {
        if (name == QLatin1String(d.name))
            return &d;
    }
    return nullptr;
}

bool IsCount(const QString &text, int min, int max)
{
    bool ok = false;
    const int v = text.toInt(&ok);
    return ok && v >= min && v <= max;
}

void WaitInEventLoop(int ms)
{
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

QStringList CWorkbenchScript::Directions()
{
    QStringList out;
    for (const Direction &d : kDirections)
        out << QString::fromLatin1(d.name);
    return out;
}

bool CWorkbenchScript::ParseFile(const QByteArray &bytes, QString *error)
{
    // Checked line by line so the message can say where; a NUL or broken UTF-8 would
    // otherwise cut the script short silently, a release included.
    const QList<QByteArray> lines = bytes.split('\n');
    QStringList text;
    QTextCodec *utf8 = QTextCodec::codecForName("UTF-8");
    for (int i = 0; i < lines.size(); ++i) {
        const QByteArray &line = lines.at(i);
        QTextCodec::ConverterState state;
        const QString decoded = utf8->toUnicode(line.constData(), line.size(), &state);
        QString why;
        if (line.contains('\0'))
            why = QStringLiteral("contains a NUL byte; is this a text file?");
        else if (state.invalidChars > 0 || state.remainingChars > 0)
            why = QStringLiteral("is not valid UTF-8");
        if (!why.isEmpty()) {
            if (error)
                *error = QStringLiteral("line %1 %2").arg(i + 1).arg(why);
            m_actions.clear();
            return false;
        }
        text << decoded;
    }
    return Parse(text.join(QLatin1Char('\n')), error);
}

QString CWorkbenchScript::Excerpt(const QString &line)
{
    constexpr int kLongest = 80;
    const QString trimmed = line.trimmed();
    return trimmed.size() <= kLongest ? trimmed : trimmed.left(kLongest) + QChar(0x2026);
}

bool CWorkbenchScript::Parse(const QString &text, QString *error)
{
    m_actions.clear();
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i < lines.size(); ++i) {
        QString line = lines.at(i);
        const int hash = line.indexOf(QLatin1Char('#'));
        if (hash >= 0)
            line.truncate(hash);
        // Any blank separates words: spaces, tabs, a stray carriage return.
        QStringList words = line.split(QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
        if (words.isEmpty())
            continue;
        Action action{i + 1, words.takeFirst().toLower(), words};
        const QString &v = action.verb;
        QString expected;
        if (v == QLatin1String("bind")) {
            if (words.size() != 2 || !IsCount(words.at(0), 1, 9))
                expected = QStringLiteral("'bind SCREEN CAMERA_ID' with SCREEN from 1 to 9");
        } else if (v == QLatin1String("select")) {
            if (words.size() != 1 || !IsCount(words.at(0), 1, 9))
                expected = QStringLiteral("'select SCREEN' with SCREEN from 1 to 9");
        } else if (v == QLatin1String("screens")) {
            if (words.size() != 1 || !QStringList{"1", "4", "9"}.contains(words.at(0)))
                expected = QStringLiteral("'screens 1', 'screens 4' or 'screens 9'");
        } else if (v == QLatin1String("press") || v == QLatin1String("release")) {
            if (words.size() != 1 || !FindDirection(words.at(0)))
                expected = QStringLiteral("'%1 DIRECTION' with DIRECTION one of %2")
                               .arg(v, Directions().join(QStringLiteral(", ")));
        } else if (v == QLatin1String("wait")) {
            if (words.size() != 1 || !IsCount(words.at(0), 0, 600000))
                expected = QStringLiteral("'wait MS' with MS from 0 to 600000");
        } else if (v == QLatin1String("click")) {
            if (words.size() != 1)
                expected = QStringLiteral("'click OBJECTNAME'");
        } else if (v == QLatin1String("theme")) {
            if (words.size() != 1 || (words.at(0) != QLatin1String("dark") && words.at(0) != QLatin1String("white")))
                expected = QStringLiteral("'theme dark' or 'theme white'");
        } else if (v == QLatin1String("layout")) {
            if (words.size() != 1 || (words.at(0) != QLatin1String("side") && words.at(0) != QLatin1String("stacked")))
                expected = QStringLiteral("'layout side' or 'layout stacked'");
        } else if (v == QLatin1String("fisheye")) {
            if (words.size() != 2 || !IsCount(words.at(0), 1, 9)
                || (words.at(1) != QLatin1String("open") && words.at(1) != QLatin1String("close")))
                expected = QStringLiteral("'fisheye SCREEN open|close' with SCREEN from 1 to 9");
        } else {
            expected =
                QStringLiteral("one of bind, select, screens, press, release, wait, click, theme, layout, fisheye");
        }
        if (!expected.isEmpty()) {
            if (error)
                *error =
                    QStringLiteral("line %1: expected %2, got '%3'").arg(i + 1).arg(expected, Excerpt(lines.at(i)));
            m_actions.clear();
            return false;
        }
        m_actions.append(action);
    }
    return true;
}

bool CWorkbenchScript::Run(CWorkbenchWindow *window, QString *error, const std::function<void(int)> &wait) const
{
    auto fail = [error](const Action &a, const QString &why) {
        if (error)
            *error = QStringLiteral("line %1: %2").arg(a.line).arg(why);
        return false;
    };
    for (const Action &a : m_actions) {
        const QString &v = a.verb;
        if (v == QLatin1String("bind")) {
            const int screen = a.args.at(0).toInt() - 1;
            if (screen >= window->ScreenCount())
                return fail(
                    a,
                    QStringLiteral("screen %1 is not shown (%2 screens)").arg(screen + 1).arg(window->ScreenCount()));
            if (!window->BindCamera(screen, a.args.at(1)))
                return fail(a, QStringLiteral("unknown camera '%1'").arg(Excerpt(a.args.at(1))));
        } else if (v == QLatin1String("select")) {
            const int screen = a.args.at(0).toInt() - 1;
            if (screen >= window->ScreenCount())
                return fail(
                    a,
                    QStringLiteral("screen %1 is not shown (%2 screens)").arg(screen + 1).arg(window->ScreenCount()));
            window->SelectScreen(screen);
        } else if (v == QLatin1String("screens")) {
            window->SetScreenCount(a.args.at(0).toInt());
        } else if (v == QLatin1String("press") || v == QLatin1String("release")) {
            const Direction *d = FindDirection(a.args.at(0));
            window->SteerByKey(d->key, d->keypad ? Qt::KeypadModifier : Qt::NoModifier, v == QLatin1String("press"));
        } else if (v == QLatin1String("wait")) {
            if (wait)
                wait(a.args.at(0).toInt());
            else
                WaitInEventLoop(a.args.at(0).toInt());
        } else if (v == QLatin1String("click")) {
            PreviewPTZControl::CPreviewPTZWnd *panel = window->Panel(window->SelectedScreen());
            // The white theme renames the panel's widgets; a script names them by their dark name.
            const QString name = a.args.at(0);
            auto *button = panel ? panel->findChild<QAbstractButton *>(name) : nullptr;
            if (!button && panel)
                button = panel->findChild<QAbstractButton *>(PreviewPTZControl::WhiteObjectName(name));
            if (!button)
                return fail(a, QStringLiteral("no button named '%1' in the selected panel").arg(Excerpt(a.args.at(0))));
            button->click();
        } else if (v == QLatin1String("theme")) {
            window->SetWhiteTheme(a.args.at(0) == QLatin1String("white"));
        } else if (v == QLatin1String("layout")) {
            window->SetStackedLayout(a.args.at(0) == QLatin1String("stacked"));
        } else if (v == QLatin1String("fisheye")) {
            if (!window->SetFishEyeOpen(a.args.at(0).toInt() - 1, a.args.at(1) == QLatin1String("open")))
                return fail(a, QStringLiteral("screen %1 shows no fish-eye camera").arg(a.args.at(0)));
        }
    }
    return true;
}
