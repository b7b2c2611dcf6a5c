// bench_reboot PORT PHONES AT_ONCE CONFIRM: restarts that many phones, GXP2000 at 127.0.1.1 and so on up to
// 127.0.1.250, 127.0.2.1 and on, and watches them where CONFIRM is 1. Prints the seconds it took, the
// processor seconds and the KiB of this process, and the number of phones that restarted.
#include "reboot/reboot.h"
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "schema/tables.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cstdio>
#include <ctime>

#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

void fill(Connection& database, int phones)
{
    for (const QString& creation : creationStatements())
        database.execute(creation);
    const auto add = [&database](const QString& table, const QString& values) {
        database.execute(u"INSERT INTO %1 VALUES(%2)"_s.arg(table, values));
    };
    for (const QString& level : {u"E"_s, u"P"_s})
        add(u"LEVELS"_s, u"'%1', 'level'"_s.arg(level));
    for (const QString& message : {u"M15"_s, u"M23"_s})
        add(u"SYSTEM_PARAMETERS"_s, u"'$$DESC_EN', '%1', 'outcome'"_s.arg(message));
    add(u"TYPES"_s, u"'T', 'text'"_s);
    add(u"COMPANY"_s, u"'ACME', 'Acme'"_s);
    add(u"EQUIPMENT"_s, u"'GXP2000', 'Desk phone', 'GRANDSTREAM'"_s);
    add(u"SYSTEM_PARAMETERS"_s, u"'$$GXP2000', '$$EPWD', '2'"_s);
    add(u"EQUIPMENT_PARAMETERS"_s, u"'GXP2000', '2', 'Password', 'E', 'secret', 'T', ''"_s);
    const QStringList octets = {u"127"_s, u"0"_s};
    for (int octet = 1; octet <= 4; ++octet) {
        add(u"SYSTEM_PARAMETERS"_s, u"'$$GXP2000', '$$IP%1', '%2'"_s.arg(octet).arg(octet + 8));
        add(u"EQUIPMENT_PARAMETERS"_s, u"'GXP2000', '%1', 'Octet', '%2', '%3', 'T', ''"_s.arg(octet + 8).arg(
                                           octet > 2 ? u"P"_s : u"E"_s, octets.value(octet - 1)));
    }
    for (int phone = 0; phone < phones; ++phone) {
        const QString code = QString::number(phone + 1).rightJustified(5, u'0');
        add(u"RANGES"_s, u"'ACME', '%1'"_s.arg(code));
        add(u"PHONES"_s, u"'ACME', '%1', 'GXP2000', 'Room', '000B82000000'"_s.arg(code));
        const auto octet = u"'ACME', 'GXP2000', '%1', '%2', '%3'"_s.arg(code);
        add(u"PHONES_PARAMETERS"_s, octet.arg(11).arg(phone / 250 + 1));
        add(u"PHONES_PARAMETERS"_s, octet.arg(12).arg(phone % 250 + 1));
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 5) {
        std::fputs("Usage: bench_reboot PORT PHONES AT_ONCE CONFIRM\n", stderr);
        return 2;
    }
    try {
        MMain main(u"."_s, terminalPrompts(std::nullopt, false));
        main.connection.open(u"Provider=SQLite;Data Source=:memory:"_s);
        fill(main.connection, arguments[2].toInt());
        RebootRequest request{u"ACME"_s, u"GXP2000"_s, u"00001"_s, u"99999"_s};
        request.atOnce = arguments[3].toInt();
        request.confirm = arguments[4] == "1"_L1;
        QElapsedTimer time;
        time.start();
        const std::clock_t before = std::clock();
        const RebootCounts counts =
            Reboot(main, arguments[1].toUShort(), {[](const QString&) {}, [](qsizetype, qsizetype) {}})
                .run(request);
        const double seconds = double(time.nsecsElapsed()) / 1e9;
        const double spent = double(std::clock() - before) / CLOCKS_PER_SEC;
        rusage usage{};
        getrusage(RUSAGE_SELF, &usage);
        std::printf("%f\n%f\n%ld\n%d\n", seconds, spent, usage.ru_maxrss, int(counts.rebooted));
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
