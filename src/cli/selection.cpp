#include "cli/selection.h"

#include "files/whole_file.h"
#include "runs/phone_selection.h"

#include <CLI/CLI.hpp>

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velmora {

void addSelection(CLI::App& parser, PhoneSelection& selection, Models models)
{
    parser.add_option("--company", selection.company, "Code of the company")->required();
    CLI::Option* equipment =
        parser.add_option("--equipment", selection.equipment,
                          models == Models::One ? "Code of the model" : "Code of the model (default: all)");
    equipment->required(models == Models::One);
    parser.add_option("--from", selection.from, "First phone (default: the first)");
    parser.add_option("--to", selection.to, "Last phone (default: the last)");
}

void addPhones(CLI::App& parser, PhoneSelection& selection)
{
    parser
        .add_option("--phones", selection.phones,
                    "Only these phones: codes with commas between them, or @FILE with a code on each line")
        ->excludes("--from")
        ->excludes("--to");
}

QStringList phoneCodes(const QString& phones)
{
    const QString text =
        phones.startsWith(u'@') ? QString::fromUtf8(readWholeFile(phones.sliced(1))) : phones;
    // A file may begin with the mark that editors put before UTF-8.
    static const QRegularExpression between(u"[\\s,\uFEFF]+"_s);
    QStringList codes = text.split(between, Qt::SkipEmptyParts);
    codes.removeDuplicates();
    return codes;
}

PhoneChoice choiceOf(const PhoneSelection& selection)
{
    PhoneChoice choice{QString::fromStdString(selection.company), QString::fromStdString(selection.equipment),
                       QString::fromStdString(selection.from), QString::fromStdString(selection.to)};
    if (!selection.phones.empty())
        choice.codes = phoneCodes(QString::fromStdString(selection.phones));
    return choice;
}

PhoneChoice rangeOf(MMain& main, const PhoneSelection& selection)
{
    PhoneChoice range = choiceOf(selection);
    const QList<ListEntry> phones = range.equipment.isEmpty()
                                        ? phonesOf(main, range.company)
                                        : phonesOf(main, range.company, range.equipment);
    if (!phones.isEmpty() && range.from.isEmpty())
        range.from = phones.first().code;
    if (!phones.isEmpty() && range.to.isEmpty())
        range.to = phones.last().code;
    return range;
}

} // namespace velmora
