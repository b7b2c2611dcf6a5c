#include "startup/database_creation.h"

#include "common/MMain.h"
#include "database/bulk/row_inserter.h"
#include "database/schema_lock.h"
#include "database/transaction.h"
#include "schema/tables.h"
#include "schema/version.h"
#include "startup/upgrade.h"

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many rows are held in memory at once.
constexpr qsizetype rowsAtOnce = 1024;

/// The next rows; a NULL becomes an empty text.
QList<QStringList> nextRows(Cursor& rows)
{
    QList<QStringList> held;
    while (held.size() < rowsAtOnce && rows.next()) {
        QStringList values;
        values.reserve(rows.fieldCount());
        for (int field = 0; field < rows.fieldCount(); ++field)
            values << rows.text(field);
        held << values;
    }
    return held;
}

/// Copies a table row by row. Both databases have the same column order.
void copyTable(MMain& main, Connection& original, const QString& table)
{
    Cursor rows = original.cursor("SELECT * FROM "_L1 + table);
    RowInserter inserter(main.connection, table);
    for (QList<QStringList> held = nextRows(rows); !held.isEmpty(); held = nextRows(rows)) {
        main.sqlText = insertStatement(table, held.last());
        for (const RowInserter::Refusal& refusal : inserter.insert(held)) {
            main.sqlText = refusal.error.statement();
            throw refusal.error;
        }
        main.prompts.letEventsRun();
    }
}

/// Whether the earlier database is of this program's version.
bool isCurrent(Connection& original)
{
    const Recordset version =
        original.select(u"SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s);
    return !version.eof() && version.text(0) == versionDigits();
}

/// The phones of the earlier database that have no model. Their NULL would become an empty text, which names
/// none. Nothing where the database can't be read: that is told when its turn comes.
QStringList phonesWithoutModel(const MMain& main, const QString& original)
{
    QStringList phones;
    try {
        Connection earlier;
        earlier.open(original, OpenMode::ReadOnly, main.programFolder);
        for (Recordset rows =
                 earlier.select(u"SELECT CO_CODE, PH_CODE FROM PHONES WHERE EQ_CODE IS NULL AND NOT "
                                "EXISTS (SELECT 1 FROM EQUIPMENT WHERE EQ_CODE = '') ORDER BY 1, 2"_s);
             !rows.eof(); rows.moveNext())
            phones << rows.text(0) + u' ' + rows.text(1);
    } catch (const DatabaseError&) {
        return {};
    }
    return phones;
}

/// How a creation ended, in the words that the user is shown.
struct Ending {
    QString text;
    QString details;
};

/// Creates those of the tables that a creation which was cut off has not left.
void createTables(MMain& main)
{
    const QStringList present = main.connection.tables();
    for (const QString& statement : creationStatements()) {
        if (present.contains(statement.section(u' ', 2, 2)))
            continue;
        main.sqlText = statement;
        main.connection.executePortable(statement);
    }
    main.connection.holdDeclaredTypes();
}

/// Opens the earlier database and copies every table of it, or tells why it is not of use.
Ending fillTables(MMain& main, const QString& original)
{
    const QString remedy = u"Correct line 2 of ParamDB.txt, then run this program again."_s;
    Connection earlier;
    try {
        earlier.open(original, OpenMode::ReadOnly, main.programFolder);
    } catch (const DatabaseError& error) {
        return {"Open Original Database Failed : "_L1 + withoutPasswords(original),
                error.description() + u'\n' + remedy};
    }
    if (!isCurrent(earlier))
        return {"The Original Database MUST be Version : "_L1 + versionDigits() +
                    "\nRun this program version on the old database to convert"_L1,
                "Or name another one: "_L1 + remedy};
    for (const QString& table : copiedTables())
        copyTable(main, earlier, table);
    return {u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s, {}};
}

/// Creates and fills the tables. Nothing where another start has done so meanwhile.
std::optional<Ending> create(MMain& main, const QString& original)
{
    const SchemaLock lock(main.connection);
    if (!lock.isHeld())
        return Ending{anotherStartText(), {}};
    Transaction creation(main.connection);
    if (!awaitsCreation(main.connection))
        return std::nullopt;
    createTables(main);
    // From here on it is every row or none.
    creation.goOnAfterSchemaChange();
    const Ending ending = fillTables(main, original);
    creation.commit();
    return ending;
}

} // namespace

bool awaitsCreation(Connection& connection)
{
    const QStringList present = connection.tables();
    return std::all_of(present.begin(), present.end(), [&connection](const QString& table) {
        const bool isOurs = std::any_of(
            creationStatements().begin(), creationStatements().end(),
            [&table](const QString& statement) { return statement.section(u' ', 2, 2) == table; });
        return isOurs && connection.select("SELECT 1 FROM "_L1 + table + " LIMIT 1"_L1).eof();
    });
}

bool createDatabase(MMain& main, const QString& original)
{
    if (original.isEmpty()) {
        main.prompts.show(u"DATABASE CREATION\nOriginal Database Not Specified : see Manual (ParamDB.txt )"_s,
                          {});
        return false;
    }
    if (const QStringList phones = phonesWithoutModel(main, original); !phones.isEmpty()) {
        main.prompts.show("The Original Database holds phones without a model : "_L1 + phones.join(", "_L1) +
                              "\nGive them one, then run this program again"_L1,
                          {});
        return false;
    }
    const std::optional<Ending> ending = create(main, original);
    if (ending)
        main.prompts.show(ending->text, ending->details);
    return !ending;
}

} // namespace velmora
