#include "preset/cbasepresetdialog.h"

#include "ui_preseteditdialogui.h"

#include "quillon/citemdatarole.h"
#include "quillon/cplaceholdlineedit.h"
#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include "ptz_plugin_protocol/presetname.h"

#include <QAbstractItemModel>
#include <QComboBox>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

namespace PreviewPTZControl {

namespace {
constexpr int kColumnType = 0;
constexpr int kColumnName = 1;
constexpr int kColumnAction = 2;
} // namespace

CBasePresetDialog::CBasePresetDialog(QWidget *parent, const QVector<ptz_plugin_protocol::PresetInfo> &presets,
                                     int max_preset_index)
    : Quillon::CBaseDialogWithBottom(parent)
    , ui_(new ::Ui::PresetEditDialogUI)
    , presets_(presets)
    , max_preset_index_(max_preset_index)
{
    ui_->setupUi(GetContentWidget());

    const QString tip = tr("Corvo-ControlClient.785d92c52d5f40a581ca3147ddf843f0.name");
    ui_->pNameEdit->setMaxLength(kMaxNameInputLength);
    ui_->pNameEdit->setPlaceholderText(tip);
    ui_->pNameEdit->setToolTip(tip);

    ReconnectConfirmButton(this, &CBasePresetDialog::OnSaveBtnClicked);
    SetConfirmButtonText(tr("ConfirmVRJPEoDzfHCIl"));
    SetCancelButtonText(tr("UndoMerge"));

    // Typing refuses the characters file names and the device protocol cannot carry.
    ui_->pNameEdit->setValidator(new QRegularExpressionValidator(
        ptz_plugin_protocol::PresetNameInputExpression(kMaxNameInputLength), ui_->pNameEdit));
}

CBasePresetDialog::~CBasePresetDialog() = default;

void CBasePresetDialog::SetNumberedLabels()
{
    ui_->ptr_first_label->setText(QStringLiteral("1.") + tr("SaveTheCurrentPrevieAQFmbSJV"));
    ui_->ptr_second_label->setText(QStringLiteral("2.") + tr("SetThePresetPointNamctfFPEZP"));
    ui_->ptr_presetnum_label_->setText(QStringLiteral("3.")
                                       + tr("Corvo-ControlClient.fa06703a00a54fd898a1b33528b7c4d3.msg"));
}

void CBasePresetDialog::SetPresetModel(const QAbstractItemModel *model)
{
    preset_model_ = model;
}

QString CBasePresetDialog::GetPresetName() const
{
    return ui_->pNameEdit->text();
}

int CBasePresetDialog::GetPresetIndex() const
{
    if (ui_->ptr_presetnum_cbx_->currentIndex() < 0)
        return -1;
    bool ok = false;
    const int number = ui_->ptr_presetnum_cbx_->currentText().toInt(&ok);
    return ok ? number : -1;
}

Quillon::CPlaceholdLineEdit *CBasePresetDialog::GetNameEdit() const
{
    return ui_->pNameEdit;
}

QComboBox *CBasePresetDialog::GetNumberComboBox() const
{
    return ui_->ptr_presetnum_cbx_;
}

QString CBasePresetDialog::CheckName(const QString &name, const QAbstractItemModel *model, int editing_preset_index,
                                     int editing_preset_type)
{
    if (name.isEmpty())
        return tr("TheNameCannotBeEmptyuwCnESOS");

    if (ptz_plugin_protocol::PresetNameForbiddenExpression().match(name).hasMatch())
        return tr("InvalidPresetPointName") + QLatin1Char(' ') + tr("TheInputCannotContainAnyOfTheFollowingCharacters")
               + ptz_plugin_protocol::PresetNameForbiddenList();

    if (ptz_plugin_protocol::PresetNameHasInvisibleCharacters(name))
        return tr("InvalidPresetPointName") + QLatin1Char(' ') + tr("PresetNameInvisibleCharacters");

    if (ptz_plugin_protocol::PresetNameLength(name) > kMaxSavedNameLength)
        return tr("InvalidPresetPointName") + QLatin1Char(' ')
               + tr("NoMoreThan%1CharactersCanBeInput").arg(kMaxSavedNameLength);

    if (model && model->columnCount() > kColumnAction) {
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex action = model->index(row, kColumnAction);
            const int type = action.data(Quillon::ItemFirstStateRole).toInt();
            if (type == -1)
                continue;
            const QModelIndex name_index = model->index(row, kColumnName);
            if (!(model->flags(name_index) & Qt::ItemIsEnabled))
                continue;
            if (editing_preset_index > 0
                && model->index(row, kColumnType).data(Quillon::ItemNumberRole).toInt() == editing_preset_index
                && (editing_preset_type == -1 || editing_preset_type == type))
                continue;
            if (name_index.data(Qt::DisplayRole).toString() == name)
                return tr("ThePresetPointNameAlakrzNA");
        }
    }
    return QString();
}

void CBasePresetDialog::OnSaveBtnClicked()
{
    const QString message = CheckName(GetPresetName(), preset_model_, editing_preset_index_, editing_preset_type_);
    if (!message.isEmpty()) {
        vs_ui_data_controller::CNomalMessageManager::Instance()->ShowMessage(
            message, vs_ui_data_controller::CNomalMessageManager::LevelWarning, window());
        return;
    }
    accept();
}

} // namespace PreviewPTZControl
