#pragma once
// Answers the windows' message boxes, pickers and logged messages without
// showing anything, and remembers what was asked. Install for the life of a
// test: RecordingDialogs dialogs; (restores everything on exit). Header-only:
// only test programs that link the windows use it.

#include "core/modGlobal.h"
#include "core/modParseCommandLine.h"
#include "forms/modMessageBox.h"
#include "forms/modPickFile.h"

#include <QStringList>

#include <deque>
#include <vector>

namespace tvtest {

class RecordingDialogs {
public:
    RecordingDialogs()
        : verbose_(gbClVerbose)
        , logFile_(gsClLogFile)
    {
        gbClVerbose = true;
        gsClLogFile.clear();
        previousBoxes_ = setMessageBoxHandler([this](const MessageBoxRequest& r) {
            boxes << r.title + QStringLiteral(" | ") + r.text;
            if (r.buttons == MsgButtons::YesNo) {
                if (answers.empty())
                    return MsgAnswer::No;
                const MsgAnswer a = answers.front();
                answers.pop_front();
                return a;
            }
            return MsgAnswer::OK;
        });
        previousLog_ = setMessagePresenter([this](const QString& m) { logged << m; });
        previousFiles_ = setFilePicker([this](const FilePickRequest& r) {
            filePicks.push_back(r);
            FilePickResult result;
            result.path = nextFile;
            result.filterIndex = nextFilterIndex > 0 ? nextFilterIndex : r.filterIndex;
            return result;
        });
    }
    ~RecordingDialogs()
    {
        setMessageBoxHandler(previousBoxes_);
        setMessagePresenter(previousLog_);
        setFilePicker(previousFiles_);
        gbClVerbose = verbose_;
        gsClLogFile = logFile_;
    }
    RecordingDialogs(const RecordingDialogs&) = delete;
    RecordingDialogs& operator=(const RecordingDialogs&) = delete;

    // Message boxes as "title | text", in order.
    QStringList boxes;
    // Answers for Yes/No questions, used in order; No when none is left.
    std::deque<MsgAnswer> answers;
    // Messages that went through LogMessage.
    QStringList logged;
    // File picker requests, and what the next one answers.
    std::vector<FilePickRequest> filePicks;
    QString nextFile;
    qint32 nextFilterIndex = 0;

private:
    bool verbose_;
    QString logFile_;
    MessageBoxHandler previousBoxes_;
    MessagePresenter previousLog_;
    FilePicker previousFiles_;
};

} // namespace tvtest
