#include "ctoast.h"

#include "vs_ui_data_controller/cinformationmgr.h"

#include <QTimer>

CToast::CToast(const QString &text, int level, QWidget *parent)
    : QLabel(text, parent)
    , m_message(text)
    , m_level(level)
{
    setObjectName(ObjectNameForLevel(level));
    setWordWrap(true);
    setMargin(10);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    const QColor c = ColorForLevel(level);
    setStyleSheet(QStringLiteral("QLabel { background: rgba(%1, %2, %3, 230); color: white; border-radius: 6px; }")
                      .arg(c.red())
                      .arg(c.green())
                      .arg(c.blue()));
    MarkFresh();
    Tarn::Base::CSingleton<vs_ui_data_controller::CInformationMgr>::Instance()->ShowThenFade(this);
}

QString CToast::ObjectNameForLevel(int level)
{
    switch (level) {
    case 0:
        return QStringLiteral("ptr_toast_failure_");
    case 2:
        return QStringLiteral("ptr_toast_warning_");
    case 3:
        return QStringLiteral("ptr_toast_success_");
    default:
        return QStringLiteral("ptr_toast_info_");
    }
}

QColor CToast::ColorForLevel(int level)
{
    switch (level) {
    case 0:
        return QColor(200, 52, 52);
    case 2:
        return QColor(214, 140, 20);
    case 3:
        return QColor(46, 150, 80);
    default:
        return QColor(70, 78, 92);
    }
}

void CToast::Repeat()
{
    if (m_fresh)
        return;
    MarkFresh();
    ++m_count;
    setText(tr("%1 (%2×)").arg(m_message).arg(m_count));
    adjustSize();
    Tarn::Base::CSingleton<vs_ui_data_controller::CInformationMgr>::Instance()->ShowThenFade(this);
}

void CToast::MarkFresh()
{
    // Copies of one message sent through several panels arrive in the same turn of the event loop.
    m_fresh = true;
    QTimer::singleShot(0, this, [this] { m_fresh = false; });
}
