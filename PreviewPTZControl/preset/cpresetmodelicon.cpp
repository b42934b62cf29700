#include "preset/cpresetmodelicon.h"

#include "quillon/cguitoolkit.h"
#include "tarn/base/logging.h"

namespace PreviewPTZControl {

namespace {
QPixmap Render(const QString &path, double ratio)
{
    return Quillon::CGUIToolkit::GetPixmapFromSvg(path, QSize(24, 24), ratio);
}
} // namespace

CPresetModelIcon::CPresetModelIcon(double device_pixel_ratio, QObject *parent, bool white_theme)
    : device_pixel_ratio_(device_pixel_ratio)
    , white_theme_(white_theme ? 1 : 0)
{
    Q_UNUSED(parent)
    SetPresetIcons();
}

void CPresetModelIcon::SetPresetIcons()
{
    ZEPH_LOG_INFO("DPR is %f", device_pixel_ratio_);
    // The file names carry blanks; they are the resource names, not typos. The white theme has
    // its own darker copies: the dark theme's light icons all but vanish on white rows.
    const QString dir = white_theme_ ? QStringLiteral(":/Images/PTZWhite/") : QStringLiteral(":/Images/PTZ/");
    not_set_pixmap_ = Render(dir + QStringLiteral("ic_unable preset point_nor.svg"), device_pixel_ratio_);
    device_pixmap_ = Render(dir + QStringLiteral("ic_device preset point_nor.svg"), device_pixel_ratio_);
    virtual_pixmap_ = Render(dir + QStringLiteral("ic_virtual preset point_nor.svg"), device_pixel_ratio_);
    fisheye_pixmap_ = Render(dir + QStringLiteral("ic_fisheye preset point_nor.svg"), device_pixel_ratio_);
    start_pixmap_ = Render(dir + QStringLiteral("common_start_nor.svg"), device_pixel_ratio_);
    edit_pixmap_ = Render(dir + QStringLiteral("common_edit_nor.svg"), device_pixel_ratio_);
    delete_pixmap_ = Render(dir + QStringLiteral("common_delete_nor.svg"), device_pixel_ratio_);
}

QList<QPixmap> CPresetModelIcon::AllPixmaps() const
{
    return {not_set_pixmap_, device_pixmap_, virtual_pixmap_, fisheye_pixmap_,
            start_pixmap_,   edit_pixmap_,   delete_pixmap_};
}

QPixmap CPresetModelIcon::GetPresetTypePixmap(int preset_type) const
{
    switch (preset_type) {
    case 1:
        return device_pixmap_;
    case 2:
        return fisheye_pixmap_;
    case 3:
        return virtual_pixmap_;
    default:
        return not_set_pixmap_;
    }
}

} // namespace PreviewPTZControl
