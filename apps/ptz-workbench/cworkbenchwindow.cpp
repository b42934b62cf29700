#include "cworkbenchwindow.h"

#include "cfisheyeview.h"
#include "cliveview.h"
#include "ctoast.h"

#include "boundary/cpreviewptzwndmanager.h"
#include "boundary/themename.h"
#include "direction/cptzcloud.h"
#include "panel/cpreviewptzwnd.h"
#include "site_store/csitestore.h"
#include "site_store/demosite.h"
#include "vs_ui_data_controller/cvsstylemanager.h"
#include "zeph_plugin_manager/ccamera.h"
#include "zeph_plugin_manager/ccameramanager.h"
#include "zeph_plugin_manager/ccurrentuser.h"
#include "zeph_ptz_controller/cbasesoftwareptzcontrollor.h"
#include "zeph_ptz_controller/cuniversalptzcontroller.h"

#include "ptz_devices/ptzdevicetypes.h"
#include "ptz_plugin_protocol/ptz_plugin_protocol.h"
#include "ptz_plugin_protocol/ptzlimits.h"
#include "vs_ui_data_controller/cinformationmgr.h"

#include "tarn/base/logging.h"

#include <QActionGroup>
#include <QApplication>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QSlider>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTranslator>

#include <cmath>

using PreviewPTZControl::CPreviewPTZWnd;
using PreviewPTZControl::CPreviewPTZWndManager;

// Answers every text with its translation key, for translators checking where a key is shown.
class CRawKeyTranslator : public QTranslator
{
public:
    using QTranslator::QTranslator;
    bool isEmpty() const override { return false; }
    QString translate(const char *, const char *sourceText, const char *, int) const override
    {
        return QString::fromUtf8(sourceText);
    }
};

// The style sheets live in this static library; its resources need registering by hand.
static void InitWorkbenchResources()
{
    static const bool done = [] {
        Q_INIT_RESOURCE(workbench);
        return true;
    }();
    Q_UNUSED(done)
}

namespace {

CPreviewPTZWndManager *Registry()
{
    return Tarn::Base::CSingleton<CPreviewPTZWndManager>::Instance();
}

ZephPluginManager::CCameraManager *Cameras()
{
    return Tarn::Base::CSingleton<ZephPluginManager::CCameraManager>::Instance();
}

// The camera list hands the camera identifier to a drop on a screen.
class CCameraListWidget : public QListWidget
{
public:
    using QListWidget::QListWidget;

protected:
    QMimeData *mimeData(const QList<QListWidgetItem *> items) const override
    {
        auto *data = new QMimeData;
        if (!items.isEmpty()) {
            const QString id = items.first()->data(Qt::UserRole).toString();
            data->setData(QStringLiteral("application/x-ptz-camera-id"), id.toUtf8());
            data->setText(id);
        }
        return data;
    }
};

} // namespace

CWorkbenchWindow::CWorkbenchWindow(QWidget *parent)
    : QMainWindow(parent)
    , m_controller(std::make_shared<zeph_ptz_controller::CUniversalPTZController>())
{
    setWindowTitle(tr("PTZ Workbench"));
    auto *splitter = new QSplitter(this);
    m_cameraList = new CCameraListWidget(splitter);
    m_cameraList->setObjectName(QStringLiteral("ptr_camera_list_"));
    m_cameraList->setDragEnabled(true);
    m_cameraList->setMinimumWidth(240);
    m_cameraList->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_cameraList->setTextElideMode(Qt::ElideRight);
    m_grid = new QWidget(splitter);
    m_grid->setObjectName(QStringLiteral("ptr_live_grid_"));
    m_gridLayout = new QGridLayout(m_grid);
    m_gridLayout->setContentsMargins(2, 2, 2, 2);
    m_gridLayout->setSpacing(2);
    m_panels = new QStackedWidget(splitter);
    m_panels->setMinimumWidth(300);
    splitter->setStretchFactor(0, 0);
    splitter->setStretchFactor(1, 1);
    splitter->setStretchFactor(2, 0);
    setCentralWidget(splitter);

    connect(m_cameraList, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem *item) { BindCamera(m_selected, item->data(Qt::UserRole).toString()); });
    // The controller's messages reach the host through every panel (each forwards them): one
    // failure arrives several times at once and ShowTip folds the copies into one toast.

    FillCameraList();
    BuildMenus();
    qApp->installEventFilter(this);
    SetScreenCount(4);
    // The demo cameras people try first, the full speed dome in the selected screen.
    QStringList ids{QString::fromLatin1(site_store::demo::kSpeedDome),
                    QString::fromLatin1(site_store::demo::kPtzNoPattern),
                    QString::fromLatin1(site_store::demo::kBoxZoom), QString::fromLatin1(site_store::demo::kFishEye)};
    const QStringList known = Cameras()->GetCameraIDs();
    for (const QString &id : known)
        if (!ids.contains(id))
            ids << id;
    int screen = 0;
    for (const QString &id : qAsConst(ids))
        if (known.contains(id) && screen < 4)
            BindCamera(screen++, id);
    SelectScreen(0);
    SetWhiteTheme(false);
    // A permanent widget: menu hints and notes use the temporary message and leave it alone.
    auto *operatorLine =
        new QLabel(tr("Operator: %1. Double-click a camera or drag it onto a screen.")
                       .arg(Tarn::Base::CSingleton<ZephPluginManager::CCurrentUser>::Instance()->GetUserName()),
                   this);
    operatorLine->setObjectName(QStringLiteral("ptr_operator_line_"));
    statusBar()->addPermanentWidget(operatorLine);
}

CWorkbenchWindow::~CWorkbenchWindow()
{
    qApp->removeEventFilter(this);
    StopHeldKeys();
    for (int i = 0; i < m_panelList.size(); ++i) {
        m_panelList.at(i)->StopWork();
        Registry()->RemovePreviewPTZWnd(unsigned(i));
    }
}

void CWorkbenchWindow::FillCameraList()
{
    m_cameraList->clear();
    for (const std::shared_ptr<ZephPluginManager::CCamera> &camera : Cameras()->GetCameras()) {
        auto *item = new QListWidgetItem(camera->GetName(), m_cameraList);
        item->setData(Qt::UserRole, QString::fromStdString(camera->GetID()));
        item->setToolTip(QStringLiteral("%1 (%2)").arg(QString::fromStdString(camera->GetID()), camera->GetModel()));
    }
}

void CWorkbenchWindow::BuildMenus()
{
    QMenu *view = menuBar()->addMenu(tr("&View"));
    auto *screens = new QActionGroup(this);
    for (int n : {1, 4, 9}) {
        QAction *a = view->addAction(tr("%1 screen(s)").arg(n), this, [this, n] { SetScreenCount(n); });
        a->setCheckable(true);
        a->setChecked(n == 4);
        screens->addAction(a);
    }
    view->addSeparator();
    QAction *white = view->addAction(tr("White theme"), this, [this](bool on) { SetWhiteTheme(on); });
    white->setCheckable(true);
    QAction *stacked = view->addAction(tr("Stacked panel layout"), this, [this](bool on) { SetStackedLayout(on); });
    stacked->setCheckable(true);
    QAction *bottom = view->addAction(tr("Show the panel's lower half"), this, [this](bool on) {
        for (CPreviewPTZWnd *panel : qAsConst(m_panelList))
            panel->SetBottomHalfVisible(on);
    });
    bottom->setCheckable(true);
    bottom->setChecked(true);
    view->addSeparator();
    QAction *raw = view->addAction(tr("Show translation keys"), this, [this](bool on) { SetRawTranslationKeys(on); });
    raw->setCheckable(true);

    // The operator is chosen at start (--user NAME); the menu says who is signed in and who else exists.
    const QString current = Tarn::Base::CSingleton<ZephPluginManager::CCurrentUser>::Instance()->GetUserName();
    QMenu *operatorMenu = menuBar()->addMenu(tr("&Operator"));
    for (const site_store::UserRecord &user : site_store::CSiteStore::Current()->users()) {
        QAction *a = operatorMenu->addAction(tr("%1 (PTZ level %2)").arg(user.name).arg(user.ptzLevel));
        a->setCheckable(true);
        a->setChecked(user.name == current);
        a->setEnabled(false);
    }
    operatorMenu->addSeparator();
    operatorMenu->addAction(tr("Start with another operator: --user NAME"))->setEnabled(false);

    QMenu *help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("Usage"), this, [this] {
        QMessageBox::information(this, tr("PTZ Workbench"),
                                 tr("Click a screen to select it; its PTZ panel shows on the right.\n"
                                    "Double-click a camera, or drag it onto a screen, to bind it.\n"
                                    "Hold an arrow of the pad to move the camera; the centre toggles auto-scan.\n\n"
                                    "Keyboard (selected screen, while held):\n"
                                    "  arrows or keypad 8 2 4 6: up, down, left, right\n"
                                    "  keypad 7 9 1 3: diagonals\n"
                                    "  + / -: zoom in / out\n\n"
                                    "3D positioning: switch it on in the panel, then drag a box on the picture."));
    });
}

void CWorkbenchWindow::SetScreenCount(int count)
{
    if (count != 1 && count != 4 && count != 9)
        return;
    while (m_views.size() > count) {
        const int screen = m_views.size() - 1;
        StopHeldKeys(screen);
        // Kept for when the screen comes back.
        m_bindings[screen] = m_views.at(screen)->CameraId();
        CPreviewPTZWnd *panel = m_panelList.takeLast();
        panel->StopWork();
        Registry()->RemovePreviewPTZWnd(unsigned(screen));
        delete panel;
        delete m_views.takeLast();
    }
    while (m_views.size() < count) {
        const unsigned screen = unsigned(m_views.size());
        auto *view = new CLiveView(screen, m_grid);
        const std::weak_ptr<zeph_ptz_controller::CUniversalPTZController> controller = m_controller;
        view->SetStatusSource([controller](const QString &cameraId, ptz_devices::DeviceStatus &status) {
            const auto alive = controller.lock();
            return alive && alive->GetDeviceStatus(cameraId, status);
        });
        connect(view, &CLiveView::SignalSelected, this, [this](unsigned s) { SelectScreen(int(s)); });
        connect(view, &CLiveView::SignalCameraDropped, this,
                [this](unsigned s, const QString &id) { BindCamera(int(s), id); });
        connect(view, &CLiveView::SignalCloseRequested, this, [this](unsigned s) { CloseScreen(int(s)); });
        connect(view, &CLiveView::SignalFishEyeRequested, this,
                [this](unsigned s, bool open) { SetFishEyeOpen(int(s), open); });
        connect(view, &CLiveView::SignalBoxDrawn, this, [this](unsigned s, const QRectF &box) {
            m_controller->Position3D(m_views.at(int(s))->CameraId(), box);
        });
        connect(view, &CLiveView::SignalTargetClicked, this, [this](unsigned s, int function, const QPointF &at) {
            const QString what = function == 4 ? tr("Tracking the target at %1%, %2% of the picture.")
                                               : tr("Face captured at %1%, %2% of the picture.");
            Tarn::Base::CSingleton<vs_ui_data_controller::CInformationMgr>::Instance()
                ->ShowInformationAtScreenRightBottom_V3(what.arg(qRound(at.x() * 100)).arg(qRound(at.y() * 100)), this);
            m_views.at(int(s))->SetPictureAction(0);
            m_panelList.at(int(s))->OnWndPtzActionStateChanged(function, false);
        });
        m_views.append(view);
        m_panelList.append(CreatePanel(screen));
    }
    LayoutGrid();
    for (int screen = 0; screen < count; ++screen)
        if (m_views.at(screen)->CameraId().isEmpty() && !m_bindings.value(screen).isEmpty())
            BindCamera(screen, m_bindings.value(screen));
    SelectScreen(std::min(m_selected, count - 1));
}

CPreviewPTZWnd *CWorkbenchWindow::CreatePanel(unsigned int screen)
{
    auto *panel = new CPreviewPTZWnd(screen, true, false, m_panels);
    panel->SetPTZController(m_controller, m_views.at(int(screen))->VirtualController());
    const auto software = std::make_shared<zeph_ptz_controller::CBaseSoftwarePtzControllor>();
    panel->SetSoftwarePTZController(software);
    m_software.insert(int(screen), software);
    panel->SwitchPTZWndLayout(m_stacked);
    if (m_white)
        panel->SwitchPTZWndBgColor(true);
    connect(panel, &CPreviewPTZWnd::SignalMessageTipNeeded, this, &CWorkbenchWindow::ShowTip);
    connect(panel, &CPreviewPTZWnd::SignalFunctionEnabled, this,
            [this, screen](int function, bool enabled) { OnFunctionEnabled(int(screen), function, enabled); });
    Registry()->AddPreviewPTZWnd(screen, panel);
    m_panels->insertWidget(int(screen), panel);
    return panel;
}

void CWorkbenchWindow::SetRawTranslationKeys(bool raw)
{
    if (raw == bool(m_rawKeys))
        return;
    if (raw) {
        m_rawKeys = new CRawKeyTranslator(this);
        QCoreApplication::installTranslator(m_rawKeys);
    } else {
        QCoreApplication::removeTranslator(m_rawKeys);
        delete m_rawKeys;
    }
    // The panels take their texts when they are built: build them again, on the same cameras.
    RebuildPanels();
}

void CWorkbenchWindow::RebuildPanels()
{
    StopHeldKeys();
    for (int i = 0; i < m_panelList.size(); ++i) {
        CPreviewPTZWnd *old = m_panelList.at(i);
        old->StopWork();
        Registry()->RemovePreviewPTZWnd(unsigned(i));
        delete old;
        m_panelList[i] = CreatePanel(unsigned(i));
        if (!m_views.at(i)->CameraId().isEmpty())
            BindCamera(i, m_views.at(i)->CameraId());
    }
    SelectScreen(m_selected);
}

void CWorkbenchWindow::LayoutGrid()
{
    const int columns = int(std::lround(std::sqrt(double(m_views.size()))));
    for (int i = 0; i < m_views.size(); ++i)
        m_gridLayout->addWidget(m_views.at(i), i / columns, i % columns);
}

bool CWorkbenchWindow::BindCamera(int screen, const QString &cameraId)
{
    if (screen < 0 || screen >= m_views.size())
        return false;
    const std::shared_ptr<ZephPluginManager::CCamera> camera = Cameras()->GetCameraByID(cameraId);
    if (!camera) {
        ShowTip(tr("Unknown camera '%1'.").arg(cameraId), 0);
        return false;
    }
    m_views.at(screen)->SetCamera(cameraId, camera->GetName(), camera->IsFishEye());
    const QString owner = Tarn::Base::CSingleton<ZephPluginManager::CCurrentUser>::Instance()->GetUserName();
    m_panelList.at(screen)->SetCamera(owner, cameraId, false, false);
    m_bindings[screen] = cameraId;
    return true;
}

void CWorkbenchWindow::CloseScreen(int screen)
{
    if (screen < 0 || screen >= m_views.size())
        return;
    StopHeldKeys(screen);
    m_views.at(screen)->SetPictureAction(0);
    m_views.at(screen)->SetCamera(QString(), QString(), false);
    m_panelList.at(screen)->StopWork();
    m_bindings[screen].clear();
}

bool CWorkbenchWindow::SetFishEyeOpen(int screen, bool open)
{
    return CFishEyeView::SetOpen(View(screen), Panel(screen), open);
}

void CWorkbenchWindow::SelectScreen(int screen)
{
    if (screen < 0 || screen >= m_views.size())
        return;
    m_selected = screen;
    for (int i = 0; i < m_views.size(); ++i)
        m_views.at(i)->SetSelected(i == screen);
    m_panels->setCurrentWidget(m_panelList.at(screen));
}

CPreviewPTZWnd *CWorkbenchWindow::Panel(int screen) const
{
    return screen >= 0 && screen < m_panelList.size() ? m_panelList.at(screen) : nullptr;
}

CLiveView *CWorkbenchWindow::View(int screen) const
{
    return screen >= 0 && screen < m_views.size() ? m_views.at(screen) : nullptr;
}

QString CWorkbenchWindow::StyleSheet(bool white)
{
    InitWorkbenchResources();
    QFile file(white ? QStringLiteral(":/workbench/styles/white.qss") : QStringLiteral(":/workbench/styles/dark.qss"));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        ZEPH_LOG_WARN("[%s(%d)] - style sheet %s missing", __FUNCTION__, __LINE__, qUtf8Printable(file.fileName()));
        return QString();
    }
    return QString::fromUtf8(file.readAll());
}

void CWorkbenchWindow::SetWhiteTheme(bool white)
{
    const bool backToDark = m_white && !white;
    m_white = white;
    Tarn::Base::CSingleton<vs_ui_data_controller::CVSStyleManager>::Instance()->SetTheme(
        white ? vs_ui_data_controller::CVSStyleManager::WhiteTheme : vs_ui_data_controller::CVSStyleManager::DarkTheme);
    qApp->setStyleSheet(StyleSheet(white));
    // The panel's switch only goes dark to white (its dark names are its forms' own), so going
    // back means building the panels again on their cameras.
    if (backToDark) {
        RebuildPanels();
        return;
    }
    for (CPreviewPTZWnd *panel : qAsConst(m_panelList))
        panel->SwitchPTZWndBgColor(white);
}

void CWorkbenchWindow::SetStackedLayout(bool stacked)
{
    m_stacked = stacked;
    for (CPreviewPTZWnd *panel : qAsConst(m_panelList))
        panel->SwitchPTZWndLayout(stacked);
    m_panels->setMinimumWidth(stacked ? 300 : 560);
}

void CWorkbenchWindow::ShowTip(const QString &text, int level)
{
    if (text.isEmpty())
        return;
    const QList<CToast *> shown = m_grid->findChildren<CToast *>(QString(), Qt::FindDirectChildrenOnly);
    for (CToast *toast : shown) {
        if (!toast->isHidden() && toast->Message() == text && toast->Level() == level) {
            toast->Repeat();
            PlaceToasts();
            return;
        }
    }
    auto *toast = new CToast(text, level, m_grid);
    toast->setMaximumWidth(360);
    toast->adjustSize();
    connect(toast, &QObject::destroyed, this, &CWorkbenchWindow::PlaceToasts, Qt::QueuedConnection);
    PlaceToasts();
}

void CWorkbenchWindow::PlaceToasts()
{
    int y = 12;
    const QList<CToast *> toasts = m_grid->findChildren<CToast *>(QString(), Qt::FindDirectChildrenOnly);
    for (CToast *toast : toasts) {
        toast->move(m_grid->width() - toast->width() - 12, y);
        toast->raise();
        y += toast->height() + 6;
    }
}

void CWorkbenchWindow::OnFunctionEnabled(int screen, int function, bool enabled)
{
    if (screen >= m_views.size() || (function != 1 && function != 4 && function != 5))
        return;
    CLiveView *view = m_views.at(screen);
    if (enabled)
        view->SetPictureAction(function);
    else if (view->PictureAction() == function)
        view->SetPictureAction(0);
}

int CWorkbenchWindow::CommandForKey(int key, Qt::KeyboardModifiers modifiers)
{
    const bool keypad = modifiers & Qt::KeypadModifier;
    switch (key) {
    case Qt::Key_Up:
        return 21;
    case Qt::Key_Down:
        return 22;
    case Qt::Key_Left:
        return 23;
    case Qt::Key_Right:
        return 24;
    case Qt::Key_Plus:
        return 11;
    case Qt::Key_Minus:
        return 12;
    default:
        break;
    }
    if (!keypad)
        return 0;
    switch (key) {
    case Qt::Key_8:
        return 21;
    case Qt::Key_2:
        return 22;
    case Qt::Key_4:
        return 23;
    case Qt::Key_6:
        return 24;
    case Qt::Key_7:
    case Qt::Key_Home:
        return 25;
    case Qt::Key_9:
    case Qt::Key_PageUp:
        return 26;
    case Qt::Key_1:
    case Qt::Key_End:
        return 27;
    case Qt::Key_3:
    case Qt::Key_PageDown:
        return 28;
    default:
        return 0;
    }
}

bool CWorkbenchWindow::PanelOffers(int screen, int command) const
{
    const CPreviewPTZWnd *panel = Panel(screen);
    if (!panel || !panel->IsWorking() || !panel->isEnabled())
        return false;
    if (command == ptz_plugin_protocol::PTZ_CMD_ZOOM_IN || command == ptz_plugin_protocol::PTZ_CMD_ZOOM_OUT) {
        const QString name = command == ptz_plugin_protocol::PTZ_CMD_ZOOM_IN ? QStringLiteral("pZoomInBtn")
                                                                             : QStringLiteral("pZoomOutBtn");
        const QWidget *button = panel->findChild<QWidget *>(name);
        if (!button)
            button = panel->findChild<QWidget *>(PreviewPTZControl::WhiteObjectName(name));
        return button && button->isEnabled();
    }
    // The pad is laid out like a keypad: 21 up is section 2, 25 up-left section 1, and so on.
    static const QHash<int, int> kSections{{21, 2}, {22, 8}, {23, 4}, {24, 6}, {25, 1}, {26, 3}, {27, 7}, {28, 9}};
    const auto *pad = panel->findChild<PreviewPTZControl::CPTZCloud *>();
    constexpr int kDisabled = 4;
    return pad && pad->isEnabled() && kSections.contains(command) && pad->sectionStatus(kSections.value(command)) >= 0
           && pad->sectionStatus(kSections.value(command)) != kDisabled;
}

bool CWorkbenchWindow::SteerByKey(int key, Qt::KeyboardModifiers modifiers, bool press)
{
    if (press) {
        const int command = CommandForKey(key, modifiers);
        if (command == 0 || m_heldKeys.contains(key) || !View(m_selected) || View(m_selected)->CameraId().isEmpty()
            || !PanelOffers(m_selected, command))
            return command != 0;
        const bool fishEye = Panel(m_selected)->IsSoftwarePTZ();
        const HeldKey held{command, View(m_selected)->CameraId(), m_selected, ++m_keyPresses,
                           fishEye ? m_software.value(m_selected) : nullptr};
        m_heldKeys.insert(key, held);
        SendCommand(held, 0);
        return true;
    }
    if (!m_heldKeys.contains(key))
        return false;
    const HeldKey released = m_heldKeys.take(key);
    SendCommand(released, 1);
    // The stop may end more of the camera's motion than this key started: the latest key still
    // held on it for pan/tilt, and for zoom, starts again.
    auto isZoom = [](int command) { return command == 11 || command == 12; };
    const HeldKey *latest[2] = {nullptr, nullptr};
    for (const HeldKey &other : qAsConst(m_heldKeys)) {
        const HeldKey *&slot = latest[isZoom(other.command) ? 1 : 0];
        if (other.camera == released.camera && (!slot || other.order > slot->order))
            slot = &other;
    }
    for (const HeldKey *other : latest)
        if (other)
            SendCommand(*other, 0);
    return true;
}

void CWorkbenchWindow::SendCommand(const HeldKey &held, int action)
{
    // The same speed as the pad: the slider of the panel the key started on.
    const QSlider *slider = Panel(held.screen) ? Panel(held.screen)->findChild<QSlider *>() : nullptr;
    const int speed = slider ? slider->value() : ptz_plugin_protocol::kDefaultSpeed;
    if (held.software) {
        held.software->Control(unsigned(held.command), action == 1, speed);
        return;
    }
    ptz_plugin_protocol::PTZControlCommand cmd;
    cmd.camera_index_code = held.camera.toStdString();
    cmd.owner_index_code =
        Tarn::Base::CSingleton<ZephPluginManager::CCurrentUser>::Instance()->GetUserName().toStdString();
    cmd.command = uint32_t(held.command);
    cmd.action = uint32_t(action);
    cmd.speed = speed;
    cmd.extra = 0;
    m_controller->Control(cmd);
}

void CWorkbenchWindow::StopHeldKeys(int screen)
{
    for (auto it = m_heldKeys.begin(); it != m_heldKeys.end();) {
        if (screen >= 0 && it->screen != screen) {
            ++it;
            continue;
        }
        SendCommand(*it, 1);
        it = m_heldKeys.erase(it);
    }
}

bool CWorkbenchWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
        auto *key = static_cast<QKeyEvent *>(event);
        // Text fields keep their keys; auto-repeat must not restart a held move.
        if (!key->isAutoRepeat() && !qobject_cast<QLineEdit *>(QApplication::focusWidget()) && watched->isWidgetType()
            && static_cast<QWidget *>(watched)->window() == this) {
            if (SteerByKey(key->key(), key->modifiers(), event->type() == QEvent::KeyPress))
                return true;
        } else if (key->isAutoRepeat() && m_heldKeys.contains(key->key())) {
            return true;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void CWorkbenchWindow::changeEvent(QEvent *event)
{
    // Keys released while another window has the focus never arrive here: stop what they hold.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow())
        StopHeldKeys();
    QMainWindow::changeEvent(event);
}

void CWorkbenchWindow::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    PlaceToasts();
}
