#pragma once

#include <QHash>
#include <QMainWindow>
#include <QPointer>
#include <QStatusBar>
#include <QTranslator>
#include <QVector>

#include <memory>

class QGridLayout;
class QListWidget;
class QStackedWidget;
class CLiveView;

namespace PreviewPTZControl {
class CPreviewPTZWnd;
}
namespace zeph_ptz_controller {
class CBaseSoftwarePtzControllor;
class CUniversalPTZController;
} // namespace zeph_ptz_controller

// The host: camera list, a grid of live views with one PTZ panel per screen,
// the selected screen's panel beside the grid, message tips as toasts.
class CWorkbenchWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit CWorkbenchWindow(QWidget *parent = nullptr);
    ~CWorkbenchWindow() override;

    // The size the workbench opens with.
    static QSize DefaultSize() { return QSize(1400, 860); }
    void SetScreenCount(int count); // 1, 4 or 9
    int ScreenCount() const { return m_views.size(); }
    bool BindCamera(int screen, const QString &cameraId);
    // Stops the screen's picture: its panel stops work and shows no camera.
    void CloseScreen(int screen);
    void SelectScreen(int screen);
    // Opens or closes the fish-eye view on a screen showing a fish-eye camera; false when it cannot open.
    bool SetFishEyeOpen(int screen, bool open);
    int SelectedScreen() const { return m_selected; }
    void SetWhiteTheme(bool white);
    void SetStackedLayout(bool stacked);
    // Shows translation keys instead of English texts (for translators); rebuilds the panels.
    void SetRawTranslationKeys(bool raw);
    void ShowTip(const QString &text, int level);
    // A note in the status bar beside the operator line (until the next note or menu hint).
    void ShowStatusNote(const QString &text) { statusBar()->showMessage(text); }

    PreviewPTZControl::CPreviewPTZWnd *Panel(int screen) const;
    // The controller shared by all screens.
    zeph_ptz_controller::CUniversalPTZController *Controller() const { return m_controller.get(); }
    CLiveView *View(int screen) const;

    // The application style sheet of a theme: looks for the panel's dark or "_white_" object names.
    static QString StyleSheet(bool white);

    // PTZ command a key steers with while held (21-28 moves, 11/12 zoom), or 0.
    static int CommandForKey(int key, Qt::KeyboardModifiers modifiers);
    // Starts (press) or stops (release) the command of a key on the selected screen's camera.
    // A key whose pad section or zoom button is disabled sends nothing. Each held key keeps the
    // camera and screen it started on, so its release stops that camera, wherever the selection is.
    bool SteerByKey(int key, Qt::KeyboardModifiers modifiers, bool press);
    // Whether the screen's panel offers the command now (pad section or zoom button enabled).
    bool PanelOffers(int screen, int command) const;
    int HeldKeyCount() const { return m_heldKeys.size(); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void BuildMenus();
    void RebuildPanels();
    PreviewPTZControl::CPreviewPTZWnd *CreatePanel(unsigned int screen);
    void FillCameraList();
    void LayoutGrid();
    void PlaceToasts();
    struct HeldKey
    {
        int command = 0;
        QString camera;
        int screen = 0;
        quint64 order = 0; // press order, to resume the latest key still held
        // Set when the key started in a fish-eye view: it steers the sub-view, never the device.
        std::shared_ptr<zeph_ptz_controller::CBaseSoftwarePtzControllor> software;
    };
    void SendCommand(const HeldKey &held, int action);
    // Stops the keys held on a screen, or all of them.
    void StopHeldKeys(int screen = -1);
    void OnFunctionEnabled(int screen, int function, bool enabled);

    std::shared_ptr<zeph_ptz_controller::CUniversalPTZController> m_controller;
    QListWidget *m_cameraList = nullptr;
    QWidget *m_grid = nullptr;
    QGridLayout *m_gridLayout = nullptr;
    QStackedWidget *m_panels = nullptr;
    QVector<CLiveView *> m_views;
    QVector<PreviewPTZControl::CPreviewPTZWnd *> m_panelList;
    int m_selected = 0;
    bool m_white = false;
    bool m_stacked = false;
    QPointer<QTranslator> m_rawKeys;
    QHash<int, QString> m_bindings; // screen -> camera, also of screens hidden by a smaller grid
    QHash<int, HeldKey> m_heldKeys; // key -> what it started
    // screen -> the software controller its panel steers fish-eye views with; keys use the same one
    QHash<int, std::shared_ptr<zeph_ptz_controller::CBaseSoftwarePtzControllor>> m_software;
    quint64 m_keyPresses = 0;
};
