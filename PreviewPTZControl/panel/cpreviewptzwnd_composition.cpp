#include "panel/cpreviewptzwnd.h"

#include "boundary/themename.h"

#include "panel/cpreviewptzwnd_p.h"
#include "ui_cptzpanelleft.h"
#include "ui_cptzpanelright.h"

#include "patrol/ccruisetablemodel.h"
#include "patrol/ccruisetableview.h"
#include "preset/cpresettablemodel.h"
#include "preset/cpresettableview.h"

#include "quillon/cscrollarea.h"

#include <QBoxLayout>
#include <QResizeEvent>
#include <QStyle>

namespace PreviewPTZControl {

using namespace PanelPrivate;

QString CPreviewPTZWnd::ThemedName(const QString &dark_name) const
{
    return whiteTheme ? WhiteObjectName(dark_name) : dark_name;
}

void CPreviewPTZWnd::RenameAndPolish(QWidget *widget, const QString &name)
{
    if (!widget || widget->objectName() == name)
        return;
    widget->setObjectName(name);
    Repolish(widget);
}

void CPreviewPTZWnd::AssemblyLayout()
{
    if (ptr_scroll_area_)
        return;
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    ptr_scroll_area_ = new Quillon::CScrollArea(this);
    ptr_scroll_area_->setFrameShape(QFrame::NoFrame);
    ptr_scroll_area_->setLineWidth(0);
    ptr_scroll_area_->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    ptr_scroll_area_->setWidgetResizable(true);
    ptr_scroll_content = new QWidget(ptr_scroll_area_);
    ptr_scroll_content->setObjectName(QStringLiteral("ptr_scroll_content"));
    ptr_ptz_panel_left_->setParent(ptr_scroll_content);
    ptr_ptz_panel_right_->setParent(ptr_scroll_content);
    ptr_scroll_area_->setWidget(ptr_scroll_content);
    layout->addWidget(ptr_scroll_area_);
    DoLayoutSwitch(stackedLayout);
}

void CPreviewPTZWnd::SwitchPTZWndLayout(bool vertical)
{
    stackedLayout = vertical;
    if (ptr_scroll_area_)
        DoLayoutSwitch(vertical);
    else
        AssemblyLayout();
}

void CPreviewPTZWnd::DoLayoutSwitch(bool vertical)
{
    if (!ptr_scroll_content || !ptr_ptz_panel_left_ || !ptr_ptz_panel_right_)
        return;
    delete ptr_scroll_content->layout();
    if (vertical) {
        auto *layout = new QVBoxLayout(ptr_scroll_content);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        ptr_ptz_panel_left_->setMinimumWidth(0);
        ptr_ptz_panel_left_->setMaximumWidth(QWIDGETSIZE_MAX);
        layout->addWidget(ptr_ptz_panel_left_);
        layout->addWidget(ptr_ptz_panel_right_);
    } else {
        auto *layout = new QHBoxLayout(ptr_scroll_content);
        layout->setContentsMargins(0, 0, 0, 0);
        ptr_ptz_panel_left_->setFixedWidth(230);
        layout->addWidget(ptr_ptz_panel_left_);
        // The right half's height is fixed below the panel's: keep it under the top edge rather than
        // floating in the middle with an empty band above the function buttons.
        layout->addWidget(ptr_ptz_panel_right_, 0, Qt::AlignTop);
    }
    ArrangeLensRows(vertical);
    ptr_ptz_panel_left_->show();
}

// Stacked, the right half gets the panel height less 326 pixels: the left half has to fit in those
// 326, so the zoom, iris and focus groups share one row there instead of one row each.
void CPreviewPTZWnd::ArrangeLensRows(bool oneRow)
{
    QVBoxLayout *column = ui_left_->vl_frame_6;
    QWidget *groups[] = {ui_left_->pZoom, ui_left_->pIRISWnd, ui_left_->pFocusWnd};
    // Deleting the shared row only drops its items; the groups stay children of their frame.
    for (int i = column->count() - 1; i >= 0; --i)
        if (column->itemAt(i)->layout())
            delete column->takeAt(i);
    for (QWidget *group : groups)
        column->removeWidget(group);
    if (oneRow) {
        auto *row = new QHBoxLayout;
        row->setSpacing(column->spacing());
        for (QWidget *group : groups)
            row->addWidget(group);
        column->addLayout(row);
    } else {
        for (QWidget *group : groups)
            column->addWidget(group);
    }
}

void CPreviewPTZWnd::SetBottomHalfVisible(bool visible)
{
    if (ptr_ptz_panel_right_)
        ptr_ptz_panel_right_->setVisible(visible);
}

void CPreviewPTZWnd::ModifyTabWidth(bool b_third_tab_visible)
{
    QTabWidget *tabs = ui_right_->m_pTabWidget;
    const int width = b_third_tab_visible ? (tabs->width() - 68) / 3 : (tabs->width() - 67) / 2;
    const QString sheet = QStringLiteral("QTabBar::tab {width: %1px}").arg(width);
    // Applying a style sheet re-polishes the whole tab tree; binding a camera asks for the same width again
    // and again, and that was most of the binding time.
    if (tabs->styleSheet() != sheet) {
        tabs->setStyleSheet(sheet);
        Repolish(tabs);
    }
    SetPtzAuxiliaryLineHide();
}

void CPreviewPTZWnd::resizeEvent(QResizeEvent *event)
{
    if (ptr_ptz_panel_right_)
        ptr_ptz_panel_right_->setFixedHeight(qMax(0, height() - 326));
    AssemblyLayout();
    ModifyTabWidth(ui_right_->m_pTabWidget->isTabVisible(2));
    CBasicPTZWnd::resizeEvent(event);
}

void CPreviewPTZWnd::SwitchPTZWndBgColor(bool white)
{
    whiteTheme = white;
    if (white) {
        RenameAndPolish(this, QStringLiteral("CPreviewPTZWnd_white_"));
        RenameAndPolish(ptr_ptz_panel_left_, QStringLiteral("PreviewPTZControl_ptr_ptz_panel_left_white_"));
        RenameAndPolish(ptr_ptz_panel_right_, QStringLiteral("PreviewPTZControl_ptr_ptz_panel_right_white_"));
        RenameAndPolish(ptr_scroll_content, QStringLiteral("ptr_scroll_content_white_"));
        const QList<QWidget *> themed{ui_right_->m_pFrameAppendFun,
                                      ui_right_->pCancelBtn,
                                      ui_right_->label_2,
                                      ui_right_->label_3,
                                      ui_right_->label_4,
                                      ui_right_->label_5,
                                      ui_right_->label_6,
                                      ui_right_->label_7,
                                      ui_right_->btn_device_preset,
                                      ui_right_->btn_virtual_preset,
                                      ui_right_->m_pTabWidget,
                                      ui_right_->ptr_preset_type_frame,
                                      ui_right_->ptr_patrol_name_frame,
                                      ui_right_->ptr_config_frame,
                                      ui_right_->ptr_preset_type,
                                      ui_right_->pPatrolNameLabel,
                                      ui_right_->m_pTreeViewPatrolEdit,
                                      ui_right_->m_pTreeViewPreset,
                                      ui_right_->m_pTreeViewPatrol,
                                      ui_right_->m_pTreeViewPatten,
                                      ui_left_->ptr_label_slow_,
                                      ui_left_->ptr_label_fast_,
                                      ui_left_->pZoom,
                                      ui_left_->pFocusWnd,
                                      ui_left_->pIRISWnd,
                                      ui_left_->pZoomOutBtn,
                                      ui_left_->pZoomInBtn,
                                      ui_left_->pFocusOutBtn,
                                      ui_left_->pFocusInBtn,
                                      ui_left_->pIRISOutBtn,
                                      ui_left_->pIRISInBtn,
                                      ui_right_->m_pBtnKeyFocus,
                                      ui_right_->m_pBtn3D,
                                      ui_right_->m_pBtnResetPos,
                                      ui_right_->ptr_manual_track_btn_,
                                      ui_right_->ptr_face_capture_btn_,
                                      ui_right_->pAddBtn,
                                      ui_right_->pDeleteBtn,
                                      ui_right_->pUpBtn,
                                      ui_right_->pDownBtn,
                                      ui_left_->ptr_speed_slider_};
        for (QWidget *widget : themed) {
            if (!widget->objectName().endsWith(QLatin1String("_white_")))
                RenameAndPolish(widget, WhiteObjectName(widget->objectName()));
        }
        // The light and wiper buttons carry their on state in the name as well.
        SetBlinkName(ui_right_->m_pBtnLight, QStringLiteral("m_pBtnLight"), QStringLiteral("m_pBtnLight_open"),
                     b_light_on_ && b_light_blink_);
        SetBlinkName(ui_right_->m_pBtnWiper, QStringLiteral("m_pBtnWiper"), QStringLiteral("m_pBtnWiper_right"),
                     b_wiper_on_ && b_wiper_blink_);
    }
    // The lists choose their own icons and row colours; the patrol and pattern lists follow once they exist.
    ui_right_->m_pTreeViewPreset->SetWhiteTheme(white);
    if (ptr_preset_model_)
        ptr_preset_model_->SetWhiteTheme(white);
    ui_right_->m_pTreeViewPatten->SetWhiteTheme(white);
    ui_left_->pLockFrame->SwitchTheme(white);
    ui_right_->m_pTreeViewPatrol->SetWhiteTheme(white);
    if (ptr_cruise_model_)
        ptr_cruise_model_->SetWhiteTheme(white);
}

} // namespace PreviewPTZControl
