#pragma once

#include "previewptzcontrol_export.h"

#include "tarn/base/singleton.h"

#include <QMap>
#include <QObject>

namespace PreviewPTZControl {

class CPreviewPTZWnd;

// Process-wide registry from live-view screen index to the panel on that screen.
// It does not own the panels; the host removes a panel before destroying it.
class PREVIEWPTZCONTROL_EXPORT CPreviewPTZWndManager : public QObject,
                                                       public Tarn::Base::CSingleton<CPreviewPTZWndManager>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CPreviewPTZWndManager>;

public:
    // Keeps the first panel registered for a screen until it is removed; null is ignored.
    void AddPreviewPTZWnd(unsigned int screen_index, CPreviewPTZWnd *wnd);
    void RemovePreviewPTZWnd(unsigned int screen_index);
    CPreviewPTZWnd *GetPreviewPTZWndByScreenIndex(unsigned int screen_index) const;
    QMap<unsigned int, CPreviewPTZWnd *> GetAllPreviewPTZWnd() const;

private:
    CPreviewPTZWndManager() = default;
    ~CPreviewPTZWndManager() override = default;

    QMap<unsigned int, CPreviewPTZWnd *> preview_ptz_wnds_;
};

} // namespace PreviewPTZControl
