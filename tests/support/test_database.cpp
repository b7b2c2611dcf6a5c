#include "support/test_database.h"

#include "schema/tables.h"

using namespace Qt::StringLiterals;

namespace velmora {

TestDatabase::TestDatabase() : m_empty(m_folder.filePath(u"test.db"_s)), main(u"/nowhere"_s, user.prompts())
{
    main.connection.open(m_empty.connectionString());
    if (!onServer())
        run(u"PRAGMA synchronous = OFF"_s); // no test cuts the power
    for (const QString& statement : creationStatements())
        main.connection.executePortable(statement);
    main.connection.prepareSessions(
        [](Connection& connection) { connection.executePortable(privateStagingStatement()); });
    main.connection.holdDeclaredTypes();
    main.userName = u"JDOE"_s;
    for (const QString& level : {u"E"_s, u"C"_s, u"P"_s, u"D"_s})
        run("INSERT INTO LEVELS VALUES('"_L1 + level + "', 'x')"_L1);
    run(u"INSERT INTO TYPES VALUES('T', 'x')"_s);
    for (int code = 1; code <= 208; ++code)
        if (code <= 34 || code >= 200)
            run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'M%1', 'M%1: $$')"_s.arg(code));
}

QString TestDatabase::value(const QString& query)
{
    const Recordset rows = main.connection.select(query);
    return rows.eof() ? QString() : rows.text(0);
}

void TestDatabase::addPhone(const QString& company, const QString& equipment, const QString& code,
                            const QString& description, const QString& mac)
{
    const auto addOnce = [this](const QString& table, const QStringList& row) {
        const QString marks = QStringList(row.size(), u"?"_s).join(u',');
        try {
            main.connection.execute("INSERT INTO "_L1 + table + " VALUES("_L1 + marks + u')', row);
        } catch (const DatabaseError& error) {
            if (error.reason() != DatabaseError::Reason::DuplicateKey)
                throw;
        }
    };
    addOnce(u"COMPANY"_s, {company, u"company"_s});
    addOnce(u"EQUIPMENT"_s,
            {equipment, u"model"_s, equipment == "GXP2000"_L1 ? u"GRANDSTREAM"_s : equipment});
    addOnce(u"RANGES"_s, {company, code});
    main.connection.execute(u"INSERT INTO PHONES VALUES(?, ?, ?, ?, ?)"_s,
                            {company, code, equipment, description, mac});
}

void TestDatabase::addParameter(const QString& equipment, const QString& code, const QString& level,
                                const QString& value, const QString& description)
{
    main.connection.execute(u"INSERT INTO EQUIPMENT_PARAMETERS VALUES(?, ?, ?, ?, ?, 'T', '')"_s,
                            {equipment, code, description, level, value});
}

void TestDatabase::selectPhones(const QString& company)
{
    main.phones =
        main.connection.select(u"SELECT * FROM PHONES WHERE CO_CODE = ? ORDER BY PH_CODE"_s, {company});
}

} // namespace velmora
