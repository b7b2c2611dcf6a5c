#include "cli/command.h"
#include "cli/selection.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"
#include "reboot/reboot.h"

#include <CLI/CLI.hpp>

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    PhoneSelection phones;
    bool waitIfBusy = false;
    quint16 port = HttpExchange::webPort;
};

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"Reboot"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    const PhoneChoice range = rangeOf(main, options.phones);
    if (range.from.isEmpty()) {
        main.showMessage(u"M8"_s);
        return EndedWithMessage;
    }
    QTextStream out(stdout);
    Reboot reboot(main, options.port,
                  {[&out](const QString& line) { out << line << Qt::endl; }, [](qsizetype, qsizetype) {}});
    const RebootCounts counts =
        reboot.run({range.company, range.equipment, range.from, range.to, options.waitIfBusy});
    out << summaryOf(main, counts) << Qt::endl;
    if (counts.phones == 0)
        main.showMessage(u"M8"_s);
    return counts.phones > 0 && counts.refused + counts.unreachable == 0 ? Done : EndedWithMessage;
}

} // namespace

Command rebootCommand(CLI::App& application)
{
    CLI::App* parser = application.add_subcommand("reboot", "Restart phones through their web servers");
    const auto options = std::make_shared<Options>();
    addSelection(*parser, options->phones);
    parser->add_flag("--wait-if-busy", options->waitIfBusy, "Ask a busy phone again every five seconds");
    parser->add_option("--port", options->port, "Port of the phones' web servers")
        ->check(CLI::Range(1, 65535))
        ->capture_default_str();
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
