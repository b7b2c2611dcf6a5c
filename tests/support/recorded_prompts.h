// A user of whom everything is remembered and whose answers are given beforehand.
#pragma once

#include "common/prompts.h"

#include <QStringList>

namespace velmora {

/// Must outlive the prompts that it gave out.
struct RecordedPrompts {
    /// The texts that were shown, and their details, in order.
    QStringList shown;
    QStringList details;
    /// The questions that were asked, with their proposals, in order.
    QStringList questions;
    QStringList proposals;
    /// What the user answers; nothing cancels.
    std::optional<QString> textAnswer;
    std::optional<QString> passwordAnswer;
    std::optional<QString> folderAnswer;
    std::optional<ChosenFile> fileAnswer;
    bool yesNoAnswer = false;
    /// Runs whenever window events may run.
    std::function<void()> onEvents;

    Prompts prompts();
};

} // namespace velmora
