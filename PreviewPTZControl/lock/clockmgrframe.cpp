#include "lock/clockmgrframe.h"

#include "lock/caboutlockframe.h"
#include "lock/clockedframe.h"
#include "lock/cunlockedframe.h"
#include "ui_lockmgrframeui.h"

#include "quillon/cdataobjectmapper.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_plugin_manager/cptzbusinessinterfacemgr.h"

#include <QPushButton>

namespace PreviewPTZControl {

namespace {
// Data roles that carry each page's visibility.
constexpr int kUnlockedRole = 1257;
constexpr int kLockedRole = 1258;
constexpr int kLockTimeRole = 1259;
} // namespace

CLockMgrFrame::CLockMgrFrame(QWidget *parent)
    : Quillon::CFrame(parent)
    , ui_(std::make_unique<Ui::LockMgrFrameUI>())
    , mapper_(new Quillon::CDataObjectMapper(this))
{
    ui_->setupUi(this);
    mapper_->AddMapping(ui_->pUnLockFrame, kUnlockedRole);
    mapper_->AddMapping(ui_->pLockFrame, kLockedRole);
    mapper_->AddMapping(ui_->pAboutLockFrame, kLockTimeRole);

    connect(ui_->pAboutLockFrame->ConfirmButton(), &QPushButton::clicked, this, &CLockMgrFrame::OnAboutLockBtnClicked);
    connect(ui_->pAboutLockFrame->CancelButton(), &QPushButton::clicked, this, &CLockMgrFrame::OnAboutLockCancel);
    connect(ui_->pLockFrame->LockButton(), &QPushButton::clicked, this, &CLockMgrFrame::OnContinueLockBtnClicked);
    connect(ui_->pLockFrame->UnLockButton(), &QPushButton::clicked, this, &CLockMgrFrame::SignalUnLockBtnClicked);
    connect(ui_->pLockFrame, &CLockedFrame::SignalRequestLockState, this, &CLockMgrFrame::SignalRequestLockState);
    connect(ui_->pLockFrame, &CLockedFrame::SignalLockedDetailClicked, this, &CLockMgrFrame::SignalLockedDetailClicked);
    connect(ui_->pUnLockFrame->LockButton(), &QPushButton::clicked, this, &CLockMgrFrame::OnLockBtnClicked);
    ShowPage(PageUnlocked);
}

CLockMgrFrame::~CLockMgrFrame() = default;

CUnLockedFrame *CLockMgrFrame::UnLockedFrame() const
{
    return ui_->pUnLockFrame;
}

CLockedFrame *CLockMgrFrame::LockedFrame() const
{
    return ui_->pLockFrame;
}

CAboutLockFrame *CLockMgrFrame::AboutLockFrame() const
{
    return ui_->pAboutLockFrame;
}

void CLockMgrFrame::ShowPage(int page)
{
    switch (page) {
    case PageUnlocked:
        mapper_->SetData({{kUnlockedRole, true}, {kLockedRole, false}, {kLockTimeRole, false}});
        ui_->pLockFrame->SetMode(0);
        break;
    case PageLocked:
        // While the user types a duration after "Lock", status updates leave the page alone.
        if (aboutFromLockButton)
            return;
        mapper_->SetData({{kUnlockedRole, false}, {kLockedRole, true}, {kLockTimeRole, false}});
        break;
    case PageLockTime:
        mapper_->SetData({{kUnlockedRole, false}, {kLockedRole, false}, {kLockTimeRole, true}});
        break;
    default:
        return;
    }
    current_page_ = page;
    if (page_changed_)
        page_changed_(page != PageUnlocked);
}

void CLockMgrFrame::SetLockStatus(const ptz_plugin_protocol::PTZLockStatusResponse &status)
{
    ui_->pLockFrame->UpdateLockTimeLabel(status);
    if (status.locked == 1) {
        ShowPage(PageLocked);
        ptz_plugin_protocol::GetUserPtzPermRequest request;
        ptz_plugin_protocol::GetUserPtzPermResponse response;
        auto *host = Tarn::Base::CSingleton<ZephPluginManager::CPTZBusinessInterfaceMgr>::Instance();
        if (!host->GetUserPTZPermission(request, response))
            return;
        const QString me = ZephPluginManager::CCurrentUser::Instance()->GetUserName();
        if (QString::fromStdString(status.user_name) == me && !status.locked_by_other_client)
            ui_->pLockFrame->SetMode(3);
        else if (response.ptz_level <= status.ptz_level)
            ui_->pLockFrame->SetMode(1);
        else
            ui_->pLockFrame->SetMode(2);
    } else if (current_page_ == PageLocked) {
        ShowPage(PageUnlocked);
    }
}

void CLockMgrFrame::SetRemainTime(int seconds, bool running)
{
    ui_->pLockFrame->SetRemainTime(seconds, running);
}

void CLockMgrFrame::SetLockedMode(int mode)
{
    ui_->pLockFrame->SetMode(mode);
}

void CLockMgrFrame::SetShowRemainTime(int seconds)
{
    ui_->pLockFrame->SetShowRemainTime(seconds);
}

void CLockMgrFrame::SetUserLevel(int level)
{
    ui_->pUnLockFrame->SetUserLevel(level);
    ui_->pLockFrame->SetUserLevel(level);
}

void CLockMgrFrame::SwitchTheme(bool white)
{
    ui_->pUnLockFrame->SwitchTheme(white);
    ui_->pLockFrame->SwitchTheme(white);
    ui_->pAboutLockFrame->SwitchTheme(white);
}

void CLockMgrFrame::SetPageChangedCallback(std::function<void(bool)> callback)
{
    page_changed_ = std::move(callback);
}

void CLockMgrFrame::OnContinueLockBtnClicked()
{
    ShowPage(PageLockTime);
}

void CLockMgrFrame::OnLockBtnClicked()
{
    aboutFromLockButton = true;
    ShowPage(PageLockTime);
}

void CLockMgrFrame::OnAboutLockBtnClicked()
{
    const int seconds = ui_->pAboutLockFrame->GetLockTime();
    aboutFromLockButton = false;
    if (seconds > 0)
        emit SignalAboutLockBtnClicked(seconds);
}

void CLockMgrFrame::OnAboutLockCancel()
{
    aboutFromLockButton = false;
    emit SignalAboutCancelBtnClicked();
}

} // namespace PreviewPTZControl
