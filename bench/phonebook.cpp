// bench_phonebook FOLDER [CONNECTION]: imports the user list in the folder into a new database there, or that
// of the connection string, imports them again, writes the address book, the CSV file and the workbook.
// Prints the seconds of each.
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "database.h"
#include "phonebook/address_book.h"
#include "phonebook/phone_book_export.h"
#include "phonebook/phone_book_import.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

const QStringList rows = {u"CREATION_FLAGS VALUES('V', 'x', 'Y')"_s,
                          u"CREATION_FLAGS VALUES('W', 'x', 'Y')"_s,
                          u"CREATION_FLAGS VALUES('H', 'x', 'Y')"_s,
                          u"COMPANY VALUES('ACME', 'Acme')"_s,
                          u"EQUIPMENT VALUES('GXP2000', 'Desk phone', 'GRANDSTREAM')"_s,
                          u"RANGES VALUES('ACME', '1')"_s,
                          u"PHONES VALUES('ACME', '1', 'GXP2000', 'Room', '000B82000000')"_s,
                          u"SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'M17', 'Import ended')"_s,
                          u"SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'M33', '$$ entries')"_s};

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2 && arguments.size() != 3) {
        std::fputs("Usage: bench_phonebook FOLDER [CONNECTION]\n", stderr);
        return 2;
    }
    try {
        MMain main(u"."_s, terminalPrompts(std::nullopt, true));
        main.connection.open(
            arguments.value(2, "Provider=SQLite;Data Source="_L1 + arguments[1] + "/velmora.db"_L1));
        fill(main.connection, rows);
        const PhoneBookRequest request{u"ACME"_s, u"GXP2000"_s, arguments[1]};
        const RunReport report = {[](const QString&) {}, [](qsizetype, qsizetype) {}};
        timed([&] { importPhoneBook(main, request, report); });
        timed([&] { importPhoneBook(main, request, report); });
        timed([&] { generatePhoneBook(main, request, report); });
        timed([&] { exportToCsv(main, request, report); });
        timed([&] { exportToWorkbook(main, request, report); });
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
