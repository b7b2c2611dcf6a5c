// bench_lists FILE PHONES: makes a database with that many phones of one company and model and opens the
// windows of generation and restart on it. Prints, for each, the seconds until the window is painted with its
// lists of phones, until the open list of first phones is, until the entries are that hold what is typed, and
// until a first phone is chosen; then those that it takes to read the same rows through Qt SQL alone.
#include "common/MMain.h"
#include "database.h"
#include "database/transaction.h"
#include "generation/FGenerate.h"
#include "reboot/FReboot.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QCompleter>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlQuery>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

Prompts noPrompts()
{
    const auto nothing = [](const QString&, const QString&) { return std::optional<QString>(); };
    return {[](const QString& text, const QString&) { std::fprintf(stderr, "%s\n", qPrintable(text)); },
            [](const QString&, const QString&) { return true; },
            [](const QString&, const QString&) { return true; },
            nothing,
            nothing,
            [](const QString&) { return std::optional<QString>(); },
            [](const QString&, const QString&, const QStringList&) { return std::optional<ChosenFile>(); },
            [](const QString&, const QString&, const QStringList&) { return std::optional<ChosenFile>(); },
            [] { QCoreApplication::processEvents(); }};
}

void makePhones(Connection& database, const QString& folder, const QString& phones)
{
    fill(database, {u"COMPANY VALUES('ACME', 'Acme')"_s, u"EQUIPMENT VALUES('PAP2', 'Adapter', 'PAP2')"_s,
                    "SYSTEM_PARAMETERS VALUES('ACMEPAP2', '$$GENPATH', '"_L1 + folder + "')"_L1});
    Transaction filling(database);
    const auto counted =
        "WITH RECURSIVE COUNTED(N) AS (SELECT 10000 UNION ALL SELECT N + 1 FROM COUNTED WHERE "
        "N < 9999 + %1) SELECT "_L1;
    database.execute("INSERT INTO RANGES "_L1 + QString(counted).arg(phones) + "'ACME', N FROM COUNTED"_L1);
    database.execute("INSERT INTO PHONES "_L1 + QString(counted).arg(phones) +
                     "'ACME', N, 'PAP2', 'Room ' || (N * 7919 % 100003), printf('%012d', N) FROM COUNTED"_L1);
    filling.commit();
}

void paint(QWidget* widget)
{
    QCoreApplication::processEvents();
    widget->repaint();
}

void type(QWidget* input, const QString& text)
{
    for (const QChar letter : text) {
        QKeyEvent key(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
        QCoreApplication::sendEvent(input, &key);
    }
}

template <typename Window> void measure(MMain& main)
{
    std::unique_ptr<Window> window;
    timed([&] {
        window = std::make_unique<Window>(main);
        window->show();
        paint(window.get());
    });
    auto* list = window->template findChild<QComboBox*>(u"Filter_3"_s);
    if (list->count() < 1000)
        std::fputs("the list of phones is not filled\n", stderr);
    timed([&] {
        list->showPopup();
        paint(list->view());
    });
    list->hidePopup();
    list->lineEdit()->setFocus();
    list->lineEdit()->selectAll();
    timed([&] {
        type(list->lineEdit(), u"7"_s);
        paint(list->completer()->popup());
    });
    list->completer()->popup()->hide();
    timed([&] {
        list->setCurrentIndex(0);
        Q_EMIT list->activated(0);
        paint(window.get());
    });
}

void readBare(const QString& file)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"bare"_s);
    database.setDatabaseName(file);
    database.open();
    qsizetype length = 0;
    timed([&] {
        QSqlQuery query(database);
        query.setForwardOnly(true);
        query.exec(
            u"SELECT DISTINCT PH_CODE, PH_DESC FROM PHONES WHERE CO_CODE = 'ACME' AND EQ_CODE = 'PAP2' "
            "ORDER BY PH_CODE"_s);
        while (query.next())
            length += query.value(0).toString().size() + query.value(1).toString().size();
    });
    if (length == 0)
        std::fputs("nothing was read\n", stderr);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3) {
        std::fputs("Usage: bench_lists FILE PHONES\n", stderr);
        return 2;
    }
    try {
        MMain main(u"."_s, noPrompts());
        main.connection.open("Provider=SQLite;Data Source="_L1 + arguments[1]);
        makePhones(main.connection, QFileInfo(arguments[1]).absolutePath(), arguments[2]);
        main.remembered.set(Remembered::lastCompany, u"ACME"_s);
        main.remembered.set(Remembered::lastEquipment, u"PAP2"_s);
        measure<FGenerate>(main);
        measure<FReboot>(main);
        readBare(arguments[1]);
    } catch (const DatabaseError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
