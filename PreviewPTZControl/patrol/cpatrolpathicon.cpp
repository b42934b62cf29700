#include "patrol/cpatrolpathicon.h"

#include "quillon/cguitoolkit.h"

namespace PreviewPTZControl {

CPatrolPathIcon::CPatrolPathIcon(bool white_theme)
    : white_theme_(white_theme)
{
    const QString folder = white_theme ? QStringLiteral(":/Images/PTZWhite/") : QStringLiteral(":/Images/PTZ/");
    const auto render = [&folder](const char *file) {
        return Quillon::CGUIToolkit::GetPixmapFromSvg(folder + QLatin1String(file), QSize(24, 24),
                                                      static_cast<const QWidget *>(nullptr));
    };
    start_pixmap_ = render("common_start_nor.svg");
    pause_pixmap_ = render("common_pause_nor.svg");
    edit_pixmap_ = render("common_edit_nor.svg");
    delete_pixmap_ = render("common_delete_nor.svg");
}

} // namespace PreviewPTZControl
