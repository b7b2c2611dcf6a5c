#include "cli/command.h"
#include "cli/selection.h"
#include "common/MMain.h"
#include "files/whole_file.h"
#include "mainwindow/menu.h"
#include "platform/interruption.h"
#include "reboot/dry_run.h"
#include "reboot/reboot.h"

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    PhoneSelection phones;
    bool changedOnly = false;
    bool waitIfBusy = false;
    int atOnce = 1;
    int pause = 0;
    bool confirm = false;
    bool dryRun = false;
    QString failedTo;
    quint16 port = HttpExchange::webPort;
};

RebootRequest requestOf(MMain& main, const Options& options)
{
    const PhoneChoice range = rangeOf(main, options.phones);
    RebootRequest request{range.company, range.equipment, range.from, range.to, options.waitIfBusy};
    request.codes = range.codes;
    request.changedOnly = options.changedOnly;
    request.atOnce = options.atOnce;
    request.pause = options.pause * 1000;
    request.confirm = options.confirm;
    return request;
}

/// The end of a command that has found no phone.
ExitStatus noPhones(MMain& main, const RebootRequest& request, bool isMissing)
{
    if (request.changedOnly && !isMissing) {
        QTextStream(stdout) << main.messageLine(u"M392"_s) << Qt::endl;
        return Done;
    }
    main.showMessage(u"M8"_s);
    return EndedWithMessage;
}

/// As --phones reads them.
void writeCodes(const QString& path, const QStringList& codes)
{
    QString lines;
    for (const QString& code : codes)
        lines += code + u'\n';
    writeWholeFile(path, lines.toUtf8());
}

ExitStatus restart(MMain& main, const Options& options, const RebootRequest& request, const RunReport& report)
{
    const QString& failedTo = options.failedTo;
    if (!failedTo.isEmpty())
        checkWritable(failedTo);
    Reboot reboot(main, options.port, report);
    const Interruption interruption([&reboot] { reboot.abort(); });
    const RebootCounts counts = reboot.run(request);
    QTextStream(stdout) << summaryOf(main, counts, request.confirm) << Qt::endl;
    if (!failedTo.isEmpty())
        writeCodes(failedTo, counts.failed);
    if (counts.phones == 0)
        return noPhones(main, request, counts.missing > 0);
    return counts.allRestarted() && !reboot.isAborted() ? Done : EndedWithMessage;
}

ExitStatus showPlan(MMain& main, const RebootRequest& request, const RunReport& report)
{
    const PlanCounts counts = planReboot(main, request, report);
    if (counts.phones == 0)
        return noPhones(main, request, counts.missing > 0);
    return counts.withRemarks == 0 ? Done : EndedWithMessage;
}

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"Reboot"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    const RebootRequest request = requestOf(main, options);
    if (request.phoneFrom.isEmpty()) {
        main.showMessage(u"M8"_s);
        return EndedWithMessage;
    }
    QTextStream out(stdout);
    const RunReport report = {[&out](const QString& line) { out << line << Qt::endl; },
                              [](qsizetype, qsizetype) {}};
    return options.dryRun ? showPlan(main, request, report) : restart(main, options, request, report);
}

} // namespace

Command rebootCommand(Parser application)
{
    Parser parser = application.addCommand("reboot", "Restart phones through their web servers");
    const auto options = std::make_shared<Options>();
    addSelection(parser, options->phones, Models::OneOrAll);
    addPhones(parser, options->phones);
    parser.addFlag("--changed", options->changedOnly,
                   "Only phones whose file is another one than at their last restart");
    parser.addFlag("--wait-if-busy", options->waitIfBusy, "Ask a busy phone again every five seconds");
    parser.addOption("--at-once", options->atOnce, "How many phones are visited at a time")
        .between(1, mostAtOnce);
    parser.addOption("--pause", options->pause, "Seconds from the start of one visit to the next")
        .between(0, 3600);
    parser.addFlag("--confirm", options->confirm,
                   "Count as restarted only what goes down within a minute and is back within five");
    parser.addFlag("--dry-run", options->dryRun, "Show what would be visited, and visit nothing");
    parser.addOption("--failed-to", options->failedTo,
                     "Write the codes of the phones that failed to this file");
    parser.addOption("--port", options->port, "Port of the phones' web servers").between(1, 65535);
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
