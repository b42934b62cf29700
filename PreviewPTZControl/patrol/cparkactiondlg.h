#pragma once

#include "previewptzcontrol_export.h"

#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "ptz_plugin_protocol/ptzlimits.h"

#include <QWidget>

#include <memory>
#include <vector>

namespace zeph_ptz_controller {
class CUniversalPTZController;
}

namespace PreviewPTZControl {

namespace Ui {
class CParkActionDlg;
}

// Pop-up where the operator decides what the camera does on its own after it is left idle:
// stay on the current view, go to a preset or run a patrol, after a waiting time.
class PREVIEWPTZCONTROL_EXPORT CParkActionDlg : public QWidget
{
    Q_OBJECT

public:
    static constexpr int kMinWaitSeconds = ptz_plugin_protocol::kMinParkWaitSeconds;
    static constexpr int kMaxWaitSeconds = ptz_plugin_protocol::kMaxParkWaitSeconds;
    // Action types of the stored setting.
    static constexpr int kActionPreset = 5;
    static constexpr int kActionPatrol = 3;

    explicit CParkActionDlg(QWidget *parent = nullptr);
    ~CParkActionDlg() override;

    void SetCamera(const QString &camera_index_code);
    void SetController(std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller);
    void SetPresets(const std::vector<ptz_plugin_protocol::PresetInfo> &presets);
    void SetPatrols(const std::vector<ptz_plugin_protocol::CruiseInfo> &patrols);
    void SetParkAction(bool enabled, int action_type, int wait_time, int target_id);

signals:
    void SignalParkActionDlgHide();
    void SignalMessageTipNeeded(QString message_tip, int tip_type);

public slots:
    void OnSaveBtnClicked();
    void OnOpenPTZWatch(bool toggled);
    void OnCurrentViewChecked();
    void OnPresetChecked();
    void OnPatrolChecked();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void OnWaitTimeEdited(const QString &text);
    void OnControllerTip(const QString &message_tip, int tip_type);
    QString RangeText() const;
    void UpdateConflictTip();

    std::unique_ptr<Ui::CParkActionDlg> ui_;
    QString camera_index_code_;
    std::weak_ptr<zeph_ptz_controller::CUniversalPTZController> controller_;
    int stored_type_ = kActionPreset;
    int stored_target_ = 0;
    bool stored_enabled_ = false;
};

} // namespace PreviewPTZControl
