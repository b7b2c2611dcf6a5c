// bench_table FOLDER PHONES [CONNECTION]: makes a database in the folder, or takes an empty one, with a
// company, a model and the codes of that many phones, takes in phones.csv twice, and writes the table to
// export.csv. Prints the seconds of each.
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "database.h"
#include "database/transaction.h"
#include "editor/transfer/table_export.h"
#include "editor/transfer/table_import.h"
#include "files/whole_file.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

void makeRows(Connection& database, int phones)
{
    Transaction filling(database);
    fill(database, {u"COMPANY VALUES('ACME', 'Acme')"_s,
                    u"EQUIPMENT VALUES('GXP2000', 'Desk phone', 'GRANDSTREAM')"_s});
    for (int code = 10000; code < 10000 + phones; ++code)
        database.execute(u"INSERT INTO RANGES VALUES('ACME', ?)"_s, {QString::number(code)});
    filling.commit();
}

/// Takes the file in; fails where not every line has the verdict that is expected.
void import(MMain& main, const OpenTable& table, const QString& path, Verdict expected)
{
    const TransferProgress goOn = [](qsizetype, qsizetype) { return true; };
    const TableFile file = readTableFile(readTableBytes(path), table.description);
    const auto imported = importLines(main, table, file, {}, goOn);
    if (!imported->written || count(imported->lines, expected) != static_cast<qsizetype>(file.lines.size()))
        throw DatabaseError(path, u"Not every line has the expected verdict."_s);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 && arguments.size() != 4) {
        std::fputs("Usage: bench_table FOLDER PHONES [CONNECTION]\n", stderr);
        return 2;
    }
    try {
        MMain main(u"."_s, terminalPrompts(std::nullopt, true));
        const QString folder = arguments[1];
        main.connection.open(
            arguments.value(3, "Provider=SQLite;Data Source="_L1 + folder + "/velmora.db"_L1));
        makeRows(main.connection, arguments[2].toInt());
        const OpenTable table{describeTable(main, u"PHONES"_s), Access::True};
        timed([&] { import(main, table, folder + "/phones.csv"_L1, Verdict::New); });
        timed([&] { import(main, table, folder + "/phones.csv"_L1, Verdict::Same); });
        timed([&] {
            writeWholeFile(folder + "/export.csv"_L1,
                           exportTable(main, table, ',', [](qsizetype) { return true; })->bytes);
        });
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
