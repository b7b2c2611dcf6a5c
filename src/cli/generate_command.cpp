#include "cli/command.h"
#include "cli/selection.h"
#include "common/MMain.h"
#include "generation/destination.h"
#include "generation/generate.h"
#include "mainwindow/menu.h"
#include "runs/phone_selection.h"

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
};

Levels chosenLevels(const std::vector<std::string>& names)
{
    const auto named = [&names](const char* level) {
        return std::find(names.begin(), names.end(), level) != names.end();
    };
    return {named("phone"), named("company"), named("equipment")};
}

/// The request that the options make, completed by what is remembered for the company and model.
GenerationRequest requestOf(MMain& main, const Options& options)
{
    const PhoneRange range = rangeOf(main, options.phones);
    GenerationRequest request;
    request.company = range.company;
    request.equipment = range.equipment;
    request.phoneFrom = range.from;
    request.phoneTo = range.to;
    request.withSource = options.source;
    const Destination remembered = rememberedDestination(main, request.company, request.equipment);
    request.levels = options.levels.empty() ? remembered.levels : chosenLevels(options.levels);
    request.folder = options.folder.empty() ? remembered.folder : QString::fromStdString(options.folder);
    return request;
}

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"GenConf"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    QTextStream out(stdout);
    const RunReport report = {[&out](const QString& line) { out << line << Qt::endl; },
                              [](qsizetype, qsizetype) {}};
    const std::optional<qsizetype> withRemarks = Generate(main, requestOf(main, options), report);
    return withRemarks == 0 ? Done : EndedWithMessage;
}

} // namespace

Command generateCommand(CLI::App& application)
{
    CLI::App* parser = application.add_subcommand("generate", "Write the configuration files of phones");
    const auto options = std::make_shared<Options>();
    addSelection(*parser, options->phones);
    parser
        ->add_option("--levels", options->levels,
                     "Levels to include, of phone, company and equipment (default: as remembered)")
        ->delimiter(',')
        ->check(CLI::IsMember({"phone", "company", "equipment"}));
    parser->add_flag("--source", options->source, "Write a readable source copy beside each file");
    parser->add_option("--folder", options->folder, "Folder for the files (default: as remembered)");
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
