#include "cparkactionnotice.h"

CParkActionNotice::CParkActionNotice()
{
    m_clock.start();
}

bool CParkActionNotice::Update(const QString &cameraId, int parkActions)
{
    return Update(cameraId, parkActions, m_clock.elapsed());
}

bool CParkActionNotice::Update(const QString &cameraId, int parkActions, qint64 nowMs)
{
    if (cameraId != m_camera) {
        m_camera = cameraId;
        m_count = parkActions;
        m_shownAt = -1;
        return false;
    }
    // A lower count is a restarted driver: take it as the new base without a notice.
    if (parkActions > m_count)
        m_shownAt = nowMs;
    m_count = parkActions;
    return m_shownAt >= 0 && nowMs - m_shownAt < kShowMs;
}
