#include "cli/command.h"
#include "runs/phone_selection.h"

#include <QTextStream>

#include <memory>

namespace velmora {

namespace {

struct Options {
    QString company;
    QString equipment;
};

ExitStatus print(const QList<ListEntry>& entries)
{
    QTextStream out(stdout);
    for (const ListEntry& entry : entries)
        out << entry.code << '\t' << entry.description << '\n';
    return Done;
}

} // namespace

Command listCommand(Parser application)
{
    Parser parser = application.addCommand("list", "List codes and descriptions, a tab between them");
    parser.requireCommand();
    const auto options = std::make_shared<Options>();
    parser.addCommand("companies", "All companies");
    Parser models = parser.addCommand("models", "The models of which a company has phones");
    models.addOption("--company", options->company, "Code of the company").required();
    Parser phones = parser.addCommand("phones", "The phones of a company");
    phones.addOption("--company", options->company, "Code of the company").required();
    phones.addOption("--equipment", options->equipment, "Only phones of this model");

    return {parser, [=](MMain& main) {
                if (models.isChosen())
                    return print(modelsOf(main, options->company));
                if (phones.isChosen())
                    return print(options->equipment.isEmpty()
                                     ? phonesOf(main, options->company)
                                     : phonesOf(main, options->company, options->equipment));
                return print(companies(main));
            }};
}

} // namespace velmora
