#include "cli/command.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"
#include "status/status_lines.h"

#include <CLI/CLI.hpp>

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    std::string company;
    std::string phone;
    std::string parameter;
};

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"GenStatus"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    Phone phone;
    phone.company = QString::fromStdString(options.company);
    phone.code = QString::fromStdString(options.phone);
    const Recordset rows = main.connection.select(u"SELECT * FROM PHONES WHERE CO_CODE = ? AND PH_CODE = ?"_s,
                                                  {phone.company, phone.code});
    if (rows.eof()) {
        main.showMessage(u"M8"_s);
        return EndedWithMessage;
    }
    const QString wanted = QString::fromStdString(options.parameter);
    QTextStream out(stdout);
    bool found = wanted.isEmpty();
    for (const ExplainedParameter& parameter : explain(main, phoneOf(rows))) {
        if (!wanted.isEmpty() && parameter.code != wanted)
            continue;
        found = true;
        out << lineOf(parameter) << '\n';
    }
    if (!found)
        main.showMessage(u"M1"_s, wanted);
    return found ? Done : EndedWithMessage;
}

} // namespace

Command explainCommand(CLI::App& application)
{
    CLI::App* parser =
        application.add_subcommand("explain", "Tell where the values of a phone's parameters come from");
    const auto options = std::make_shared<Options>();
    parser->add_option("--company", options->company, "Code of the company")->required();
    parser->add_option("--phone", options->phone, "Code of the phone")->required();
    parser->add_option("--parameter", options->parameter, "Only this parameter (default: all)");
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
