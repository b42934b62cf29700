#pragma once

#include "vs_ui_data_controller/hostui_export.h"

#include "tarn/base/singleton.h"

#include <QColor>
#include <QObject>

namespace vs_ui_data_controller {

// Theme colours of the host. Widgets ask here instead of hard-coding colours so
// one theme switch recolours everything painted by hand.
class HOSTUI_EXPORT CVSStyleManager : public QObject, public Tarn::Base::CSingleton<CVSStyleManager>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CVSStyleManager>;

public:
    enum Theme {
        DarkTheme = 0,
        WhiteTheme = 1,
    };
    Q_ENUM(Theme)

    Theme GetTheme() const;
    void SetTheme(Theme theme);
    bool IsWhiteTheme() const;

    // Fill of the direction pad's cross-shaped area.
    QColor ColorPtzIrregularShape() const;
    // Neutral (grey) tone at the given opacity, for surfaces.
    QColor GetNeuColorT2(qreal alpha) const;
    // Neutral text colour at the given opacity.
    QColor GetTextNeuColorT2(qreal alpha) const;

signals:
    void ThemeChanged(vs_ui_data_controller::CVSStyleManager::Theme theme);

private:
    CVSStyleManager();
    ~CVSStyleManager() override;

    Theme m_theme = DarkTheme;
};

} // namespace vs_ui_data_controller
