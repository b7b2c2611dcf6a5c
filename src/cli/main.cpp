// velmora-cli: the batch jobs of the desktop program from a terminal or a scheduler.
#include "cli/command.h"
#include "cli/terminal_prompts.h"
#include "files/file_error.h"
#include "startup/MMain.h"
#include "startup/first_start.h"
#include "startup/program_folder.h"
#include "startup/start_up.h"
#include "startup/user_name.h"
#include "startup/version.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>

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
    const std::vector<Command> commands = {startCommand(parser),    listCommand(parser),
                                           generateCommand(parser), phonebookCommand(parser),
                                           rangesCommand(parser),   rebootCommand(parser)};
    try {
        parser.parse(argumentsLastFirst());
    } catch (const CLI::ParseError& error) {
        return explain(parser, error);
    }

    const auto userAnswer = as->count() > 0 ? std::optional(QString::fromStdString(actAs)) : std::nullopt;
    const QString chosenFolder = QString::fromStdString(folder);
    MMain mainModule(programFolder(chosenFolder), terminalPrompts(userAnswer, yes));
    if (!fillProgramFolder(mainModule, chosenFolder) || !StartUp(mainModule, systemUserName()))
        return StartUpEnded;
    const auto chosen = std::find_if(commands.begin(), commands.end(),
                                     [](const Command& command) { return command.parser->parsed(); });
    try {
        return chosen->run(mainModule);
    } catch (const DatabaseError& error) {
        mainModule.prompts.show(error.description(), error.statement());
        return EndedWithMessage;
    } catch (const FileError& error) {
        mainModule.prompts.show(error.path() + ": "_L1 + error.description(), {});
        return EndedWithMessage;
    }
}
