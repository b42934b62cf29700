#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

class CWorkbenchWindow;

// A small text of timed actions for screenshots and checks, one per line ('#' starts a comment):
//   bind SCREEN CAMERA_ID      select SCREEN          screens 1|4|9
//   press DIRECTION            release DIRECTION      wait MS
//   click OBJECTNAME           theme dark|white       layout side|stacked
//   fisheye SCREEN open|close
// DIRECTION is up, down, left, right, upleft, upright, downleft, downright, zoomin or zoomout.
class CWorkbenchScript
{
public:
    struct Action
    {
        int line = 0;
        QString verb;
        QStringList args;
    };

    // Parses a script file's bytes: a NUL byte or invalid UTF-8 is refused with its line number.
    bool ParseFile(const QByteArray &bytes, QString *error);
    // Parses the text; on the first bad line returns false with "line N: ..." in `error`.
    bool Parse(const QString &text, QString *error);
    const QVector<Action> &Actions() const { return m_actions; }

    // Runs the actions on the window. `wait` lets time pass (the real event loop by default).
    // Returns false with "line N: ..." when an action cannot be carried out (unknown camera or button).
    bool Run(CWorkbenchWindow *window, QString *error, const std::function<void(int ms)> &wait = {}) const;

    static QStringList Directions();
    // A line as echoed in a message: trimmed, cut after 80 characters with an ellipsis.
    static QString Excerpt(const QString &line);

private:
    QVector<Action> m_actions;
};
