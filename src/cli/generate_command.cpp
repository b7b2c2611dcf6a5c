#include "cli/selection.h"
#include "cli/status_output.h"
#include "common/MMain.h"
#include "generation/destination.h"
#include "mainwindow/menu.h"

#include <CLI/CLI.hpp>

#include <QTextStream>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    PhoneSelection phones;
    std::vector<std::string> levels;
    bool source = false;
    std::string folder;
    bool dryRun = false;
};

Levels chosenLevels(const std::vector<std::string>& names)
{
    const auto named = [&names](const char* level) {
        return std::find(names.begin(), names.end(), level) != names.end();
    };
    return {named("phone"), named("company"), named("equipment")};
}

/// The requests that the options make, completed by what is remembered for company and models. Of all models,
/// those whose phones load no file have none.
QList<GenerationRequest> requestsOf(MMain& main, const Options& options)
{
    QList<GenerationRequest> requests = requestsFor(main, choiceOf(options.phones));
    if (options.phones.equipment.empty())
        requests.removeIf(
            [&main](const GenerationRequest& request) { return !writerOf(main, request.equipment); });
    for (GenerationRequest& request : requests) {
        request.withSource = options.source;
        if (!options.levels.empty())
            request.levels = chosenLevels(options.levels);
        if (!options.folder.empty())
            request.folder = QString::fromStdString(options.folder);
    }
    return requests;
}

/// Whether the run went through without a remark.
bool generate(MMain& main, const GenerationRequest& request, bool isOneOfAll)
{
    if (isOneOfAll && request.folder.isEmpty()) {
        main.showMessage(u"M411"_s, request.equipment);
        return false;
    }
    QTextStream out(stdout);
    const RunReport report = {[&out](const QString& line) { out << line << Qt::endl; },
                              [](qsizetype, qsizetype) {}};
    return Generate(main, request, report) == 0;
}

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"GenConf"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    const QList<GenerationRequest> requests = requestsOf(main, options);
    if (options.dryRun)
        return printStatus(main, requests, true);
    if (requests.isEmpty())
        main.showMessage(u"M8"_s);
    bool isDone = tellCodesWithoutPhone(main, requests) && !requests.isEmpty();
    for (const GenerationRequest& request : requests)
        isDone = generate(main, request, options.phones.equipment.empty()) && isDone;
    return isDone ? Done : EndedWithMessage;
}

} // namespace

Command generateCommand(CLI::App& application)
{
    CLI::App* parser = application.add_subcommand("generate", "Write the configuration files of phones");
    const auto options = std::make_shared<Options>();
    addSelection(*parser, options->phones, Models::OneOrAll);
    addPhones(*parser, options->phones);
    parser
        ->add_option("--levels", options->levels,
                     "Levels to include, of phone, company and equipment (default: as remembered)")
        ->delimiter(',')
        ->check(CLI::IsMember({"phone", "company", "equipment"}));
    parser->add_flag("--source", options->source, "Write a readable source copy beside each file");
    parser->add_option("--folder", options->folder, "Folder for the files (default: as remembered)");
    parser->add_flag("--dry-run", options->dryRun,
                     "Write nothing: compare, and list the parameters that differ");
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
