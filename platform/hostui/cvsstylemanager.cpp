#include "vs_ui_data_controller/cvsstylemanager.h"

namespace vs_ui_data_controller {

namespace {
QColor withAlpha(QColor c, qreal alpha)
{
    c.setAlphaF(qBound<qreal>(0.0, alpha, 1.0));
    return c;
}
} // namespace

CVSStyleManager::CVSStyleManager()
{
    // Queued connections and signal spies need the enum by its full name.
    qRegisterMetaType<vs_ui_data_controller::CVSStyleManager::Theme>("vs_ui_data_controller::CVSStyleManager::Theme");
}

CVSStyleManager::~CVSStyleManager() = default;

CVSStyleManager::Theme CVSStyleManager::GetTheme() const
{
    return m_theme;
}

void CVSStyleManager::SetTheme(Theme theme)
{
    if (m_theme == theme)
        return;
    m_theme = theme;
    emit ThemeChanged(theme);
}

bool CVSStyleManager::IsWhiteTheme() const
{
    return m_theme == WhiteTheme;
}

QColor CVSStyleManager::ColorPtzIrregularShape() const
{
    return IsWhiteTheme() ? QColor(0xE6, 0xE9, 0xEE) : QColor(0x2B, 0x30, 0x38);
}

QColor CVSStyleManager::GetNeuColorT2(qreal alpha) const
{
    // Dark surfaces are lit with white, white surfaces darkened with near-black.
    return withAlpha(IsWhiteTheme() ? QColor(0x1F, 0x23, 0x29) : QColor(0xFF, 0xFF, 0xFF), alpha);
}

QColor CVSStyleManager::GetTextNeuColorT2(qreal alpha) const
{
    return withAlpha(IsWhiteTheme() ? QColor(0x1F, 0x23, 0x29) : QColor(0xF0, 0xF2, 0xF5), alpha);
}

} // namespace vs_ui_data_controller
