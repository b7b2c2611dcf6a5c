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

} // namespace

void createDatabase(MMain& main, const QString& original)
{
    if (original.isEmpty()) {
        main.prompts.show(u"DATABASE CREATION\nOriginal Database Not Specified : see Manual (ParamDB.txt )"_s,
                          {});
        return;
    }
    Transaction creation(main.connection);
    for (const QString& statement : creationStatements()) {
        main.sqlText = statement;
        main.connection.execute(statement);
    }
    main.connection.holdDeclaredTypes();

    Connection earlier;
    try {
        earlier.open(original, OpenMode::ReadOnly);
    } catch (const DatabaseError& error) {
        creation.commit();
        main.prompts.show("Open Original Database Failed : "_L1 + original, error.description());
        return;
    }
    if (!isCurrent(earlier)) {
        creation.commit();
        main.prompts.show("The Original Database MUST be Version : "_L1 + versionDigits() +
                              "\nRun this program version on the old database to convert"_L1,
                          {});
        return;
    }
    for (const QString& table : copiedTables())
        copyTable(main, earlier, table);
    creation.commit();
    main.prompts.show(u"DATABASE CREATED --> RUN PROGRAM AGAIN"_s, {});
}

} // namespace velmora
