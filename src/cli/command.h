// What every command of velmora-cli is made of.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace velmora {

class MMain;

/// How velmora-cli ends.
enum ExitStatus : int { Done = 0, EndedWithMessage = 1, WrongUsage = 2, StartUpEnded = 3 };

/// A command: its part of the command line, and what it does once the start-up is through.
struct Command {
    CLI::App* parser;
    /// Throws DatabaseError when the database fails.
    std::function<ExitStatus(MMain&)> run;
};

Command startCommand(CLI::App& application);
Command listCommand(CLI::App& application);
Command generateCommand(CLI::App& application);
Command phonebookCommand(CLI::App& application);
Command rangesCommand(CLI::App& application);
Command rebootCommand(CLI::App& application);
Command languageCommand(CLI::App& application);
Command statusCommand(CLI::App& application);
Command explainCommand(CLI::App& application);
Command tableCommand(CLI::App& application);

} // namespace velmora
