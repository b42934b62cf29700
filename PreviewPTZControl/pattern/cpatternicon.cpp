#include "pattern/cpatternicon.h"

#include "quillon/cguitoolkit.h"
#include "tarn/base/logging.h"

namespace PreviewPTZControl {

CPatternIcon::CPatternIcon(double device_pixel_ratio, bool white_theme)
    : device_pixel_ratio_(device_pixel_ratio)
{
    SetPatternIcons(white_theme);
}

void CPatternIcon::SetPatternIcons(bool white_theme)
{
    ZEPH_LOG_INFO("DPR is %f", device_pixel_ratio_);
    white_theme_ = white_theme;
    const QString folder = white_theme ? QStringLiteral(":/Images/PTZWhite/") : QStringLiteral(":/Images/PTZ/");
    const auto render = [this, &folder](const char *file) {
        return Quillon::CGUIToolkit::GetPixmapFromSvg(folder + QLatin1String(file), QSize(24, 24), device_pixel_ratio_);
    };
    play_pixmap_ = render("common_start_nor.svg");
    stop_play_pixmap_ = render("common_pause_nor.svg");
    record_pixmap_ = render("common_record_nor.svg");
    stop_record_pixmap_ = render("common_record_pre.svg");
    delete_pixmap_ = render("common_delete_nor.svg");
}

} // namespace PreviewPTZControl
