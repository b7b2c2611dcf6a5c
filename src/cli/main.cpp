// velmora-cli: the batch jobs of the desktop program from a terminal or a scheduler.
#include "cli/command.h"
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "common/texts/built_in_texts.h"
#include "common/texts/refusal.h"
#include "files/file_error.h"
#include "platform/user_name.h"
#include "schema/version.h"
#include "startup/first_start.h"
#include "startup/program_folder.h"
#include "startup/start_up.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// The arguments as UTF-8 on every system, in the order in which the parser takes a list of them.
std::vector<std::string> argumentsLastFirst()
{
    std::vector<std::string> arguments;
    for (const QString& argument : QCoreApplication::arguments().sliced(1))
        arguments.insert(arguments.begin(), argument.toStdString());
    return arguments;
}

/// Tells why the command line can't be taken. What is not known is named first: a command that is mistyped
/// also looks as if there were none.
ExitStatus explain(const CLI::App& parser, const CLI::ParseError& error)
{
    const std::vector<std::string> unknown = parser.remaining(true);
    const bool missing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    const int status =
        missing && !unknown.empty() ? parser.exit(CLI::ExtrasError(unknown)) : parser.exit(error);
    return status == 0 ? Done : WrongUsage;
}

/// Runs a command after the start-up; what it does not trap itself is a message.
ExitStatus run(const Command& command, MMain& main)
{
    try {
        return command.run(main);
    } catch (const DatabaseError& error) {
        const QString reason = unreachableReason(main, error);
        main.prompts.show(reason.isEmpty() ? error.description() : reason + u'\n' + error.description(),
                          error.statement());
    } catch (const FileError& error) {
        main.prompts.show(error.path() + ": "_L1 + error.description(), {});
    }
    return EndedWithMessage;
}

/// The status, or that of a message where a part of the output could not be written.
ExitStatus withOutput(ExitStatus status, const QString& language)
{
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return status;
    QTextStream(stderr) << builtInText(u"M294"_s, language) << '\n';
    return std::max(status, EndedWithMessage);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    CLI::App parser("Velmora: configuration files, phone books and restarts of IP phones", "velmora-cli");
    parser.set_version_flag("--version", "velmora-cli " + versionText().toStdString());
    parser.require_subcommand(1);
    parser.fallthrough();
    std::string folder;
    std::string actAs;
    bool yes = false;
    parser.add_option("--program-dir", folder, "The folder of ParamDB.txt and the seed file");
    const CLI::Option* as = parser.add_option("--as", actAs, "Act as this user (superusers only)");
    parser.add_flag("--yes", yes, "Answer yes to every question");
    const std::vector<Command> commands = {
        startCommand(parser),    listCommand(parser),      generateCommand(parser), statusCommand(parser),
        explainCommand(parser),  phonebookCommand(parser), rangesCommand(parser),   rebootCommand(parser),
        languageCommand(parser), tableCommand(parser)};
    try {
        parser.parse(argumentsLastFirst());
    } catch (const CLI::ParseError& error) {
        return withOutput(explain(parser, error), u"EN"_s);
    }

    const auto userAnswer = as->count() > 0 ? std::optional(QString::fromStdString(actAs)) : std::nullopt;
    const QString chosenFolder = QString::fromStdString(folder);
    MMain mainModule(programFolder(chosenFolder), terminalPrompts(userAnswer, yes));
    if (!fillProgramFolder(mainModule, chosenFolder) || !StartUp(mainModule, systemUserName()))
        return StartUpEnded;
    if (userAnswer && !userAnswer->isEmpty() && mainModule.userName != userAnswer->toUpper()) {
        mainModule.showMessage(u"M293"_s, mainModule.userName);
        return WrongUsage;
    }
    const auto chosen = std::find_if(commands.begin(), commands.end(),
                                     [](const Command& command) { return command.parser->parsed(); });
    return withOutput(run(*chosen, mainModule), mainModule.language);
}
