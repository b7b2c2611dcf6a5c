// bench_sample_database FILE PHONES [macros]: writes the database that the measurements work on.
//
// One company, "ACME", with that many phones of one model, "GXP2000", which has 250 parameters: 200 with a
// default, 30 that the company sets and 20 that each phone sets for itself. With macros, one stands in 10 of
// the company's values and in 5 of each phone's. Every run writes the same rows.
#include "database/connection.h"
#include "database/transaction.h"
#include "schema/tables.h"
#include "schema/version.h"

#include <QCoreApplication>

#include <cstdio>

using namespace velmora;
using namespace Qt::StringLiterals;

namespace {

/// Makes a query over NUMBERS, whose column N counts from 1 up to the "?" that stands first.
QString counted(const QString& select)
{
    return u"WITH RECURSIVE COUNT_TO(N, LAST) AS (SELECT 0, CAST(? AS INTEGER) UNION ALL SELECT N + 1, LAST "
           u"FROM COUNT_TO "
           "WHERE N < LAST), NUMBERS AS (SELECT N FROM COUNT_TO WHERE N > 0) "_s +
           select;
}

void addFixedRows(Connection& database)
{
    const auto add = [&](const QString& table, const QString& values) {
        database.execute(u"INSERT INTO %1 VALUES(%2)"_s.arg(table, values));
    };
    add(u"SYSTEM_PARAMETERS"_s, u"'$$BASEVER', '$', '%1'"_s.arg(versionDigits()));
    add(u"SYSTEM_PARAMETERS"_s, u"'$$DESC_EN', 'M12', 'Generation ended'"_s);
    add(u"SYSTEM_PARAMETERS"_s, u"'$$DESC_EN', 'M13', 'Generating $$'"_s);
    add(u"SYSTEM_PARAMETERS"_s, u"'$$DESC_EN', 'M15', 'File written'"_s);
    for (const QString& level : {u"E"_s, u"C"_s, u"P"_s})
        add(u"LEVELS"_s, u"'%1', 'level'"_s.arg(level));
    add(u"TYPES"_s, u"'T', 'text'"_s);
    add(u"COMPANY"_s, u"'ACME', 'Acme'"_s);
    add(u"EQUIPMENT"_s, u"'GXP2000', 'Desk phone', 'GRANDSTREAM'"_s);
}

void addCatalogue(Connection& database)
{
    database.execute(u"INSERT INTO EQUIPMENT_PARAMETERS "_s +
                         counted(u"SELECT 'GXP2000', N, 'Setting number ' || N, "
                                 "CASE WHEN N <= 200 THEN 'E' WHEN N <= 230 THEN 'C' ELSE 'P' END, "
                                 "CASE N % 5 WHEN 0 THEN '' WHEN 1 THEN '0' WHEN 2 THEN '5060' "
                                 "WHEN 3 THEN '192.168.1.' || N ELSE 'time.example.org' END, "
                                 "'T', '' FROM NUMBERS"_s),
                     {u"250"_s});
    database.execute(u"INSERT INTO COMPANY_PARAMETERS SELECT 'ACME', EQ_CODE, PA_CODE, 'Büro ' || PA_CODE "
                     "FROM EQUIPMENT_PARAMETERS WHERE LE_CODE = 'C'"_s);
}

void addPhones(Connection& database, int phones)
{
    database.execute(u"INSERT INTO RANGES "_s + counted(u"SELECT 'ACME', printf('%05d', N) FROM NUMBERS"_s),
                     {QString::number(phones)});
    database.execute(u"INSERT INTO PHONES SELECT CO_CODE, PH_CODE, 'GXP2000', 'Room ' || PH_CODE, "
                     "printf('000B82%06X', PH_CODE) FROM RANGES"_s);
    database.execute(
        u"INSERT INTO PHONES_PARAMETERS SELECT CO_CODE, P.EQ_CODE, PH_CODE, PA_CODE, "
        "CASE PA_CODE % 2 WHEN 0 THEN PH_CODE ELSE 'user' || PH_CODE || '@sip.example.org' END "
        "FROM PHONES P CROSS JOIN EQUIPMENT_PARAMETERS E WHERE LE_CODE = 'P' ORDER BY PH_CODE, PA_CODE"_s);
}

void addMacros(Connection& database)
{
    const QString set = u"UPDATE %1 SET PA_VALUE = CASE PA_CODE % 3 WHEN 0 THEN 'Büro $$P' WHEN 1 THEN '$$N' "
                        u"ELSE '$$P,2,3' END "
                        "WHERE PA_CODE BETWEEN %2"_s;
    database.execute(set.arg(u"COMPANY_PARAMETERS"_s, u"'201' AND '210'"_s));
    database.execute(set.arg(u"PHONES_PARAMETERS"_s, u"'231' AND '235'"_s));
}

void write(const QString& file, int phones, bool withMacros)
{
    Connection database;
    database.open("Provider=SQLite;Data Source="_L1 + file);
    Transaction writing(database);
    for (const QString& statement : creationStatements())
        database.execute(statement);
    database.holdDeclaredTypes();
    addFixedRows(database);
    addCatalogue(database);
    addPhones(database, phones);
    if (withMacros)
        addMacros(database);
    writing.commit();
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const bool withMacros = arguments.size() == 4 && arguments[3] == "macros"_L1;
    if (arguments.size() != 3 && !withMacros) {
        std::fputs("Usage: bench_sample_database FILE PHONES [macros]\n", stderr);
        return 2;
    }
    try {
        write(arguments[1], arguments[2].toInt(), withMacros);
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
