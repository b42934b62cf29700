#include "quillon/csearchlineedit.h"

#include <QAction>
#include <QPainter>
#include <QPixmap>
#include <QTimer>

namespace Quillon {

namespace {
QIcon MagnifierIcon(const QColor &color)
{
    // Drawn rather than loaded so the library carries no image resources.
    QPixmap pm(32, 32);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(color, 3));
    p.drawEllipse(QRectF(5, 5, 16, 16));
    p.drawLine(QPointF(19, 19), QPointF(27, 27));
    return QIcon(pm);
}
} // namespace

CSearchLineEdit::CSearchLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    setClearButtonEnabled(true);
    QAction *search = addAction(MagnifierIcon(palette().color(QPalette::PlaceholderText)), QLineEdit::LeadingPosition);
    search->setObjectName(QStringLiteral("ptr_search_action_"));

    m_delay = new QTimer(this);
    m_delay->setSingleShot(true);
    m_delay->setInterval(200);
    connect(m_delay, &QTimer::timeout, this, &CSearchLineEdit::ReportSearchText);
    // textChanged, not textEdited: the clear button and setText count too.
    connect(this, &QLineEdit::textChanged, this, &CSearchLineEdit::OnTextEdited);
}

CSearchLineEdit::~CSearchLineEdit() = default;

void CSearchLineEdit::SetSearchDelay(int msecs)
{
    m_delay->setInterval(qMax(0, msecs));
}

int CSearchLineEdit::GetSearchDelay() const
{
    return m_delay->interval();
}

void CSearchLineEdit::OnTextEdited()
{
    if (m_delay->interval() == 0) {
        ReportSearchText();
        return;
    }
    m_delay->start();
}

void CSearchLineEdit::ReportSearchText()
{
    const QString current = text();
    if (current == m_reported)
        return;
    m_reported = current;
    emit SignalSearchTextChanged(current);
}

} // namespace Quillon
