#include "startup/database_creation.h"

#include "database/transaction.h"
#include "schema/tables.h"
#include "startup/MMain.h"
#include "startup/version.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Copies a table row by row. Both databases have the same column order; a NULL becomes an empty text.
void copyTable(MMain& main, Connection& original, const QString& table)
{
    Cursor rows = original.cursor("SELECT * FROM "_L1 + table);
    while (rows.next()) {
        main.sqlText = "INSERT INTO "_L1 + table + " VALUES('"_L1;
        for (int field = 0; field < rows.fieldCount(); ++field)
            main.sqlText += rows.text(field).replace(u'\'', "''"_L1) + "', '"_L1;
        main.sqlText.chop(3);
        main.sqlText += u')';
        main.connection.execute(main.sqlText);
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

/// Creates the tables, noting in `created` which are there.
void createTables(MMain& main, QStringList& created)
{
    for (const QString& statement : creationStatements()) {
        main.sqlText = statement;
        main.connection.executePortable(statement);
        created.prepend(statement.section(u' ', 2, 2));
    }
    main.connection.holdDeclaredTypes();
}

/// Removes the tables where the engine's roll-back does not: without rows they would look like a database.
void dropTables(MMain& main, const QStringList& tables)
{
    try {
        for (const QString& table : tables)
            main.connection.execute("DROP TABLE IF EXISTS "_L1 + table);
    } catch (const DatabaseError&) {
        // The database is gone; the failure that led here is what the user learns.
    }
}

/// Opens the earlier database and copies every table of it. False, after a message, where it is not of use.
bool fillTables(MMain& main, const QString& original)
{
    Connection earlier;
    try {
        earlier.open(original, OpenMode::ReadOnly, main.programFolder);
    } catch (const DatabaseError& error) {
        main.prompts.show("Open Original Database Failed : "_L1 + withoutPasswords(original),
                          error.description());
        return false;
    }
    if (!isCurrent(earlier)) {
        main.prompts.show("The Original Database MUST be Version : "_L1 + versionDigits() +
                              "\nRun this program version on the old database to convert"_L1,
                          {});
        return false;
    }
    for (const QString& table : copiedTables())
        copyTable(main, earlier, table);
    return true;
}

} // namespace

void createDatabase(MMain& main, const QString& original)
{
    if (original.isEmpty()) {
        main.prompts.show(u"DATABASE CREATION\nOriginal Database Not Specified : see Manual (ParamDB.txt )"_s,
                          {});
        return;
    }
    if (const QStringList phones = phonesWithoutModel(main, original); !phones.isEmpty()) {
        main.prompts.show("The Original Database holds phones without a model : "_L1 + phones.join(", "_L1) +
                              "\nGive them one, then run this program again"_L1,
                          {});
        return;
    }
    bool filled = false;
    QStringList created;
    try {
        Transaction creation(main.connection);
        createTables(main, created);
        filled = fillTables(main, original);
        creation.commit();
    } catch (const DatabaseError&) {
        dropTables(main, created);
        throw;
    }
    if (filled)
        main.prompts.show(u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s, {});
}

} // namespace velmora
