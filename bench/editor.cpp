// bench_editor FILE ROWS: makes a database with that many phone-book entries, lists them in the table editor
// and prints the seconds until the first ones are painted, until all are there, and to sort them by name;
// those that the slowest letter takes of a name that is typed into the box that finds it; then those that it
// takes to read the same rows through Qt SQL alone.
#include "common/MMain.h"
#include "editor/window/FParameters.h"
#include "schema/tables.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>

#include <algorithm>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

constexpr auto statement =
    "SELECT CO_CODE, BK_NUM, BK_NAME, BK_FLAG, BK_EXTNUM, BK_FAX, BK_GSM, BK_MAIL FROM "
    "PHONE_BOOK WHERE CO_CODE NOT LIKE '$$%' ORDER BY CO_CODE, BK_NUM";

Prompts noPrompts()
{
    const auto nothing = [](const QString&, const QString&) { return std::optional<QString>(); };
    const auto noFile = [](const QString&, const QString&, const QStringList&) {
        return std::optional<ChosenFile>();
    };
    return {[](const QString& text, const QString&) { std::fprintf(stderr, "%s\n", qPrintable(text)); },
            [](const QString&, const QString&) { return true; },
            [](const QString&, const QString&) { return true; },
            nothing,
            nothing,
            [](const QString&) { return std::optional<QString>(); },
            noFile,
            noFile,
            [] { QCoreApplication::processEvents(); }};
}

void fill(Connection& database, const QString& rows)
{
    for (const QString& creation : creationStatements())
        database.execute(creation);
    database.execute(u"INSERT INTO CREATION_FLAGS VALUES('A', 'Added', 'Y')"_s);
    database.execute(u"INSERT INTO COMPANY VALUES('ACME', 'Acme')"_s);
    for (const QString& row :
         {u"'AUTHC', '*', '*'"_s, u"'$$TABS', '1', 'COMPANY'"_s, u"'$$TABS', '2', 'PHONE_BOOK'"_s})
        database.execute("INSERT INTO SYSTEM_PARAMETERS VALUES("_L1 + row + u')');
    database.execute(
        u"INSERT INTO PHONE_BOOK WITH RECURSIVE COUNTED(N, LAST) AS (SELECT 1, CAST(? AS INTEGER) UNION ALL "
        "SELECT N + 1, LAST FROM COUNTED WHERE N < LAST) SELECT 'ACME', printf('%06d', N), 'Name ' || "
        "(N * 7919 % 100003) || ' of the hall', 'A', '+33 1 23 45 ' || N, '', '06 ' || N, 'n' || N || "
        "'@mail.example.org' FROM COUNTED"_s,
        {rows});
}

/// Types a name and takes it back, letter by letter.
double slowestLetter(QLineEdit& find, RecordView& list)
{
    const QString name = u"Náme 77 hall"_s;
    qint64 slowest = 0;
    for (qsizetype letter = 1; letter < 2 * name.size(); ++letter) {
        QElapsedTimer time;
        time.start();
        find.setText(name.first(std::min(letter, 2 * name.size() - letter)));
        list.viewport()->repaint();
        slowest = std::max(slowest, time.nsecsElapsed());
    }
    return double(slowest) / 1e9;
}

void listInEditor(MMain& main)
{
    FParameters editor(main);
    editor.show();
    editor.selectFirstTab();
    QCoreApplication::processEvents();
    auto* list = editor.findChild<RecordView*>(u"ListCom"_s);

    QElapsedTimer time;
    time.start();
    const auto print = [&time] { std::printf("%f\n", double(time.nsecsElapsed()) / 1e9); };
    editor.findChild<QTabBar*>(u"TabStrip"_s)->setCurrentIndex(1);
    list->viewport()->repaint();
    print();
    while (list->isLoading())
        QCoreApplication::processEvents();
    list->viewport()->repaint();
    print();
    time.start();
    list->sortBy(2);
    list->viewport()->repaint();
    print();
    std::printf("%f\n", slowestLetter(*editor.findChild<QLineEdit*>(u"Find"_s), *list));
}

void readBare(const QString& file)
{
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"bare"_s);
        database.setDatabaseName(file);
        database.open();
        QElapsedTimer time;
        time.start();
        QSqlQuery query(database);
        query.setForwardOnly(true);
        query.exec(QLatin1StringView(statement));
        qsizetype length = 0;
        while (query.next())
            for (int field = 0; field < 8; ++field)
                length += query.value(field).toString().size();
        std::printf("%f\n", double(time.nsecsElapsed()) / 1e9);
        if (length == 0)
            std::fputs("nothing was read\n", stderr);
    }
    QSqlDatabase::removeDatabase(u"bare"_s);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("Usage: bench_editor FILE ROWS\n", stderr);
        return 2;
    }
    try {
        MMain main(u"."_s, noPrompts());
        main.connection.open("Provider=SQLite;Data Source="_L1 + arguments[1]);
        fill(main.connection, arguments[2]);
        listInEditor(main);
        readBare(arguments[1]);
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
