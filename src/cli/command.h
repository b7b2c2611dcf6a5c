// What every command of velmora-cli is made of.
#pragma once

#include "cli/parser.h"

#include <functional>

namespace velmora {

class MMain;

/// How velmora-cli ends.
enum ExitStatus : int { Done = 0, EndedWithMessage = 1, WrongUsage = 2, StartUpEnded = 3 };

/// A command: its part of the command line, and what it does once the start-up is through.
struct Command {
    Parser parser;
    /// Throws DatabaseError when the database fails.
    std::function<ExitStatus(MMain&)> run;
};

Command startCommand(Parser application);
Command listCommand(Parser application);
Command generateCommand(Parser application);
Command phonebookCommand(Parser application);
Command rangesCommand(Parser application);
Command rebootCommand(Parser application);
Command languageCommand(Parser application);
Command statusCommand(Parser application);
Command explainCommand(Parser application);
Command tableCommand(Parser application);

} // namespace velmora
