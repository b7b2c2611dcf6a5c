// Phone books: the address book, the import and its flags, the exports.
#include "files/file_error.h"
#include "files/whole_file.h"
#include "phonebook/address_book.h"
#include "phonebook/conf_users.h"
#include "phonebook/phone_book_export.h"
#include "phonebook/phone_book_import.h"
#include "phonebook/workbook.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

QByteArray user(const QByteArray& name, const QByteArray& surname, const QByteArray& extension)
{
    return "[User1]\r\nName=" + name + "\r\nSurname=" + surname + "\r\nExtension=" + extension + "\r\n";
}

/// A part of a workbook.
QString partOf(const QString& workbook, const QString& part)
{
    QProcess unzip;
    unzip.start(u"unzip"_s, {u"-p"_s, workbook, part});
    unzip.waitForFinished();
    return QString::fromUtf8(unzip.readAllStandardOutput());
}

} // namespace

class tst_phonebook : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_database.reset(); }
    void writesTheAddressBook();
    void refusesWhatItCanNotDo_data();
    void refusesWhatItCanNotDo();
    void stopsWithoutAChange();
    void readsUsers_data();
    void readsUsers();
    void followsSuccessiveImports();
    void looksAtAllCompanies();
    void refusesWhatIsMoreThanAnEntry_data();
    void refusesWhatIsMoreThanAnEntry();
    void takesManyOver();
    void leavesTheBookWhenTheImportFails();
    void exportsToCsv();
    void exportsToAWorkbook();
    void refusesUnwritableFolders();

private:
    PhoneBookRequest request(const QString& equipment = u"GXP2000"_s) const
    {
        return {u"C1"_s, equipment, m_database->folder()};
    }
    RunReport report();
    /// Whether the run of that name, "generate", "import" or "export", has done its work.
    bool run(const QString& name, const PhoneBookRequest& request, const RunReport& report);
    void addEntry(const QString& values)
    {
        m_database->run("INSERT INTO PHONE_BOOK VALUES("_L1 + values + u')');
    }
    void writeUsers(const QByteArray& content) const
    {
        writeWholeFile(m_database->folder() + "/confUsers.ini"_L1, content);
    }
    /// Imports a file of these users.
    std::optional<ImportCounts> import(const QByteArray& users)
    {
        m_lines.clear();
        writeUsers("[Users]\r\n" + users + "end\r\n");
        return importPhoneBook(m_database->main, request(), report());
    }
    QByteArray written(const QString& name) const
    {
        return readWholeFile(m_database->folder() + u'/' + name);
    }
    /// The book of a company: number, flag and name of each entry.
    QStringList book(const QString& company = u"C1"_s);

    std::unique_ptr<TestDatabase> m_database;
    QStringList m_lines;
};

void tst_phonebook::init()
{
    m_database = std::make_unique<TestDatabase>();
    m_lines.clear();
    m_database->addPhone(u"C1"_s, u"GXP2000"_s, u"101"_s, u"Hall"_s, u"000000000101"_s);
    m_database->addPhone(u"C1"_s, u"PAP2"_s, u"102"_s, u"Desk"_s, u"000000000102"_s);
    for (const QString& flag : {u"V"_s, u"W"_s, u"H"_s, u"M"_s, u"D"_s})
        m_database->run("INSERT INTO CREATION_FLAGS VALUES('"_L1 + flag + "', 'x', 'Y')"_L1);
}

RunReport tst_phonebook::report()
{
    return {[this](const QString& line) { m_lines << line; }, [](qsizetype, qsizetype) {}};
}

bool tst_phonebook::run(const QString& name, const PhoneBookRequest& request, const RunReport& report)
{
    if (name == "import"_L1)
        return importPhoneBook(m_database->main, request, report).has_value();
    return (name == "generate"_L1 ? generatePhoneBook : exportToCsv)(m_database->main, request, report);
}

QStringList tst_phonebook::book(const QString& company)
{
    QStringList entries;
    Recordset rows = m_database->main.connection.select(
        u"SELECT BK_NUM, BK_FLAG, BK_NAME FROM PHONE_BOOK WHERE CO_CODE = ? ORDER BY BK_NUM"_s, {company});
    for (; !rows.eof(); rows.moveNext())
        entries << rows.text(0) + u' ' + rows.text(1) + u' ' + rows.text(2);
    return entries;
}

void tst_phonebook::writesTheAddressBook()
{
    addEntry(u"'C1', '201', 'Zoé & Co <1>', 'V', '', '', '', ''"_s);
    addEntry(u"'C1', '202', 'Hidden', 'H', '', '', '', ''"_s);
    addEntry(u"'C1', '+33 1', 'Anna \u0141', 'M', '1', '2', '3', '4'"_s);
    addEntry(u"'C2', '205', 'Elsewhere', 'V', '', '', '', ''"_s);
    QVERIFY(run(u"generate"_s, request(), report()));
    const auto contact = [](const QByteArray& name, const QByteArray& number, const QByteArray& index) {
        return "<Contact>\r\n<LastName>" + name + "</LastName>\r\n<FirstName></FirstName>\r\n<Phone>\r\n" +
               "<phonenumber>" + number + "</phonenumber>\r\n<accountindex>" + index +
               "</accountindex>\r\n</Phone>\r\n</Contact>\r\n";
    };
    QCOMPARE(written(u"gs_phonebook.xml"_s),
             "<?xml version=\"1.0\"?>\r\n<AddressBook>\r\n" + contact("Anna ?", "+33 1", "0") +
                 contact("Zo\xe9 & Co <1>", "201", "1") + "</AddressBook>\r\n");
    QCOMPARE(m_lines,
             QStringList({u"+33 1 - Anna \u0141"_s, u"   Characters outside Windows-1252 written as ?"_s,
                          u"201 - Zoé & Co <1>"_s}));
    QCOMPARE(m_database->user.shown, QStringList());
}

void tst_phonebook::refusesWhatItCanNotDo_data()
{
    columns<QString, QString, QString, QByteArray, QString>("run", "model", "folder", "users", "message");
    const QByteArray none;
    row("no folder", "generate", "GXP2000", "", none, "M7: ");
    row("a missing folder", "export", "GXP2000", "/no/such", none, "M7: /no/such");
    row("generate without phones", "generate", "F1000", "here", none, "M8: ");
    row("import without phones", "import", "F1000", "here", none, "M8: ");
    row("export without phones", "export", "F1000", "here", none, "M8: ");
    row("generate for another model", "generate", "PAP2", "here", none, "M10: PAP2");
    row("import for another model", "import", "PAP2", "here", none, "M10: PAP2");
    row("import without a file", "import", "GXP2000", "here", none, "M16: /confUsers.ini");
    row("import of another file", "import", "GXP2000", "here", "<html>\n<p>[User1]</p>\n</html>\n"_ba,
        "The file /confUsers.ini is no user list: no line in it begins with [User. Nothing was changed.");
}

void tst_phonebook::refusesWhatItCanNotDo()
{
    QFETCH(QString, run);
    QFETCH(QString, model);
    QFETCH(QString, folder);
    QFETCH(QByteArray, users);
    if (!users.isEmpty())
        writeUsers(users);
    addEntry(u"'C1', '201', 'One', 'V', '', '', '', ''"_s);
    const QString place = folder == "here"_L1 ? m_database->folder() : folder;
    QVERIFY(!this->run(run, {u"C1"_s, model, place}, report()));
    QCOMPARE(m_database->user.shown.size(), 1);
    QCOMPARE(book(), QStringList(u"201 V One"_s));
    const QString shown = QDir::fromNativeSeparators(m_database->user.shown.first());
    QTEST(QString(shown).remove(m_database->folder()), "message");
    QCOMPARE(QDir(m_database->folder()).entryList({u"*.xml"_s, u"*.csv"_s}), QStringList());
}

void tst_phonebook::stopsWithoutAChange()
{
    addEntry(u"'C1', '201', 'One', 'V', '', '', '', ''"_s);
    addEntry(u"'C1', '202', 'Two', 'V', '', '', '', ''"_s);
    writeUsers(user("A", "B", "203") + user("C", "D", "201") + "\r\n");
    const RunReport stopping = {[this](const QString& line) { m_lines << line; },
                                [this](qsizetype done, qsizetype) { m_database->main.stopFlag = done == 1; }};
    for (const QString& name : {u"generate"_s, u"import"_s, u"export"_s}) {
        QVERIFY(!run(name, request(), stopping));
        QCOMPARE(m_lines.last(), u"Stopped: nothing was changed"_s);
    }
    QCOMPARE(m_lines.filter(u"Added"_s), QStringList());
    QCOMPARE(book(), QStringList({u"201 V One"_s, u"202 V Two"_s}));
    QCOMPARE(QDir(m_database->folder()).entryList({u"*.xml"_s, u"*.csv"_s}), QStringList());
}

void tst_phonebook::readsUsers_data()
{
    // Of each entry its line, extension and name.
    columns<QByteArray, QString>("file", "users");
    const QByteArray one = user("Anna", "Lee", "201");
    row("empty", QByteArray(), "no user list");
    row("UTF-16", QByteArray("\xff\xfe[\0U\0s\0e\0r\0]\0\n\0[\0U\0s\0e\0r\0", 26), "no user list");
    row("only a heading", "[Users]\r\n"_ba, "");
    row("without the heading", one + "x", "1/201/Anna Lee ");
    row("without a last line end", one.chopped(2), "1/201/Anna Lee ");
    row("lines ended by LF", QByteArray("[Users]\n" + one).replace("\r", ""), "2/201/Anna Lee ");
    row("empty values", user("", "", "201") + user("A", "B", "") + "[User2]", "1/201/  ");
    row("a wrong line ends the entry", "[User1]\r\nSurname=A\r\n" + one, "3/201/Anna Lee ");
    row("an opening line among them is not looked at again", "[User1]\r\n" + one + one, "6/201/Anna Lee ");
    row("keys count by case and place", "[user1]\r\n" + one.toUpper() + " " + one + one, "10/201/Anna Lee ");
    row("lines between", "[Options]\r\nx=1\r\n" + one + "Mail=a\r\n\r\n" + user("B", "C", "202") + "end",
        "3/201/Anna Lee |9/202/B C ");
    row("cut off", "[User1]\r\nName=A\r\nSurname=B"_ba, "");
    row("Windows-1252", user("Zo\xe9", "\x80", "201"), "1/201/Zoé € ");
    row("UTF-8 without a mark", user("Zo\xc3\xa9", "", "201"), "1/201/Zoé  ");
    row("cut-off UTF-8 with a mark", "\xef\xbb\xbf[Users]\r\n" + user("Zo\xc3\xa9", "", "201") + "\xc3",
        "2/201/Zoé  ");
}

void tst_phonebook::readsUsers()
{
    QFETCH(QByteArray, file);
    const auto list = readConfUsers(file);
    QStringList users = list ? QStringList() : QStringList(u"no user list"_s);
    for (const ConfUser& entry : list.value_or(QList<ConfUser>()))
        users << QString::number(entry.line) + u'/' + entry.extension + u'/' + entry.name;
    QTEST(users.join(u'|'), "users");
}

void tst_phonebook::followsSuccessiveImports()
{
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'M17_IMP', 'Import finished')"_s);
    addEntry(u"'C1', '301', 'By hand', 'M', '', '', '', ''"_s);
    addEntry(u"'C1', '302', 'Hidden', 'H', '', '', '', ''"_s);
    addEntry(u"'C1', '303', 'Left over', 'W', '', '', '', ''"_s);
    QVERIFY(import(user("A", "1", "201") + user("B", "2", "202") + user("C", "3", "203") +
                   user("X", "x", "301") + user("Y", "y", "302") + user("A", "again", "201")));
    QCOMPARE(
        m_lines,
        QStringList({u"201 - A 1  - Added"_s, u"202 - B 2  - Added"_s, u"203 - C 3  - Added"_s,
                     u"301 - X x  - Ignored, Hidden or Manual"_s, u"302 - Y y  - Ignored, Hidden or Manual"_s,
                     u"201 - A again  - Ignored, Hidden or Manual"_s,
                     u"3 added, 0 updated, 3 ignored, 0 refused, 1 hidden"_s,
                     u"   Most of the imported entries are hidden now: was this the whole list?"_s}));
    QCOMPARE(book(), QStringList({u"201 V A 1 "_s, u"202 V B 2 "_s, u"203 V C 3 "_s, u"301 M By hand"_s,
                                  u"302 H Hidden"_s, u"303 H Left over"_s}));

    // 202 is gone, 203 has lost its number, 204 is new.
    QVERIFY(import(user("A", "new", "201") + user("C", "3", "") + user("D", "4", "204")));
    QCOMPARE(m_lines.first(3), QStringList({u"201 - A new  - Updated"_s, u"204 - D 4  - Added"_s,
                                            u"1 added, 1 updated, 0 ignored, 0 refused, 2 hidden"_s}));
    QCOMPARE(book(), QStringList({u"201 V A new "_s, u"202 H B 2 "_s, u"203 H C 3 "_s, u"204 V D 4 "_s,
                                  u"301 M By hand"_s, u"302 H Hidden"_s, u"303 H Left over"_s}));

    QCOMPARE(m_database->user.shown, QStringList(2, u"M17: Import finished"_s));
}

void tst_phonebook::looksAtAllCompanies()
{
    addEntry(u"'C2', '201', 'Two', 'V', '', '', '', ''"_s);
    addEntry(u"'C2', '202', 'Three', 'V', '', '', '', ''"_s);
    addEntry(u"'C1', '203', 'One', 'V', '', '', '', ''"_s);
    addEntry(u"'C2', '203', 'Four', 'M', '', '', '', ''"_s);
    QVERIFY(import(user("A", "B", "201") + user("C", "D", "203")));
    QCOMPARE(m_lines, QStringList({u"201 - A B  - Updated"_s, u"203 - C D  - Updated"_s,
                                   u"0 added, 2 updated, 0 ignored, 0 refused, 1 hidden"_s}));
    QCOMPARE(book(), QStringList({u"203 V C D "_s}));
    QCOMPARE(book(u"C2"_s), QStringList({u"201 V A B "_s, u"202 H Three"_s, u"203 V C D "_s}));
}

void tst_phonebook::refusesWhatIsMoreThanAnEntry_data()
{
    columns<QByteArray, QByteArray, QString>("name", "extension", "reason");
    const auto apostrophe = "it holds an apostrophe: enter this user by hand";
    row("apostrophe", "Eva O'Neil"_ba, "201"_ba, apostrophe);
    row("all rows", "x', BK_FLAG='H' WHERE 1=1 -- "_ba, "201"_ba, apostrophe);
    row("another row", "x', BK_FLAG='V' WHERE BK_NUM='202' -- "_ba, "201"_ba, apostrophe);
    row("another column", "x', BK_MAIL='y"_ba, "201"_ba, apostrophe);
    row("another number", "x', BK_NUM='209', BK_FLAG='V' WHERE BK_NUM='201' -- "_ba, "201"_ba, apostrophe);
    row("what is elsewhere", "' || (SELECT MAX(CO_DESC) FROM COMPANY) || '"_ba, "201"_ba, apostrophe);
    row("what is elsewhere, new", "' || (SELECT MAX(CO_DESC) FROM COMPANY) || '"_ba, "205"_ba, apostrophe);
    row("two new rows", "x','V','','','',''), ('C1','206','y"_ba, "205"_ba, apostrophe);
    row("a condition for a number", "x"_ba, "0' OR '1'='1"_ba, apostrophe);
    row("too long", QByteArray(51, 'x'), "201"_ba, "The field BK_NAME holds at most 50 characters.");
}

/// Nothing but the other user of the file is taken over, and the refused one is not hidden.
void tst_phonebook::refusesWhatIsMoreThanAnEntry()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, extension);
    QFETCH(QString, reason);
    addEntry(u"'C1', '201', 'Old', 'V', '', '', '', ''"_s);
    addEntry(u"'C1', '202', 'Two', 'V', '', '', '', ''"_s);
    addEntry(u"'C2', '203', 'By hand', 'M', '', '', '', ''"_s);
    const bool known = extension == "201";
    const auto counts = import(user(name, "", extension) + user("A", "Luna''s", "202") +
                               (known ? QByteArray() : user("Old", "", "201")));
    QVERIFY(counts && counts->refused == 1);
    QCOMPARE(book().first().trimmed(), u"201 V Old"_s);
    QCOMPARE(book().sliced(1), QStringList(u"202 V A Luna's "_s));
    QCOMPARE(book(u"C2"_s), QStringList(u"203 M By hand"_s));
    QCOMPARE(m_database->value(u"SELECT MAX(BK_MAIL) FROM PHONE_BOOK"_s), u""_s);
    QCOMPARE(m_lines.first(2),
             QStringList({QString::fromUtf8("Line 2: " + extension + " - " + name + "   - ") + reason,
                          u"202 - A Luna''s  - Updated"_s}));
}

/// So many that they are written in several pieces. Every 50th is refused, every 40th is in two companies,
/// every 30th is quoted and every 900th comes twice.
void tst_phonebook::takesManyOver()
{
    for (int number = 1040; number < 4000; number += 40)
        addEntry(u"'C2', '%1', 'Old', 'V', '', '', '', ''"_s.arg(number));
    for (const QByteArray& turn : {"first"_ba, "second"_ba}) {
        QByteArray users;
        QStringList expected;
        for (int number = 1000; number < 4000; ++number) {
            const QByteArray code = QByteArray::number(number);
            const QByteArray name = number % 50 == 0   ? QByteArray(60, 'x')
                                    : number % 30 == 0 ? turn + "''s"
                                                       : turn;
            users += user(name, code, code);
            users += number % 900 == 1 ? user("again", "", code) : QByteArray();
            const QString stored = QString::fromUtf8(name + u' ').replace("''"_L1, "'"_L1);
            if (number % 50 != 0 && (number % 40 != 0 || number == 1000))
                expected << u"%1 V %2%1 "_s.arg(QString::number(number), stored);
        }
        QVERIFY(import(users));
        QCOMPARE(book(), expected);
        QCOMPARE(m_lines.filter(u" - again"_s).size(), 3);
        QCOMPARE(m_lines.filter(u" holds at most "_s).size(), 60);
        QVERIFY(m_lines[100].contains(": 1100 - xxx"_L1));
        QVERIFY(m_lines[2602 + 3].startsWith("3602 - "_L1));
    }
}

void tst_phonebook::leavesTheBookWhenTheImportFails()
{
    // The last statement of the import fails.
    addEntry(u"'C1', '201', 'Old', 'V', '', '', '', ''"_s);
    m_database->run(u"DELETE FROM CREATION_FLAGS WHERE FL_CODE = 'H'"_s);
    QVERIFY_THROWS_EXCEPTION(DatabaseError, import(user("A", "B", "203")));
    QCOMPARE(book(), QStringList(u"201 V Old"_s));
    QCOMPARE(m_lines, QStringList(u"The import failed: nothing was changed"_s));
}

void tst_phonebook::exportsToCsv()
{
    addEntry(u"'C1', '201', 'Zoé; \"Co\"', 'V', '0033', '', '06', 'a@b'"_s);
    addEntry(u"'C1', '202', 'Hidden', 'H', '', '', '', ''"_s);
    addEntry(u"'C2', '203', 'Elsewhere', 'V', '', '', '', ''"_s);
    QVERIFY(run(u"export"_s, request({}), report()));
    const QByteArray expected = "C1;201;Zo\xe9; \"Co\";V;0033;;06;a@b\r\nC1;202;Hidden;H;;;;\r\n";
    QCOMPARE(written(u"Phone_Book.csv"_s), expected);
    QCOMPARE(m_lines, QStringList(u"M33: 2"_s));
    QCOMPARE(m_database->user.shown, m_lines);

    m_database->run(u"DELETE FROM PHONE_BOOK"_s);
    QVERIFY(!run(u"export"_s, request({}), report()));
    QCOMPARE(m_database->user.questions,
             QStringList("M32: "_L1 + QDir::toNativeSeparators(m_database->folder() + "/Phone_Book.csv"_L1)));
    QCOMPARE(m_database->user.shown.last(), u"M33: 0"_s);
    QCOMPARE(written(u"Phone_Book.csv"_s), expected);

    m_database->user.yesNoAnswer = true;
    QVERIFY(run(u"export"_s, request({}), report()));
    QCOMPARE(written(u"Phone_Book.csv"_s), QByteArray());
}

void tst_phonebook::exportsToAWorkbook()
{
    m_database->run(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$DESC_EN', 'BK_NAME', 'Name&more')"_s);
    addEntry(u"'C1', '0201', '=1+1', 'V', '+33', '', '{=A1}', 'http://x/'"_s);
    const auto first = exportToWorkbook(m_database->main, request({}), report());
    const auto second = exportToWorkbook(m_database->main, request({}), report());
    QCOMPARE(first, QDir::toNativeSeparators(m_database->folder() + "/Phone_Book.xlsx"_L1));
    QCOMPARE(second, QDir::toNativeSeparators(m_database->folder() + "/Phone_Book_2.xlsx"_L1));
    QCOMPARE(m_database->user.shown, QStringList({u"M33: 1"_s, u"M33: 1"_s}));

#ifdef Q_OS_WIN
    QSKIP("Nothing unpacks the workbook");
#endif
    QStringList texts;
    static const QRegularExpression text(u"<t>([^<]*)"_s);
    for (const QRegularExpressionMatch& found : text.globalMatch(partOf(*first, u"xl/sharedStrings.xml"_s)))
        texts << found.captured(1);
    QCOMPARE(texts,
             u"CO_CODE BK_NUM Name&amp;more BK_FLAG BK_EXTNUM BK_FAX BK_GSM BK_MAIL C1 0201 =1+1 V +33 "
             "{=A1} http://x/"_s.split(u' '));
    // Every cell is a text, also what looks like a number or a formula.
    const QString sheet = partOf(*first, u"xl/worksheets/sheet1.xml"_s);
    QVERIFY(!sheet.contains("<f>"_L1));
    QCOMPARE(sheet.count(" t=\"s\""_L1), texts.size());
    QCOMPARE(QDir(m_database->folder()).entryList({u"*.part"_s}), QStringList());
}

void tst_phonebook::refusesUnwritableFolders()
{
    const QString folder = m_database->folder() + "/sub"_L1;
    QDir().mkdir(folder);
    for (const QString& taken : {u"/gs_phonebook.xml"_s, u"/Phone_Book.csv"_s, u"/x.xlsx"_s})
        QDir().mkdir(folder + taken);
    m_database->user.yesNoAnswer = true;
    for (const QString& name : {u"generate"_s, u"export"_s})
        QVERIFY_THROWS_EXCEPTION(FileError, run(name, {u"C1"_s, u"GXP2000"_s, folder}, report()));
    QVERIFY_THROWS_EXCEPTION(FileError, writeWorkbook(folder + "/none/x.xlsx"_L1, {u"a"_s}, {}));
    QVERIFY_THROWS_EXCEPTION(FileError, writeWorkbook(folder + "/x.xlsx"_L1, {u"a"_s}, {}));
    QCOMPARE(QDir(folder).entryList(QDir::Files), QStringList());
}

QTEST_GUILESS_MAIN(tst_phonebook)
#include "tst_phonebook.moc"
