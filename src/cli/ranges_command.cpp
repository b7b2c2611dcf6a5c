#include "cli/command.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"
#include "ranges/ranges.h"

#include <QRegularExpression>
#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    QString company;
    QString from;
    QString to;
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
    const RangeRequest request{options.company, options.from, options.to, remove};
    return generateRanges(main, request, report) ? Done : EndedWithMessage;
}

/// Up to nine digits, as the window takes them.
QString digitsOnly(const QString& text)
{
    static const QRegularExpression digits(u"^[0-9]{1,9}\\z"_s);
    return digits.match(text).hasMatch() ? QString() : "up to nine digits are needed, not "_L1 + text;
}

} // namespace

Command rangesCommand(Parser application)
{
    Parser parser = application.addCommand("ranges", "Add or delete the phone codes that a company may use");
    parser.requireCommand();
    const auto options = std::make_shared<Options>();
    const auto add = [&](const char* name, const char* description) {
        Parser kind = parser.addCommand(name, description);
        kind.addOption("--company", options->company, "Code of the company").required();
        kind.addOption("--from", options->from, "First code").required().check("DIGITS", digitsOnly);
        kind.addOption("--to", options->to, "Last code").required().check("DIGITS", digitsOnly);
        return kind;
    };
    add("add", "Add every code of an interval");
    const Parser removing = add("delete", "Delete every code of an interval");
    return {parser, [options, removing](MMain& main) { return run(main, *options, removing.isChosen()); }};
}

} // namespace velmora
