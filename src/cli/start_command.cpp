#include "cli/command.h"

namespace velmora {

Command startCommand(Parser application)
{
    Parser parser = application.addCommand("start", "Run the start-up only");
    return {parser, [](MMain&) { return Done; }};
}

} // namespace velmora
