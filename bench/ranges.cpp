// bench_ranges FOLDER LAST [CONNECTION]: in a new database in the folder, or that of the connection string,
// adds the codes from 0 to LAST to the range of a company that has a phone for every hundredth code, adds
// them again and removes them. Prints the seconds of each; then writes the lines of all three into lines.txt
// in the folder.
#include "ranges/ranges.h"
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "database.h"
#include "database/transaction.h"
#include "files/whole_file.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

QStringList rows(int last)
{
    QStringList rows = {u"COMPANY VALUES('ACME', 'Acme')"_s,
                        u"EQUIPMENT VALUES('PAP2', 'Adapter', 'PAP2')"_s};
    const QStringList texts = {u"M27', 'Code $$"_s, u"M29', 'removed"_s, u"M30', 'not added"_s,
                               u"M31', 'added"_s};
    for (const QString& text : texts)
        rows << "SYSTEM_PARAMETERS VALUES('$$DESC_EN', '"_L1 + text + "')"_L1;
    for (int code = 0; code <= last; code += 100) {
        rows << u"RANGES VALUES('ACME', '%1')"_s.arg(code);
        rows << u"PHONES VALUES('ACME', '%1', 'PAP2', 'Room', '000B82000000')"_s.arg(code);
    }
    return rows;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 && arguments.size() != 4) {
        std::fputs("Usage: bench_ranges FOLDER LAST [CONNECTION]\n", stderr);
        return 2;
    }
    try {
        MMain main(u"."_s, terminalPrompts(std::nullopt, true));
        main.language = u"EN"_s;
        main.connection.open(
            arguments.value(3, "Provider=SQLite;Data Source="_L1 + arguments[1] + "/velmora.db"_L1));
        {
            Transaction filling(main.connection);
            fill(main.connection, rows(arguments[2].toInt()));
            filling.commit();
        }
        QStringList lines;
        const RunReport report = {[&lines](const QString& line) { lines << line; },
                                  [](qsizetype, qsizetype) {}};
        for (const bool remove : {false, false, true})
            timed([&] { generateRanges(main, {u"ACME"_s, u"0"_s, arguments[2], remove}, report); });
        writeWholeFile(arguments[1] + "/lines.txt"_L1, lines.join(u'\n').toUtf8());
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
