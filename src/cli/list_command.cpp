#include "cli/command.h"
#include "runs/phone_selection.h"

#include <CLI/CLI.hpp>

#include <QTextStream>

#include <memory>

namespace velmora {

namespace {

struct Options {
    std::string company;
    std::string equipment;
};

ExitStatus print(const QList<ListEntry>& entries)
{
    QTextStream out(stdout);
    for (const ListEntry& entry : entries)
        out << entry.code << '\t' << entry.description << '\n';
    return Done;
}

} // namespace

Command listCommand(CLI::App& application)
{
    CLI::App* parser = application.add_subcommand("list", "List codes and descriptions, a tab between them");
    parser->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    parser->add_subcommand("companies", "All companies");
    CLI::App* models = parser->add_subcommand("models", "The models of which a company has phones");
    models->add_option("--company", options->company, "Code of the company")->required();
    CLI::App* phones = parser->add_subcommand("phones", "The phones of a company");
    phones->add_option("--company", options->company, "Code of the company")->required();
    phones->add_option("--equipment", options->equipment, "Only phones of this model");

    return {parser, [=](MMain& main) {
                const QString company = QString::fromStdString(options->company);
                const QString equipment = QString::fromStdString(options->equipment);
                if (models->parsed())
                    return print(modelsOf(main, company));
                if (phones->parsed())
                    return print(equipment.isEmpty() ? phonesOf(main, company)
                                                     : phonesOf(main, company, equipment));
                return print(companies(main));
            }};
}

} // namespace velmora
