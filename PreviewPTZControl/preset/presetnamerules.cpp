#include "preset/presetnamerules.h"

#include "ptz_plugin_protocol/presetname.h"
#include "quillon/citemdatarole.h"

#include <QAbstractItemModel>
#include <QCoreApplication>
#include <QRegularExpression>

namespace PreviewPTZControl {

namespace {
constexpr int kColumnName = 1;
constexpr int kMaxHits = 255;

QString PanelTr(const char *key)
{
    return QCoreApplication::translate("PreviewPTZControl::CPreviewPTZWnd", key);
}

QString Check(const QString &name, const QAbstractItemModel *proxy)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return PanelTr("NameCanNotBeEmpty");

    if (ptz_plugin_protocol::PresetNameForbiddenExpression().match(name).hasMatch())
        return PanelTr("InvalidPresetPointName") + QLatin1Char(' ')
               + PanelTr("TheInputCannotContainAnyOfTheFollowingCharacters")
               + ptz_plugin_protocol::PresetNameForbiddenList();

    if (ptz_plugin_protocol::PresetNameHasInvisibleCharacters(name))
        return PanelTr("InvalidPresetPointName") + QLatin1Char(' ') + PanelTr("PresetNameInvisibleCharacters");

    if (ptz_plugin_protocol::PresetNameLength(trimmed) > kMaxListPresetNameLength)
        return PanelTr("InvalidPresetPointName") + QLatin1Char(' ')
               + PanelTr("NoMoreThan%1CharactersCanBeInput").arg(kMaxListPresetNameLength);

    // The renamed row already carries the name, so one hit is the row itself.
    if (proxy->rowCount() > 0 && proxy->columnCount() > kColumnName) {
        const QModelIndexList hits = proxy->match(proxy->index(0, kColumnName), Quillon::ItemTextRole, name, kMaxHits,
                                                  Qt::MatchExactly | Qt::MatchCaseSensitive);
        if (hits.size() > 1)
            return PanelTr("PresetNameAlreadyExists");
    }
    return QString();
}
} // namespace

bool CheckListPresetName(const QString &name, const QAbstractItemModel *proxy, QString *message)
{
    if (message)
        message->clear();
    if (!proxy)
        return false;
    const QString tip = Check(name, proxy);
    if (message)
        *message = tip;
    return tip.isEmpty();
}

} // namespace PreviewPTZControl
