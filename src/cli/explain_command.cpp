#include "cli/command.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"
#include "status/status_lines.h"

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    QString company;
    QString phone;
    QString parameter;
};

ExitStatus run(MMain& main, const Options& options)
{
    if (!canReachMenuItem(main, u"GenStatus"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    Phone phone;
    phone.company = options.company;
    phone.code = options.phone;
    const Recordset rows = main.connection.select(u"SELECT * FROM PHONES WHERE CO_CODE = ? AND PH_CODE = ?"_s,
                                                  {phone.company, phone.code});
    if (rows.eof()) {
        main.showMessage(u"M8"_s);
        return EndedWithMessage;
    }
    const QString& wanted = options.parameter;
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

Command explainCommand(Parser application)
{
    Parser parser =
        application.addCommand("explain", "Tell where the values of a phone's parameters come from");
    const auto options = std::make_shared<Options>();
    parser.addOption("--company", options->company, "Code of the company").required();
    parser.addOption("--phone", options->phone, "Code of the phone").required();
    parser.addOption("--parameter", options->parameter, "Only this parameter (default: all)");
    return {parser, [options](MMain& main) { return run(main, *options); }};
}

} // namespace velmora
