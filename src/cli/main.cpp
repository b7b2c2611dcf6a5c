// velmora-cli: the batch jobs of the desktop program from a terminal or a scheduler.
#include "cli/command.h"
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "common/texts/built_in_texts.h"
#include "common/texts/refusal.h"
#include "files/file_error.h"
#include "platform/terminal.h"
#include "platform/user_name.h"
#include "schema/version.h"
#include "startup/first_start.h"
#include "startup/program_folder.h"
#include "startup/start_up.h"

#include <QCoreApplication>
#include <QTextStream>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

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
    const Utf8Output output;
    QCoreApplication application(argc, argv);
    CommandLine line("velmora-cli", "Velmora: configuration files, phone books and restarts of IP phones",
                     "velmora-cli "_L1 + versionText());
    Parser parser = line.parser();
    QString folder;
    QString actAs;
    bool yes = false;
    parser.addOption("--program-dir", folder, "The folder of ParamDB.txt and the seed file");
    const Option as = parser.addOption("--as", actAs, "Act as this user (superusers only)");
    parser.addFlag("--yes", yes, "Answer yes to every question");
    const std::vector<Command> commands = {
        startCommand(parser),    listCommand(parser),      generateCommand(parser), statusCommand(parser),
        explainCommand(parser),  phonebookCommand(parser), rangesCommand(parser),   rebootCommand(parser),
        languageCommand(parser), tableCommand(parser)};
    const Usage usage = line.parse(QCoreApplication::arguments().sliced(1));
    if (usage != Usage::Right)
        return withOutput(usage == Usage::HelpWanted ? Done : WrongUsage, u"EN"_s);

    const auto userAnswer = as.isGiven() ? std::optional(actAs) : std::nullopt;
    MMain mainModule(programFolder(folder), terminalPrompts(userAnswer, yes));
    if (!fillProgramFolder(mainModule, folder) || !StartUp(mainModule, systemUserName()))
        return StartUpEnded;
    if (userAnswer && !userAnswer->isEmpty() && mainModule.userName != userAnswer->toUpper()) {
        mainModule.showMessage(u"M293"_s, mainModule.userName);
        return WrongUsage;
    }
    const auto chosen = std::find_if(commands.begin(), commands.end(),
                                     [](const Command& command) { return command.parser.isChosen(); });
    return withOutput(run(*chosen, mainModule), mainModule.language);
}
