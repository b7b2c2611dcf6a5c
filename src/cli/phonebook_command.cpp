#include "cli/command.h"
#include "common/MMain.h"
#include "mainwindow/menu.h"
#include "phonebook/address_book.h"
#include "phonebook/phone_book_export.h"
#include "phonebook/phone_book_import.h"
#include "runs/phone_selection.h"

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    QString company;
    QString equipment;
    QString folder;
    bool workbook = false;
};

/// A kind of run: the menu item whose right it needs, where its folder is remembered, and what it does, which
/// tells whether all went well.
struct Kind {
    QString menuItem;
    QString folderCode;
    std::function<bool(MMain&, const PhoneBookRequest&, const RunReport&)> run;
};

ExitStatus run(MMain& main, const Kind& kind, const Options& options)
{
    if (!canReachMenuItem(main, kind.menuItem)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    PhoneBookRequest request{options.company, options.equipment, options.folder};
    if (request.folder.isEmpty())
        request.folder = rememberedFolder(main, request.company + request.equipment, kind.folderCode);
    QTextStream out(stdout);
    const RunReport report = {[&out](const QString& line) { out << line << Qt::endl; },
                              [](qsizetype, qsizetype) {}};
    return kind.run(main, request, report) ? Done : EndedWithMessage;
}

} // namespace

Command phonebookCommand(Parser application)
{
    Parser parser = application.addCommand("phonebook", "Write, import or export a company's phone book");
    parser.requireCommand();
    const auto options = std::make_shared<Options>();
    const auto add = [&](const char* name, const char* description) {
        Parser kind = parser.addCommand(name, description);
        kind.addOption("--company", options->company, "Code of the company").required();
        kind.addOption("--folder", options->folder, "Folder of the file (default: as remembered)");
        return kind;
    };
    Parser generate = add("generate", "Write the address book that phones load, gs_phonebook.xml");
    Parser import = add("import", "Import the user list of a telephone server, confUsers.ini");
    for (Parser kind : {generate, import})
        kind.addOption("--equipment", options->equipment, "Code of the model").required();
    Parser exporting = add("export", "Export to Phone_Book.csv");
    exporting.addFlag("--xlsx", options->workbook, "Export to a new workbook instead");

    return {parser, [=](MMain& main) {
                if (generate.isChosen())
                    return run(main, {u"PbGen"_s, u"$$PBGEN"_s, generatePhoneBook}, *options);
                if (import.isChosen())
                    return run(main,
                               {u"PbImp"_s, u"$$PBIMP"_s,
                                [](MMain& all, const PhoneBookRequest& request, const RunReport& report) {
                                    const auto counts = importPhoneBook(all, request, report);
                                    return counts && counts->refused == 0;
                                }},
                               *options);
                if (options->workbook)
                    return run(main,
                               {u"PbExp"_s, u"$$PBExp"_s,
                                [](MMain& all, const PhoneBookRequest& request, const RunReport& report) {
                                    return exportToWorkbook(all, request, report).has_value();
                                }},
                               *options);
                return run(main, {u"PbExp"_s, u"$$PBExp"_s, exportToCsv}, *options);
            }};
}

} // namespace velmora
