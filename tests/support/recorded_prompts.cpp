#include "support/recorded_prompts.h"

namespace velmora {

Prompts RecordedPrompts::prompts()
{
    return {
        [this](const QString& text, const QString& detail) {
            shown << text;
            details << detail;
        },
        [this](const QString& question, const QString&) {
            questions << question;
            return yesNoAnswer;
        },
        [this](const QString& question, const QString& proposal) {
            questions << question;
            proposals << proposal;
            return textAnswer;
        },
        [this](const QString& startFolder) {
            proposals << startFolder;
            return folderAnswer;
        },
        [this] {
            if (onEvents)
                onEvents();
        },
    };
}

} // namespace velmora
