#include "cli/selection.h"

#include "files/whole_file.h"
#include "runs/phone_selection.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velmora {

void addSelection(Parser parser, PhoneSelection& selection, Models models)
{
    parser.addOption("--company", selection.company, "Code of the company").required();
    Option equipment =
        parser.addOption("--equipment", selection.equipment,
                         models == Models::One ? "Code of the model" : "Code of the model (default: all)");
    if (models == Models::One)
        equipment.required();
    parser.addOption("--from", selection.from, "First phone (default: the first)");
    parser.addOption("--to", selection.to, "Last phone (default: the last)");
}

void addPhones(Parser parser, PhoneSelection& selection)
{
    parser
        .addOption("--phones", selection.phones,
                   "Only these phones: codes with commas between them, or @FILE with a code on each line")
        .excludes("--from")
        .excludes("--to");
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
    PhoneChoice choice{selection.company, selection.equipment, selection.from, selection.to};
    if (!selection.phones.isEmpty())
        choice.codes = phoneCodes(selection.phones);
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
