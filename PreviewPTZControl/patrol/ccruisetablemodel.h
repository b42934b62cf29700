#pragma once

#include "previewptzcontrol_export.h"

#include "patrol/cpatrolpathicon.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "quillon/citemdatarole.h"
#include "quillon/cstandarditemmodel.h"

#include <QModelIndex>
#include <QVector>

namespace PreviewPTZControl {

// The eight patrol slots of the patrol tab, one row each: column 0 the slot's name, column 1
// the play or stop, edit and delete pixmaps. Rows are built once and never added or removed;
// the panel hands in the camera's patrols and the running state.
class PREVIEWPTZCONTROL_EXPORT CCruiseTableModel : public Quillon::CStandardItemModel
{
    Q_OBJECT
public:
    enum PatrolRole {
        PatrolRunningRole = Quillon::ItemFirstStateRole,     // bool, action item: the patrol runs
        PatrolConfiguredRole = Quillon::ItemSecondStateRole, // bool, action item: the slot holds a path
    };
    Q_ENUM(PatrolRole)

    enum { kColumnName = 0, kColumnAction = 1, kColumnCount = 2 };
    static constexpr int kRowCount = 8;

    explicit CCruiseTableModel(QObject *parent = nullptr, bool white_theme = false);
    ~CCruiseTableModel() override;

    // Refreshes every row from the camera's patrol list (1-based slot numbers).
    void UpdatePatrols(const QVector<ptz_plugin_protocol::CruiseInfo> &patrols, bool can_edit);
    // Refreshes one row after a single path was saved or deleted. Unlike UpdatePatrols it leaves
    // the name's enabled state, the running state and the edit pixmap alone, and offers delete
    // on every configured row.
    void UpdatePatrolRow(int row, bool configured);

    // playing: the index's row becomes the running row; otherwise no row runs.
    void SetPlayingIndex(const QModelIndex &index, bool playing);
    void ClearPlaying();
    int PlayingRow() const { return running_row_; }
    // Play pixmap, its tip and the running marks of one configured row.
    void SetRowPlayState(const QModelIndex &index, bool running);

    // Renders the pixmaps for the theme and puts them into every row that shows one.
    void SetWhiteTheme(bool white);
    const CPatrolPathIcon &GetIcons() const { return icons_; }

private:
    void RefreshPlayStates();

    CPatrolPathIcon icons_;
    int32_t running_row_ = -1;
};

} // namespace PreviewPTZControl
