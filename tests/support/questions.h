#pragma once

#include "vs_ui_data_controller/cnomalmessagemanager.h"

#include <QStringList>

// While alive, answers the host's messages and questions with `answer` and records their texts.
class QuestionRecorder
{
public:
    QuestionRecorder()
    {
        Manager()->SetAnswerProvider([this](const QString &text) {
            asked << text;
            return answer;
        });
    }
    ~QuestionRecorder() { Manager()->SetAnswerProvider({}); }
    QuestionRecorder(const QuestionRecorder &) = delete;
    QuestionRecorder &operator=(const QuestionRecorder &) = delete;

    QStringList asked;
    int answer = vs_ui_data_controller::CNomalMessageManager::AnswerConfirm;

private:
    static vs_ui_data_controller::CNomalMessageManager *Manager()
    {
        return vs_ui_data_controller::CNomalMessageManager::Instance();
    }
};
