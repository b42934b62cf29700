#pragma once

#include <QElapsedTimer>
#include <QString>

// Tells a live view when to show "park action": for a few seconds after the camera it shows
// reports one more park action than before. A camera seen for the first time shows nothing,
// so binding a camera that parked long ago raises no notice.
class CParkActionNotice
{
public:
    static constexpr qint64 kShowMs = 4000;

    CParkActionNotice();

    // Feeds the camera's park-action count; true while the notice is to be shown.
    bool Update(const QString &cameraId, int parkActions);
    // The same at a given time in milliseconds (monotonic), for callers with their own clock.
    bool Update(const QString &cameraId, int parkActions, qint64 nowMs);

private:
    QElapsedTimer m_clock;
    QString m_camera;
    int m_count = 0;
    qint64 m_shownAt = -1;
};
