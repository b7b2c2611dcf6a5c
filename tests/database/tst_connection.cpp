// Connections to the embedded engine: opening, statements, transactions, declared widths and keys.
#include "database/connection.h"
#include "database/savepoint.h"
#include "database/transaction.h"
#include "support/rows.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_connection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void refusesToOpen_data();
    void refusesToOpen();
    void readsOnlyWhatExists();
    void holdsResults();
    void undoesWhatIsNotCommitted();
    void holdsDeclaredTypes_data();
    void holdsDeclaredTypes();
    void findsReferences();

private:
    QString source(const QString& name) const
    {
        return "Provider=SQLite;Data Source="_L1 + m_folder->filePath(name);
    }
    QString count(Connection& connection) const
    {
        return connection.select(u"SELECT count(*) FROM T"_s).text(0);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_connection::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_connection::refusesToOpen_data()
{
    columns<QString, QString>("string", "words");
    row("unknown provider", "Provider=Oracle;Data Source=x", "Unknown Provider \"Oracle\"");
    row("no provider", "Data Source=x", "lacks \"Provider\"");
    row("no data source", "Provider=SQLite", "lacks \"Data Source\"");
    row("no pair", "Provider=SQLite;velmora.db", "\"velmora.db\"");
    row("a folder", "Provider=SQLite;Data Source=/", "unable to open");
    row("no database", u"Provider=SQLite;Data Source="_s + QCoreApplication::applicationFilePath(),
        "not a database");
}

void tst_connection::refusesToOpen()
{
    QFETCH(QString, string);
    QFETCH(QString, words);
    Connection connection;
    try {
        connection.open(string);
        QFAIL("opened");
    } catch (const DatabaseError& error) {
        QVERIFY2(error.description().contains(words), qPrintable(error.description()));
    }
    QVERIFY_THROWS_EXCEPTION(DatabaseError, connection.execute(u"SELECT 1"_s));
}

void tst_connection::readsOnlyWhatExists()
{
    Connection reader;
    QVERIFY_THROWS_EXCEPTION(DatabaseError, reader.open(source(u"x.db"_s), OpenMode::ReadOnly));
    QVERIFY(!QFile::exists(m_folder->filePath(u"x.db"_s)));

    Connection writer;
    // Keys in any case, blanks around everything.
    writer.open(" provider = sqlite ; DATA SOURCE= "_L1 + m_folder->filePath(u"x.db"_s) + " ;"_L1);
    writer.execute(u"CREATE TABLE T (K nvarchar(5))"_s);
    reader.open(source(u"x.db"_s), OpenMode::ReadOnly);
    QCOMPARE(count(reader), u"0"_s);
    QVERIFY_THROWS_EXCEPTION(DatabaseError, reader.execute(u"INSERT INTO T VALUES('a')"_s));
}

void tst_connection::holdsResults()
{
    Connection connection;
    connection.open(source(u"x.db"_s));
    Recordset rows =
        connection.select(u"SELECT 'a' AS X, NULL AS Y UNION ALL SELECT '', ? ORDER BY X DESC"_s, {u"b'c"_s});
    QCOMPARE(rows.recordCount(), 2);
    QCOMPARE(rows.text("X"_L1), u"a"_s);
    QVERIFY(rows.isNull(1));
    rows.moveNext();
    QCOMPARE(rows.absolutePosition(), 2);
    QVERIFY(!rows.isNull(0));
    QCOMPARE(rows.text("Y"_L1), u"b'c"_s);
    QVERIFY_THROWS_EXCEPTION(DatabaseError, rows.text("Z"_L1));
    rows.moveNext();
    QVERIFY(rows.eof());
    QVERIFY(connection.select(u"SELECT 1 WHERE 1 = 2"_s).eof());
}

void tst_connection::undoesWhatIsNotCommitted()
{
    Connection connection;
    connection.open(source(u"x.db"_s));
    connection.execute(u"CREATE TABLE T (K nvarchar(5))"_s);
    {
        Transaction transaction(connection);
        connection.execute(u"INSERT INTO T VALUES('a')"_s);
        connection.execute(u"CREATE TABLE U (K nvarchar(5))"_s);
    }
    QCOMPARE(count(connection), u"0"_s);
    QCOMPARE(connection.tables(), QStringList(u"T"_s));
    Transaction transaction(connection);
    connection.execute(u"INSERT INTO T VALUES('a')"_s);
    for (const bool kept : {false, true, false}) {
        Savepoint attempt(connection);
        connection.execute(u"INSERT INTO T VALUES('b')"_s);
        if (kept)
            attempt.keep();
    }
    transaction.commit();
    QCOMPARE(count(connection), u"2"_s);
}

void tst_connection::holdsDeclaredTypes_data()
{
    columns<QString, QString>("statement", "refusal");
    row("fits in characters", "INSERT INTO T VALUES('éééé€', 'b', NULL)", QString());
    row("key too long", "INSERT INTO T VALUES('123456', 'b', NULL)", "T.K holds at most 5 characters");
    row("second key missing", "INSERT INTO T VALUES('a', NULL, NULL)", "T.L is required");
    row("value too long", "INSERT INTO T VALUES('a', 'b', '1234')", "T.V holds at most 3 characters");
    row("update too long", "UPDATE T SET V = '1234'", "T.V holds at most 3 characters");
    row("key twice", "INSERT INTO T VALUES('x', 'y', NULL)", "UNIQUE constraint failed: T.K, T.L");
    row("own table", "INSERT INTO OWN VALUES('1234')",
        "CHECK constraint failed: K holds at most 3 characters");
}

void tst_connection::holdsDeclaredTypes()
{
    Connection connection;
    connection.open(source(u"x.db"_s));
    const QString creation =
        u"CREATE TABLE T (K nvarchar(5), L nvarchar(5), V nvarchar(3), PRIMARY KEY (K, L))"_s;
    connection.execute(creation);
    connection.execute(u"INSERT INTO T VALUES('x', 'y', 'z')"_s);
    connection.executePortable(u"CREATE TEMPORARY TABLE OWN (K nvarchar(3), PRIMARY KEY (K))"_s);
    connection.holdDeclaredTypes();
    connection.holdDeclaredTypes();

    QFETCH(QString, statement);
    QFETCH(QString, refusal);
    QString described;
    try {
        connection.execute(statement);
    } catch (const DatabaseError& error) {
        described = error.description();
        QCOMPARE(error.reason() == DatabaseError::Reason::DuplicateKey, statement.contains("'x', 'y'"_L1));
    }
    QCOMPARE(described, refusal);
    QCOMPARE(connection.select(u"SELECT sql FROM sqlite_master WHERE type <> 'index'"_s).text(0), creation);
    QCOMPARE(connection.columns(u"T"_s).size(), 3);
    QCOMPARE(connection.columns(u"T"_s)[1].keyPosition, 2);
    QVERIFY(connection.columns(u"absent"_s).isEmpty());
}

void tst_connection::findsReferences()
{
    Connection connection;
    connection.open(source(u"x.db"_s));
    connection.execute(u"CREATE TABLE T (V nvarchar(5), L nvarchar(5), K nvarchar(5), PRIMARY KEY (K, L))"_s);
    connection.execute(u"CREATE TABLE U (A nvarchar(5), B nvarchar(5), FOREIGN KEY (A) REFERENCES U (B), "
                       "FOREIGN KEY (A, B) REFERENCES T)"_s);
    QString references;
    for (const Reference& one : connection.references())
        references += one.table + one.columns.join(QString()) + one.target + one.keys.join(QString()) + u' ';
    QCOMPARE(references, u"UAUB UABTKL "_s); // a key that is not named is the primary key, in its order
}

QTEST_GUILESS_MAIN(tst_connection)
#include "tst_connection.moc"
