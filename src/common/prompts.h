// How the program asks and tells its user.
#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace velmora {

/// Everything that asks or tells the user goes through one such value: the desktop answers with message
/// boxes, the command line with the terminal, a test with a recorder. Every callable must be set.
struct Prompts {
    /// Shows `text` and waits until the user has read it; `details`, if any, explain it further.
    std::function<void(const QString& text, const QString& details)> show;
    /// Asks a yes/no question in a box with that title; true for yes. No is proposed, since yes would lose or
    /// replace something.
    std::function<bool(const QString& question, const QString& title)> askYesNo;
    /// The same about something that loses nothing: yes is proposed.
    std::function<bool(const QString& question, const QString& title)> askToGoOn;
    /// Asks for a text, proposing `proposal`. Nothing when the user cancelled.
    std::function<std::optional<QString>(const QString& question, const QString& proposal)> askText;
    /// Asks for a password in a box with that title, without showing what is typed. Nothing when the user
    /// cancelled.
    std::function<std::optional<QString>(const QString& question, const QString& title)> askPassword;
    /// Asks for an existing folder, starting at `startFolder`. Nothing when the user cancelled.
    std::function<std::optional<QString>(const QString& startFolder)> chooseFolder;
    /// Lets pending window events run during long work.
    std::function<void()> letEventsRun;
};

} // namespace velmora
