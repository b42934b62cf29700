#pragma once

#include "vs_ui_data_controller/hostui_export.h"

#include "tarn/base/singleton.h"

#include <QObject>
#include <QPointer>
#include <QString>

class QWidget;

namespace vs_ui_data_controller {

// Corner notices: a frameless window at the bottom right of the screen that
// stays for a while, then fades out and deletes itself. One notice at a time;
// a new one replaces the one still showing.
class HOSTUI_EXPORT CInformationMgr : public QObject, public Tarn::Base::CSingleton<CInformationMgr>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CInformationMgr>;

public:
    // Object name of the notice window and of its text label.
    static const char *NoticeObjectName();
    static const char *NoticeTextObjectName();

    // Shows text on the screen of parent (primary screen without one). The
    // notice is a tool window of parent, so it goes with it. Returns the notice.
    QWidget *ShowInformationAtScreenRightBottom_V3(const QString &text, QWidget *parent = nullptr);

    // The notices' timing for any widget (a window or a child): keeps it fully visible for the
    // display duration, then fades it out and deletes it. Called again on the same widget, its
    // time starts over at full opacity (a message repeated while it shows).
    void ShowThenFade(QWidget *widget);

    // Time the notice stays fully visible, and the length of its fade (ms).
    void SetDisplayDuration(int msecs);
    int GetDisplayDuration() const;
    void SetFadeDuration(int msecs);
    int GetFadeDuration() const;

    QWidget *GetCurrentNotice() const;

signals:
    void SignalInformationShown(const QString &text);

private:
    CInformationMgr();
    ~CInformationMgr() override;

    void StartFade(QWidget *notice);

    int m_displayDuration = 3000;
    int m_fadeDuration = 800;
    QPointer<QWidget> m_current;
};

} // namespace vs_ui_data_controller
