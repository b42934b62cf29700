#pragma once

#include "previewptzcontrol_export.h"

#include "pattern/cpatternicon.h"

#include "quillon/cstandarditemmodel.h"

#include <QVector>

namespace PreviewPTZControl {

// One row per pattern slot of the camera: column 0 the slot's name, column 1 the play or stop,
// record or stop-record and delete pixmaps. Row r stands for pattern r + 1.
//
// The action item keeps the row's state: role 1257 playing, 1258 recording, 1259 the slot holds
// a recorded pattern (all bool). The pixmaps offered follow from that state and the two
// permission flags: an empty slot can only be recorded; play and delete need a recorded pattern
// (or one being recorded); record needs the record permission, delete both permissions.
class PREVIEWPTZCONTROL_EXPORT CPatternTableModel : public Quillon::CStandardItemModel
{
    Q_OBJECT
public:
    enum { kColumnName = 0, kColumnAction = 1, kColumnCount = 2 };

    CPatternTableModel(double device_pixel_ratio, QObject *parent = nullptr, bool white_theme = false);
    ~CPatternTableModel() override;

    // Replaces the rows by `count` empty, disabled slots; `may_edit` grants record and delete.
    void InitPatterns(int count, bool may_edit);
    // Marks each row as holding a recorded pattern when its number is listed, enables the rows and
    // clears their playing and recording marks. A list with more numbers than rows is not this
    // model's camera's: nothing changes and false is returned.
    bool UpdatePatterns(const QVector<int> &pattern_numbers);
    void SetRecordingState(int row, bool recording);
    void SetPlayingState(int row, bool playing);
    // Offers or withdraws the record and delete actions on every row.
    void SetPermissions(bool may_record, bool may_delete);
    void SetWhiteTheme(bool white);

    bool IsRecorded(int row) const;
    bool IsRecording(int row) const;
    bool IsPlaying(int row) const;

    const CPatternIcon &GetIcons() const { return icons_; }

private:
    bool RowState(int row, int role) const;
    void SetRowState(int row, int role, bool on);
    void RefreshRow(int row);

    CPatternIcon icons_;
    bool b_record_permission_ = false;
    bool b_delete_permission_ = false;
};

} // namespace PreviewPTZControl
