#include "cli/selection.h"
#include "cli/status_output.h"
#include "common/MMain.h"
#include "generation/destination.h"
#include "mainwindow/menu.h"

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    PhoneSelection phones;
    QStringList levels;
    bool source = false;
    QString folder;
    bool dryRun = false;
};

Levels chosenLevels(const QStringList& names)
{
    return {names.contains(u"phone"_s), names.contains(u"company"_s), names.contains(u"equipment"_s)};
}

/// The requests that the options make, completed by what is remembered for company and models. Of all models,
/// those whose phones load no file have none.
QList<GenerationRequest> requestsOf(MMain& main, const Options& options)
{
    QList<GenerationRequest> requests = requestsFor(main, choiceOf(options.phones));
    if (options.phones.equipment.isEmpty())
        requests.removeIf(
            [&main](const GenerationRequest& request) { return !writerOf(main, request.equipment); });
    for (GenerationRequest& request : requests) {
        request.withSource = options.source;
        if (!options.levels.isEmpty())
            request.levels = chosenLevels(options.levels);
        if (!options.folder.isEmpty())
            request.folder = options.folder;
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
        isDone = generate(main, request, options.phones.equipment.isEmpty()) && isDone;
    return isDone ? Done : EndedWithMessage;
}

} // namespace

Command generateCommand(Parser application)
{
    Parser parser = application.addCommand("generate", "Write the configuration files of phones");
    const auto options = std::make_shared<Options>();
    addSelection(parser, options->phones, Models::OneOrAll);
    addPhones(parser, options->phones);
    parser
        .addOption("--levels", options->levels,
                   "Levels to include, of phone, company and equipment (default: as remembered)")
        .oneOf({u"phone"_s, u"company"_s, u"equipment"_s});
    parser.addFlag("--source", options->source, "Write a readable source copy beside each file");
    parser.addOption("--folder", options->folder, "Folder for the files (default: as remembered)");
    parser.addFlag("--dry-run", options->dryRun,
                   "Write nothing: compare, and list the parameters that differ");
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
