#include "cli/selection.h"
#include "cli/status_output.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"

#include <CLI/CLI.hpp>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    PhoneSelection phones;
    std::string folder;
    bool details = false;
};

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"GenStatus"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    QList<GenerationRequest> requests = requestsFor(main, choiceOf(options.phones));
    if (!options.folder.empty())
        for (GenerationRequest& request : requests)
            request.folder = QString::fromStdString(options.folder);
    return printStatus(main, requests, options.details);
}

} // namespace

Command statusCommand(CLI::App& application)
{
    CLI::App* parser = application.add_subcommand(
        "status", "Compare the files of phones with what would be written now; nothing is written");
    const auto options = std::make_shared<Options>();
    addSelection(*parser, options->phones, Models::OneOrAll);
    addPhones(*parser, options->phones);
    parser->add_option("--folder", options->folder, "Folder of the files (default: as remembered)");
    parser->add_flag("--details", options->details, "Also list the parameters that differ");
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
