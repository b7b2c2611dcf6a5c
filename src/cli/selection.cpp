#include "cli/selection.h"

#include "runs/phone_selection.h"

#include <CLI/CLI.hpp>

namespace velmora {

void addSelection(CLI::App& parser, PhoneSelection& selection)
{
    parser.add_option("--company", selection.company, "Code of the company")->required();
    parser.add_option("--equipment", selection.equipment, "Code of the model")->required();
    parser.add_option("--from", selection.from, "First phone (default: the first)");
    parser.add_option("--to", selection.to, "Last phone (default: the last)");
}

PhoneRange rangeOf(MMain& main, const PhoneSelection& selection)
{
    PhoneRange range{QString::fromStdString(selection.company), QString::fromStdString(selection.equipment),
                     QString::fromStdString(selection.from), QString::fromStdString(selection.to)};
    const QList<ListEntry> phones = phonesOf(main, range.company, range.equipment);
    if (!phones.isEmpty() && range.from.isEmpty())
        range.from = phones.first().code;
    if (!phones.isEmpty() && range.to.isEmpty())
        range.to = phones.last().code;
    return range;
}

} // namespace velmora
