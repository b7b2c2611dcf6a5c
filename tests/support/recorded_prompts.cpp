#include "support/recorded_prompts.h"

using namespace Qt::StringLiterals;

namespace velmora {

Prompts RecordedPrompts::prompts()
{
    const auto answer = [this](const QString& question, const QString&) {
        questions << question;
        return yesNoAnswer;
    };
    const auto chooseFile = [this](const QString&, const QString& proposal, const QStringList&) {
        proposals << proposal;
        return fileAnswer;
    };
    return {
        [this](const QString& text, const QString& detail) {
            shown << text;
            details << detail;
        },
        answer,
        answer,
        [this](const QString& question, const QString& proposal) {
            questions << question;
            proposals << proposal;
            return textAnswer;
        },
        [this](const QString& question, const QString& title) {
            questions << title + u": "_s + question;
            return passwordAnswer;
        },
        [this](const QString& startFolder) {
            proposals << startFolder;
            return folderAnswer;
        },
        chooseFile,
        chooseFile,
        [this] {
            if (onEvents)
                onEvents();
        },
    };
}

} // namespace velmora
