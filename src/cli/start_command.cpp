#include "cli/command.h"

#include <CLI/CLI.hpp>

namespace velmora {

Command startCommand(CLI::App& application)
{
    CLI::App* parser = application.add_subcommand("start", "Run the start-up only");
    return {parser, [](MMain&) { return Done; }};
}

} // namespace velmora
