#include "cli/terminal_prompts.h"

#include "platform/terminal.h"

#include <QTextStream>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

void show(const QString& text, const QString& details)
{
    QTextStream err(stderr);
    err << text << '\n';
    if (!details.isEmpty())
        err << details << '\n';
}

/// A line from the terminal; nothing without one, or at its end.
std::optional<QString> ask(const QString& question)
{
    if (!isAtTerminal())
        return std::nullopt;
    QTextStream(stderr) << question << ' ';
    const QString line = terminalLine();
    return line.isNull() ? std::nullopt : std::optional(line.trimmed());
}

bool askYesNo(const QString& question)
{
    if (!isAtTerminal())
        QTextStream(stderr) << question << " answered no; --yes answers yes\n";
    return ask(question + " [y/N]"_L1).value_or(QString()).startsWith(u'y', Qt::CaseInsensitive);
}

/// The password from the environment, else from the terminal; nothing without either.
std::optional<QString> askPassword(const QString& question)
{
    if (qEnvironmentVariableIsSet(passwordVariable))
        return qEnvironmentVariable(passwordVariable);
    if (!isAtTerminal())
        return std::nullopt;
    QTextStream err(stderr);
    err << question << ' ' << Qt::flush;
    const QString line = [] {
        const HiddenInput hidden;
        return terminalLine();
    }();
    err << '\n';
    return line.isNull() ? std::nullopt : std::optional(line);
}

std::optional<ChosenFile> chooseNoFile(const QString&, const QString&, const QStringList&)
{
    return std::nullopt;
}

} // namespace

Prompts terminalPrompts(const std::optional<QString>& actAs, bool yes)
{
    const auto confirm = [yes](const QString& question, const QString&) { return yes || askYesNo(question); };
    return {
        show,
        confirm,
        confirm, // a bare Enter is no here, whatever is asked
        [actAs](const QString& question, const QString& proposal) {
            return actAs ? actAs : ask(question + " ["_L1 + proposal + u']');
        },
        [](const QString& question, const QString&) { return askPassword(question); },
        [](const QString&) { return std::optional<QString>(); },
        chooseNoFile, // options name the files
        chooseNoFile,
        [] {},
    };
}

} // namespace velmora
