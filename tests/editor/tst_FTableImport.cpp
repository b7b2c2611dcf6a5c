// Tables into files and files into tables, in the window of the table editor.
#include "common/MMain.h"
#include "editor/transfer/window/FTableImport.h"
#include "editor/window/FParameters.h"
#include "files/whole_file.h"
#include "startup/start_up.h"
#include "support/controls.h"
#include "support/program_folder_fixture.h"
#include "support/query.h"
#include "support/rows.h"

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_FTableImport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void takesFilesIn_data();
    void takesFilesIn();
    void stops_data();
    void stops();
    void tellsWhatCannotBeTaken();
    void writesFiles();
    void followsTheTable();

private:
    FTableImport* window() const { return m_editor->findChild<FTableImport*>(); }
    QString status() const { return control<QLabel>(*window(), u"Status"_s)->text(); }
    QString text(const QString& label) const { return control<QLabel>(*m_editor, label)->text(); }
    QStringList phones()
    {
        return firstFields(m_start->main.connection, u"SELECT PH_CODE || PH_DESC FROM PHONES ORDER BY 1"_s);
    }
    void import(const QByteArray& text);
    QString verdicts() const;

    std::unique_ptr<ProgramFolderFixture> m_folder;
    std::unique_ptr<Start> m_start;
    std::unique_ptr<FParameters> m_editor;
};

/// The editor shows the table of phones: 1 and 2 of LUNA.
void tst_FTableImport::init()
{
    m_folder = std::make_unique<ProgramFolderFixture>(QStringLiteral(VELMORA_SHARE));
    QVERIFY(!Start(*m_folder).ready);
    m_start = std::make_unique<Start>(*m_folder);
    QVERIFY(m_start->ready);
    for (const QString& row :
         {u"COMPANY VALUES('LUNA', 'x')"_s, u"RANGES VALUES('LUNA', '1'), ('LUNA', '2')"_s,
          u"PHONES VALUES('LUNA', '1', NULL, 'One', ''), ('LUNA', '2', NULL, 'Two', '')"_s})
        m_start->main.connection.execute("INSERT INTO "_L1 + row);
    m_start->user.onEvents = [] { QCoreApplication::processEvents(); };
    m_editor = std::make_unique<FParameters>(m_start->main);
    m_editor->show();
    control<QTabBar>(*m_editor, u"TabStrip"_s)->setCurrentIndex(2);
}

void tst_FTableImport::cleanup()
{
    m_editor.reset();
    m_start.reset();
    m_folder.reset();
}

/// Chooses a file with that text, and waits for what the window says of it.
void tst_FTableImport::import(const QByteArray& text)
{
    m_folder->write(u"phones.csv"_s, text);
    m_start->user.fileAnswer = ChosenFile{m_folder->file(u"phones.csv"_s)};
    button(*m_editor, u"Import"_s)->click();
    QTRY_VERIFY(!window() || !control<QLabel>(*window(), u"Counts"_s)->text().isEmpty());
}

/// The cells of the list, by lines.
QString tst_FTableImport::verdicts() const
{
    const QAbstractItemModel* lines = control<QTreeView>(*window(), u"Verdicts"_s)->model();
    QStringList rows;
    for (int row = 0; row < lines->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < lines->columnCount(); ++column)
            cells << lines->index(row, column).data().toString();
        rows << cells.join(u'|');
    }
    return rows.join(u'\n');
}

void tst_FTableImport::takesFilesIn_data()
{
    // boxes: what is ticked before Write is pressed; stored: the phones afterwards
    columns<QByteArray, QString, QString, QString, QString>("lines", "boxes", "verdicts", "status", "stored");
    row("all", QByteArray("1,I\n2,Two\n"), "",
        "2|changed|LUNA, 1|Name of the phone: \"One\" -> \"I\"\n3|same|LUNA, 2|",
        "Finished: 0 new, 1 changed, 1 same, 0 refused", "1I 2Two");
    row("nothing to write", QByteArray("1,One\n"), "", "2|same|LUNA, 1|", "", "1One 2Two");
    row("refused", QByteArray("1,I\n3,Three\n"), "OnlyRefused",
        "3|refused|LUNA, 3|The code is not in its company's range.",
        "Refused lines: 1. Nothing can be written unless they are put right or skipped.", "1One 2Two");
    row("refused, left out", QByteArray("1,I\n3,Three\n"), "OnlyRefused SkipRefused",
        "3|refused|LUNA, 3|The code is not in its company's range.",
        "Finished: 0 new, 1 changed, 0 same, 1 refused", "1I 2Two");
    row("ranges", QByteArray("3,Three\n"), "AddRanges",
        "2|new|LUNA, 3|The code is added to its company's range. The phone has no MAC address.",
        "Finished: 1 new, 0 changed, 0 same, 0 refused", "1One 2Two 3Three");
}

void tst_FTableImport::takesFilesIn()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, boxes);
    QFETCH(QString, status);
    QFETCH(QString, stored);
    import("PH_CODE,PH_DESC,Room,CO_CODE\n" + lines.replace("\n", ",x,LUNA\n"));
    QVERIFY(window());
    QAbstractItemModelTester tester(control<QTreeView>(*window(), u"Verdicts"_s)->model(),
                                    QAbstractItemModelTester::FailureReportingMode::QtTest);
    QCOMPARE(text(u"Further"_s), u"Columns passed over, since the table has none of that name: Room"_s);
    for (const QString& box : boxes.split(u' ', Qt::SkipEmptyParts))
        control<QCheckBox>(*window(), box)->click();
    QTEST(verdicts(), "verdicts");
    const bool writes = status.startsWith("Finished"_L1);
    QCOMPARE(button(*window(), u"Write"_s)->isEnabled(), writes);
    button(*window(), u"Write"_s)->click();
    QCOMPARE(this->status(), status);
    QCOMPARE(phones().join(u' '), stored);
    QCOMPARE(button(*window(), u"Cancel"_s)->text(), writes ? u"C&lose"_s : u"Cance&l"_s);
    // The list of the editor shows what is stored.
    const auto* list = control<RecordView>(*m_editor, u"ListCom"_s);
    QTRY_COMPARE(list->model()->rowCount(), phones().size());
    QCOMPARE(list->model()->index(0, 3).data().toString(), phones().first().sliced(1));
    button(*window(), u"Cancel"_s)->click();
    QTRY_VERIFY(!window());
    QVERIFY(button(*m_editor, u"Import"_s)->isEnabled());
}

void tst_FTableImport::stops_data()
{
    columns<bool, QString>("whileWriting", "status");
    row("while it checks", false, "");
    row("while it writes", true, "Stopped: nothing was changed");
}

/// By Cancel, in the middle of many lines.
void tst_FTableImport::stops()
{
    QFETCH(bool, whileWriting);
    QByteArray phones = "CO_CODE,PH_CODE\n";
    for (int code = 10'000; code < 90'000; ++code)
        phones += "LUNA," + QByteArray::number(code) + '\n';
    bool stop = !whileWriting;
    m_start->user.onEvents = [&] {
        if (stop)
            button(*window(), u"Cancel"_s)->click();
    };
    import(phones);
    if (!whileWriting) {
        QTRY_VERIFY(!window());
        return;
    }
    control<QCheckBox>(*window(), u"AddRanges"_s)->click();
    stop = true;
    button(*window(), u"Write"_s)->click();
    QTEST(this->status(), "status");
    QCOMPARE(this->phones().size(), 2);
}

void tst_FTableImport::tellsWhatCannotBeTaken()
{
    import("PH_DESC\nx\n");
    QVERIFY(!window());
    QCOMPARE(m_start->user.shown,
             QStringList(QDir::toNativeSeparators(m_folder->file(u"phones.csv"_s)) +
                         ": The first line must name the columns. Missing: CO_CODE, PH_CODE"_L1));
    m_start->user.fileAnswer = ChosenFile{m_folder->file(u"none.csv"_s)};
    button(*m_editor, u"Import"_s)->click();
    const QString reason = QDir::fromNativeSeparators(m_start->user.shown.last());
    QVERIFY2(reason.startsWith(m_folder->file(u"none.csv"_s) + ": "_L1), qPrintable(reason)); // the system's
#ifndef Q_OS_WIN
    // A pipe without a writer.
    QCOMPARE(QProcess::execute(u"mkfifo"_s, {m_folder->file(u"pipe"_s)}), 0);
    m_start->user.fileAnswer = ChosenFile{m_folder->file(u"pipe"_s)};
    button(*m_editor, u"Import"_s)->click();
    QCOMPARE(m_start->user.shown.last(), m_folder->file(u"pipe"_s) + ": This is no ordinary file."_L1);
#endif
}

void tst_FTableImport::writesFiles()
{
    const QString file = m_folder->file(u"out.csv"_s);
    for (const auto& [kind, content] :
         {std::pair(0, "CO_CODE,PH_CODE,EQ_CODE,PH_DESC,PH_MAC\r\nLUNA,1,,One,\"\"\r\nLUNA,2,,Two,\"\"\r\n"),
          std::pair(1,
                    "\xEF\xBB\xBF"
                    "CO_CODE;PH_CODE;EQ_CODE;PH_DESC;PH_MAC\r\nLUNA;1;;One;\"\"\r\nLUNA;2;;Two;\"\"\r\n")}) {
        m_start->user.fileAnswer = ChosenFile{file, kind};
        button(*m_editor, u"Export"_s)->click();
        QCOMPARE(readWholeFile(file), QByteArray(content));
        QCOMPARE(text(u"LErr"_s), "2 records: "_L1 + QDir::toNativeSeparators(file));
    }
    QCOMPARE(QDir::fromNativeSeparators(m_start->user.proposals.last()), m_folder->file(u"PHONES.csv"_s));
}

/// What somebody else does meanwhile is not written over, and what is open decides what can be done.
void tst_FTableImport::followsTheTable()
{
    m_editor->findChild<TransferActions*>()->importPasted(
        u"Company\tPhone\tName of the phone\nLUNA\t1\tI \"a\" b\n"_s);
    QTRY_VERIFY(button(*window(), u"Write"_s)->isEnabled());
    QCOMPARE(control<QLabel>(*window(), u"Source"_s)->text(), u"Clipboard"_s);
    execute(m_folder->working(), u"UPDATE PHONES SET PH_DESC = 'Uno' WHERE PH_CODE = '1'"_s);
    button(*window(), u"Write"_s)->click();
    QVERIFY2(status().startsWith("Somebody has changed the database meanwhile"_L1), qPrintable(status()));
    QCOMPARE(verdicts(), u"2|changed|LUNA, 1|Name of the phone: \"Uno\" -> \"I \"a\" b\""_s);
    QVERIFY(phones().contains(u"1Uno"_s));
    auto* list = control<QTreeView>(*window(), u"Verdicts"_s);
    list->selectAll();
    QVERIFY(QTest::qWaitForWindowActive(window()));
    list->setFocus();
    QTest::keyClick(list, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QGuiApplication::clipboard()->text(),
             u"2\tchanged\tLUNA, 1\tName of the phone: \"Uno\" -> \"I \"a\" b\"\n"_s);
    button(*window(), u"Write"_s)->click();
    QVERIFY(phones().contains(u"1I \"a\" b"_s));
    button(*window(), u"Cancel"_s)->click();

    control<QAction>(*m_editor, u"New"_s)->trigger();
    QVERIFY(!button(*m_editor, u"Import"_s)->isEnabled() && !button(*m_editor, u"Export"_s)->isEnabled());
    button(*m_editor, u"Cancel"_s)->click();
    m_start->main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('COMPANY', '$$PWD', 'x')"_s);
    m_start->user.passwordAnswer = u"y"_s;
    control<QTabBar>(*m_editor, u"TabStrip"_s)->setCurrentIndex(0);
    QVERIFY(!button(*m_editor, u"Import"_s)->isEnabled() && !button(*m_editor, u"Export"_s)->isEnabled());
}

QTEST_MAIN(tst_FTableImport)
#include "tst_FTableImport.moc"
