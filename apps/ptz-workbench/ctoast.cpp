#include "ctoast.h"

#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>
#include <QTimer>

CToast::CToast(const QString &text, int level, QWidget *parent)
    : QLabel(text, parent)
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

void CToast::Start(int visibleMs, int fadeMs)
{
    auto *effect = new QGraphicsOpacityEffect(this);
    effect->setOpacity(1.0);
    setGraphicsEffect(effect);
    show();
    QTimer::singleShot(visibleMs, this, [this, effect, fadeMs] {
        auto *fade = new QPropertyAnimation(effect, "opacity", this);
        fade->setDuration(fadeMs);
        fade->setStartValue(1.0);
        fade->setEndValue(0.0);
        connect(fade, &QPropertyAnimation::finished, this, &QObject::deleteLater);
        fade->start();
    });
}
