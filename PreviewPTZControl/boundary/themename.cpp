#include "boundary/themename.h"

namespace PreviewPTZControl {

QString WhiteObjectName(const QString &dark_name)
{
    return dark_name.endsWith(QLatin1Char('_')) ? dark_name + QStringLiteral("white_")
                                                : dark_name + QStringLiteral("_white_");
}

} // namespace PreviewPTZControl
