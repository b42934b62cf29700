#pragma once

#include "vs_ui_data_controller/hostui_export.h"

#include "tarn/base/singleton.h"

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

namespace vs_ui_data_controller {

// Modal message boxes and confirmation questions of the host. With an answer
// provider installed no box is opened: the provider receives the text and its
// return value is the answer, so tests and scripted runs never block.
class HOSTUI_EXPORT CNomalMessageManager : public QObject, public Tarn::Base::CSingleton<CNomalMessageManager>
{
    Q_OBJECT
    friend class Tarn::Base::CSingleton<CNomalMessageManager>;

public:
    enum MessageLevel {
        LevelError = 0,
        LevelInformation = 1,
        LevelWarning = 2,
        LevelSuccess = 3,
    };
    Q_ENUM(MessageLevel)

    enum Answer {
        AnswerCancel = 0,
        AnswerConfirm = 1,
    };
    Q_ENUM(Answer)

    using AnswerProvider = std::function<int(const QString &text)>;

    // Shows a message box over parent (its top-level window) and returns when it
    // is closed; returns AnswerConfirm, or the provider's answer.
    int ShowMessage(const QString &message, int level = LevelInformation, QWidget *parent = nullptr);
    // Asks a confirm/cancel question; returns AnswerConfirm (1) only when confirmed.
    int ShowMessageTip(const QString &message, QWidget *parent = nullptr, const QString &title = QString());

    // An empty provider brings the modal boxes back.
    void SetAnswerProvider(AnswerProvider provider);
    bool HasAnswerProvider() const;

signals:
    // Emitted before the box opens (or the provider is asked).
    void SignalMessageShown(const QString &message, int level);
    void SignalMessageTipAsked(const QString &message);

private:
    CNomalMessageManager();
    ~CNomalMessageManager() override;

    AnswerProvider m_answerProvider;
};

} // namespace vs_ui_data_controller
