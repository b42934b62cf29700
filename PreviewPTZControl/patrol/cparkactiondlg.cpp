#include "patrol/cparkactiondlg.h"

#include "ui_cparkactiondlg.h"

#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include <QEvent>
#include <QHelpEvent>
#include <QIcon>
#include <QIntValidator>
#include <QStyle>
#include <QToolTip>

namespace PreviewPTZControl {

namespace {
void Rename(QWidget *widget, const QString &name)
{
    if (widget->objectName() == name)
        return;
    widget->setObjectName(name);
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}
} // namespace

CParkActionDlg::CParkActionDlg(QWidget *parent)
    : QWidget(parent, Qt::Popup)
    , ui_(std::make_unique<Ui::CParkActionDlg>())
{
    ui_->setupUi(this);
    ui_->ptr_park_action_title_->setText(tr("YuntaiWatchman"));
    ui_->ptr_park_action_title_->setToolTip(tr("QPrVEcffUXjvAHaXUv"));
    ui_->ptr_tips_icon_->setPixmap(QIcon(QStringLiteral(":/Images/PTZ/ic_tips.svg")).pixmap(16, 16));
    ui_->ptr_tips_icon_->setToolTip(tr("QPrVEcffUXjvAHaXUv"));
    ui_->ptr_conflict_tips_->setPixmap(QIcon(QStringLiteral(":/Images/PTZ/ic_alert_error.svg")).pixmap(16, 16));
    ui_->ptr_conflict_tips_->hide();
    ui_->ptr_unit_label_->setText(tr("Seconds"));
    ui_->ptr_wait_time_lineedit_->setValidator(new QIntValidator(kMinWaitSeconds, kMaxWaitSeconds, this));
    ui_->ptr_wait_time_lineedit_->setText(QStringLiteral("5"));
    ui_->ptr_wait_time_lineedit_->installEventFilter(this);
    ui_->ptr_wait_time_lineedit_->setMouseTracking(true);
    ui_->ptr_range_label_->setText(RangeText());
    ui_->ptr_range_label_->hide();
    ui_->ptr_patrol_frame_->hide();
    ui_->ptr_preset_frame_->hide();

    connect(ui_->ptr_confirm_btn_, &QPushButton::clicked, this, &CParkActionDlg::OnSaveBtnClicked);
    connect(ui_->ptr_switch_button_, &QAbstractButton::toggled, this, &CParkActionDlg::OnOpenPTZWatch);
    connect(ui_->ptr_current_view_radio_, &QRadioButton::clicked, this, &CParkActionDlg::OnCurrentViewChecked);
    connect(ui_->ptr_preset_radio_, &QRadioButton::clicked, this, &CParkActionDlg::OnPresetChecked);
    connect(ui_->ptr_patrol_radio_, &QRadioButton::clicked, this, &CParkActionDlg::OnPatrolChecked);
    connect(ui_->ptr_wait_time_lineedit_, &QLineEdit::textChanged, this, &CParkActionDlg::OnWaitTimeEdited);
}

CParkActionDlg::~CParkActionDlg() = default;

void CParkActionDlg::SetCamera(const QString &camera_index_code)
{
    camera_index_code_ = camera_index_code;
}

void CParkActionDlg::SetController(std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> controller)
{
    if (auto old = controller_.lock())
        disconnect(old.get(), &zeph_ptz_controller::CUniversalPTZController::SignalMessageTipNeeded, this,
                   &CParkActionDlg::OnControllerTip);
    controller_ = controller;
    if (controller)
        connect(controller.get(), &zeph_ptz_controller::CUniversalPTZController::SignalMessageTipNeeded, this,
                &CParkActionDlg::OnControllerTip, Qt::UniqueConnection);
}

void CParkActionDlg::SetPresets(const std::vector<ptz_plugin_protocol::PresetInfo> &presets)
{
    QComboBox *combo = ui_->ptr_preset_combo_;
    combo->clear();
    for (const auto &preset : presets) {
        // Only the camera's own presets can be a park target; presets the device keeps for itself are left out.
        if (preset.preset_type != ptz_plugin_protocol::PRESET_TYPE_DEVICE || preset.reserved == 1)
            continue;
        combo->addItem(QString::fromStdString(preset.preset_name), preset.preset_index);
    }
    if (combo->count() == 0)
        combo->addItem(tr("None"));
    UpdateConflictTip();
}

void CParkActionDlg::SetPatrols(const std::vector<ptz_plugin_protocol::CruiseInfo> &patrols)
{
    QComboBox *combo = ui_->ptr_patrol_combo_;
    combo->clear();
    for (const auto &patrol : patrols) {
        if (patrol.points.empty() || patrol.cruise_type == ptz_plugin_protocol::CRUISE_TYPE_SOFTWARE
            || patrol.cruise_type == ptz_plugin_protocol::CRUISE_TYPE_VIRTUAL)
            continue;
        combo->addItem(tr("Patrol%1").arg(patrol.cruise_index), patrol.cruise_index);
    }
    if (combo->count() == 0)
        combo->addItem(tr("None"));
    UpdateConflictTip();
}

void CParkActionDlg::SetParkAction(bool enabled, int action_type, int wait_time, int target_id)
{
    stored_enabled_ = enabled;
    stored_type_ = action_type;
    stored_target_ = target_id;
    ui_->ptr_switch_button_->SetToggle(enabled);
    OnOpenPTZWatch(enabled);
    ui_->ptr_wait_time_lineedit_->setText(QString::number(wait_time));
    if (action_type == kActionPatrol) {
        ui_->ptr_patrol_radio_->setChecked(true);
        ui_->ptr_patrol_combo_->setCurrentIndex(qMax(0, ui_->ptr_patrol_combo_->findData(target_id)));
        OnPatrolChecked();
    } else if (target_id > 0) {
        ui_->ptr_preset_radio_->setChecked(true);
        ui_->ptr_preset_combo_->setCurrentIndex(qMax(0, ui_->ptr_preset_combo_->findData(target_id)));
        OnPresetChecked();
    } else {
        ui_->ptr_current_view_radio_->setChecked(true);
        OnCurrentViewChecked();
    }
    UpdateConflictTip();
}

void CParkActionDlg::OnControllerTip(const QString &message_tip, int tip_type)
{
    // The panel already shows the controller's tips; the dialog passes them on only while it is open
    // (the operator is looking at it), so no tip is shown twice.
    if (isVisible())
        emit SignalMessageTipNeeded(message_tip, tip_type);
}

void CParkActionDlg::OnSaveBtnClicked()
{
    ptz_plugin_protocol::SetParkActionRequest request;
    request.camera_index_code = camera_index_code_.toStdString();
    request.enabled = ui_->ptr_switch_button_->IsToggled();
    request.wait_time = ui_->ptr_wait_time_lineedit_->text().toInt(nullptr, 10);
    if (request.wait_time < kMinWaitSeconds || request.wait_time > kMaxWaitSeconds) {
        emit SignalMessageTipNeeded(tr("MisconfigurationOfGiTlajSusB"), 0);
        return;
    }
    if (ui_->ptr_patrol_radio_->isChecked()) {
        request.action_type = kActionPatrol;
        request.target_id = ui_->ptr_patrol_combo_->currentData().toInt();
    } else {
        request.action_type = kActionPreset;
        request.target_id = ui_->ptr_preset_radio_->isChecked() ? ui_->ptr_preset_combo_->currentData().toInt() : 0;
    }
    if (auto controller = controller_.lock())
        controller->SetParkAction(request);
    hide();
}

void CParkActionDlg::OnOpenPTZWatch(bool toggled)
{
    ui_->ptr_frame_layout_->setEnabled(toggled);
    ui_->ptr_wait_time_lineedit_->setEnabled(toggled);
    UpdateConflictTip();
}

void CParkActionDlg::OnCurrentViewChecked()
{
    ui_->ptr_preset_frame_->hide();
    ui_->ptr_patrol_frame_->hide();
}

void CParkActionDlg::OnPresetChecked()
{
    ui_->ptr_preset_frame_->show();
    ui_->ptr_patrol_frame_->hide();
}

void CParkActionDlg::OnPatrolChecked()
{
    ui_->ptr_patrol_frame_->show();
    ui_->ptr_preset_frame_->hide();
}

QString CParkActionDlg::RangeText() const
{
    return tr("Range")
           + QStringLiteral(": %1 - %2")
                 .arg(kMinWaitSeconds, 0, 10, QLatin1Char(' '))
                 .arg(kMaxWaitSeconds, 0, 10, QLatin1Char(' '));
}

void CParkActionDlg::OnWaitTimeEdited(const QString &text)
{
    bool ok = false;
    const int seconds = text.toInt(&ok, 10);
    const bool valid = ok && seconds >= kMinWaitSeconds && seconds <= kMaxWaitSeconds;
    Rename(ui_->ptr_wait_time_lineedit_,
           valid ? QStringLiteral("ptr_wait_time_lineedit_") : QStringLiteral("ptr_wait_time_lineedit_red"));
    ui_->ptr_range_label_->setVisible(!valid);
}

void CParkActionDlg::UpdateConflictTip()
{
    // The stored target is gone (deleted preset or patrol) while the park action is on.
    bool missing = false;
    if (stored_enabled_ && stored_target_ > 0) {
        const QComboBox *combo = stored_type_ == kActionPatrol ? ui_->ptr_patrol_combo_ : ui_->ptr_preset_combo_;
        missing = combo->findData(stored_target_) < 0;
    }
    const bool on = ui_->ptr_switch_button_->IsToggled();
    ui_->ptr_conflict_tips_->setVisible(missing && on);
    ui_->ptr_conflict_tips_->setToolTip(on ? tr("Corvo-ControlClient.a823d37fc23f4205bf7a7fe4a8112a6e.msg")
                                           : QString());
}

bool CParkActionDlg::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui_->ptr_wait_time_lineedit_
        && (event->type() == QEvent::Enter || event->type() == QEvent::MouseMove || event->type() == QEvent::ToolTip)) {
        if (!ui_->ptr_switch_button_->IsToggled())
            return event->type() == QEvent::ToolTip; // no range tip while the park action is off
        const QPoint at = event->type() == QEvent::ToolTip ? static_cast<QHelpEvent *>(event)->globalPos()
                                                           : ui_->ptr_wait_time_lineedit_->mapToGlobal(QPoint(0, 0));
        QToolTip::showText(at, RangeText(), ui_->ptr_wait_time_lineedit_);
        return event->type() == QEvent::ToolTip;
    }
    return QWidget::eventFilter(watched, event);
}

void CParkActionDlg::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    emit SignalParkActionDlgHide();
}

} // namespace PreviewPTZControl
