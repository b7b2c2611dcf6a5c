#include "cli/command.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"
#include "ranges/ranges.h"

#include <CLI/CLI.hpp>

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    std::string company;
    std::string from;
    std::string to;
};

ExitStatus run(MMain& main, const Options& options, bool remove)
{
    if (!canReachMenuItem(main, u"Ranges"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    QTextStream out(stdout);
    const RunReport report = {[&out](const QString& line) { out << line << '\n'; },
                              [](qsizetype, qsizetype) {}};
    const RangeRequest request{QString::fromStdString(options.company), QString::fromStdString(options.from),
                               QString::fromStdString(options.to), remove};
    return generateRanges(main, request, report) ? Done : EndedWithMessage;
}

/// Up to nine digits, as the window takes them.
std::string digitsOnly(const std::string& text)
{
    const bool digits =
        !text.empty() && text.size() <= 9 && text.find_first_not_of("0123456789") == std::string::npos;
    return digits ? std::string() : "up to nine digits are needed, not " + text;
}

} // namespace

Command rangesCommand(CLI::App& application)
{
    CLI::App* parser =
        application.add_subcommand("ranges", "Add or delete the phone codes that a company may use");
    parser->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    const CLI::Validator digits(digitsOnly, "DIGITS");
    const auto add = [&](const char* name, const char* description) {
        CLI::App* kind = parser->add_subcommand(name, description);
        kind->add_option("--company", options->company, "Code of the company")->required();
        kind->add_option("--from", options->from, "First code")->required()->check(digits);
        kind->add_option("--to", options->to, "Last code")->required()->check(digits);
        return kind;
    };
    add("add", "Add every code of an interval");
    const CLI::App* removing = add("delete", "Delete every code of an interval");
    return {parser, [options, removing](MMain& main) { return run(main, *options, removing->parsed()); }};
}

} // namespace velmora
