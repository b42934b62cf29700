#include "vs_ui_data_controller/cinformationmgr.h"

#include <QFrame>
#include <QGraphicsOpacityEffect>
#include <QGuiApplication>
#include <QLabel>
#include <QPropertyAnimation>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>

namespace vs_ui_data_controller {

namespace {
constexpr int kScreenMargin = 16;
constexpr int kNoticeWidth = 320;
} // namespace

const char *CInformationMgr::NoticeObjectName()
{
    return "CInformationNotice";
}

const char *CInformationMgr::NoticeTextObjectName()
{
    return "ptr_information_text_";
}

CInformationMgr::CInformationMgr() = default;
CInformationMgr::~CInformationMgr() = default;

QWidget *CInformationMgr::ShowInformationAtScreenRightBottom_V3(const QString &text, QWidget *parent)
{
    if (m_current)
        m_current->close();

    QWidget *owner = parent ? parent->window() : nullptr;
    auto *notice = new QFrame(owner, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    notice->setObjectName(QLatin1String(NoticeObjectName()));
    notice->setAttribute(Qt::WA_DeleteOnClose);
    notice->setAttribute(Qt::WA_ShowWithoutActivating);
    notice->setFrameShape(QFrame::StyledPanel);
    notice->setFixedWidth(kNoticeWidth);

    auto *layout = new QVBoxLayout(notice);
    layout->setContentsMargins(16, 12, 16, 12);
    auto *label = new QLabel(text, notice);
    label->setObjectName(QLatin1String(NoticeTextObjectName()));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(label);
    notice->adjustSize();

    QScreen *screen = owner ? owner->screen() : QGuiApplication::primaryScreen();
    if (screen) {
        const QRect area = screen->availableGeometry();
        notice->move(area.right() - notice->width() - kScreenMargin + 1,
                     area.bottom() - notice->height() - kScreenMargin + 1);
    }
    notice->setWindowOpacity(1.0);
    notice->show();
    m_current = notice;

    ShowThenFade(notice);
    emit SignalInformationShown(text);
    return notice;
}

void CInformationMgr::ShowThenFade(QWidget *widget)
{
    if (!widget)
        return;
    // A child widget has no window opacity: it fades through an opacity effect.
    auto *effect = widget->isWindow() ? nullptr : qobject_cast<QGraphicsOpacityEffect *>(widget->graphicsEffect());
    if (!widget->isWindow() && !effect) {
        effect = new QGraphicsOpacityEffect(widget);
        widget->setGraphicsEffect(effect);
    }
    delete widget->findChild<QPropertyAnimation *>(QString(), Qt::FindDirectChildrenOnly);
    if (effect)
        effect->setOpacity(1.0);
    else
        widget->setWindowOpacity(1.0);
    auto *timer = widget->findChild<QTimer *>(QStringLiteral("ptr_information_timer_"), Qt::FindDirectChildrenOnly);
    if (!timer) {
        timer = new QTimer(widget);
        timer->setObjectName(QStringLiteral("ptr_information_timer_"));
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, widget, [this, widget] { StartFade(widget); });
    }
    timer->start(m_displayDuration);
    widget->show();
}

void CInformationMgr::StartFade(QWidget *notice)
{
    QObject *target = notice;
    QByteArray property("windowOpacity");
    if (auto *effect = qobject_cast<QGraphicsOpacityEffect *>(notice->graphicsEffect())) {
        target = effect;
        property = "opacity";
    }
    auto *fade = new QPropertyAnimation(target, property, notice);
    fade->setDuration(m_fadeDuration);
    fade->setStartValue(target->property(property.constData()));
    fade->setEndValue(0.0);
    connect(fade, &QPropertyAnimation::finished, notice, [notice] {
        notice->close();
        if (!notice->testAttribute(Qt::WA_DeleteOnClose))
            notice->deleteLater();
    });
    fade->start();
}

void CInformationMgr::SetDisplayDuration(int msecs)
{
    m_displayDuration = qMax(0, msecs);
}

int CInformationMgr::GetDisplayDuration() const
{
    return m_displayDuration;
}

void CInformationMgr::SetFadeDuration(int msecs)
{
    m_fadeDuration = qMax(0, msecs);
}

int CInformationMgr::GetFadeDuration() const
{
    return m_fadeDuration;
}

QWidget *CInformationMgr::GetCurrentNotice() const
{
    return m_current;
}

} // namespace vs_ui_data_controller
