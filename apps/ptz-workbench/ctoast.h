#pragma once

#include <QLabel>

// A message tip over the live-view grid, coloured by level, that fades out by itself.
class CToast : public QLabel
{
    Q_OBJECT

public:
    // Levels of the panel's tips: 0 failure, 2 warning, 3 success; others are plain notices.
    CToast(const QString &text, int level, QWidget *parent);

    static QString ObjectNameForLevel(int level);
    static QColor ColorForLevel(int level);

    // Shows the toast for `visibleMs`, then fades it out over `fadeMs` and deletes it.
    void Start(int visibleMs = 3000, int fadeMs = 600);
};
