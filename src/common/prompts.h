// How the program asks and tells its user.
#pragma once

#include <QStringList>

#include <functional>
#include <optional>

namespace velmora {

/// A file that the user has chosen, and the place of its kind among those that were offered.
struct ChosenFile {
    QString path;
    qsizetype kind = 0;
};

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
    /// Asks for an existing file in `folder` of one of the kinds, such as "Text (*.txt)", in a box with that
    /// title. Nothing when the user cancelled.
    std::function<std::optional<ChosenFile>(const QString& title, const QString& folder,
                                            const QStringList& kinds)>
        chooseFileToRead;
    /// Asks for the path of a file to write, proposing `proposal`, and whether one that stands there may go.
    std::function<std::optional<ChosenFile>(const QString& title, const QString& proposal,
                                            const QStringList& kinds)>
        chooseFileToWrite;
    /// Lets pending window events run during long work.
    std::function<void()> letEventsRun;
};

} // namespace velmora
