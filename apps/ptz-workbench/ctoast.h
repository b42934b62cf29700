#pragma once

#include <QLabel>

// A message tip over the live-view grid, coloured by level. The host's information manager
// times it and fades it out.
class CToast : public QLabel
{
    Q_OBJECT

public:
    // Levels of the panel's tips: 0 failure, 2 warning, 3 success; others are plain notices.
    CToast(const QString &text, int level, QWidget *parent);

    static QString ObjectNameForLevel(int level);
    static QColor ColorForLevel(int level);

    QString Message() const { return m_message; }
    int Level() const { return m_level; }
    int Count() const { return m_count; }
    // The same message arrived again. Copies in the same turn of the event loop are one failure
    // told by several listeners and change nothing; a later one counts as a repeat ("(2×)")
    // and shows anew.
    void Repeat();

private:
    QString m_message;
    int m_level = 1;
    int m_count = 1;
    bool m_fresh = false;

    void MarkFresh();
};
