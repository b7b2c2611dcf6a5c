// The table editor without its window: rights, passwords, statements, pick lists, the order of entry, the
// record model and the layout.
#include "editor/pick_list.h"
#include "editor/record_form.h"
#include "editor/record_list.h"
#include "editor/windows/editor_layout.h"
#include "editor/windows/record_model.h"
#include "support/rows.h"
#include "support/test_database.h"

#include <QAbstractItemModelTester>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// A table of text columns; those whose name begins with "K" are its key.
TableDescription table(const QStringList& columns)
{
    TableDescription description{u"T"_s, {}, {}};
    for (const QString& column : columns) {
        description.columns << TableColumn{column, column, column.startsWith(u'K')};
        if (column.startsWith(u'K'))
            description.keys << column;
    }
    return description;
}

/// The state of a form: per field "." (closed) or "o" (open) and its text, and whether it can be written.
QString state(const RecordForm& form)
{
    QStringList fields;
    for (const RecordField& field : form.fields())
        fields << (field.enabled ? u"o"_s : u"."_s) + field.text;
    return fields.join(u'|') + (form.complete() ? u" ok"_s : QString());
}

/// Does what `steps` say, apart by blanks: "1=x" types x into the first field, "2#y" chooses y in the second,
/// "3>" goes on from the third.
void enter(RecordForm& form, const QString& steps)
{
    for (const QString& step : steps.split(u' ', Qt::SkipEmptyParts)) {
        const qsizetype field = step.first(1).toInt() - 1;
        const QString text = step.sliced(2);
        if (step[1] == u'=')
            form.changeText(field, text);
        else if (step[1] == u'#')
            form.choose(field, text);
        else
            form.leave(field);
    }
}

} // namespace

class tst_editor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_database.reset(); }
    void grantsTabs_data();
    void grantsTabs();
    void opensByPassword_data();
    void opensByPassword();
    void readsTheSchema();
    void refusesAMissingTable();
    void listsRecords_data();
    void listsRecords();
    void fillsPlaceholders_data();
    void fillsPlaceholders();
    void refusesUnknownPlaceholders();
    void readsPickLists();
    void opensFieldAfterField_data();
    void opensFieldAfterField();
    void locksTheKey();
    void keepsAnUnlistedValue();
    void buildsStatements_data();
    void buildsStatements();
    void writesThisRecordOrNone_data();
    void writesThisRecordOrNone();
    void writesApostrophes();
    void sortsRecords();
    void keysOfRecordsDoNotCollide();
    void laysOut_data();
    void laysOut();

private:
    void setting(const QString& code, const QString& subcode, const QString& value)
    {
        m_database->main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES(?, ?, ?)"_s,
                                            {code, subcode, value});
    }

    std::unique_ptr<TestDatabase> m_database;
};

void tst_editor::init()
{
    m_database = std::make_unique<TestDatabase>();
}

void tst_editor::grantsTabs_data()
{
    // Everybody's rights, the user's rights and the tabs. Numbers sort as text: 1, 10, 2, 3.
    columns<QString, QString, QString>("everybody", "user", "tabs");
    row("one of three", "NNY", "", "C");
    row("small letters", "yny", "", "A C");
    row("everything", "*", "", "A J B C");
    row("indexed as numbers", "NYNNNNNNNY", "", "J B");
    row("a star among others", "*Y", "", "B");
    row("the user's", "", "NY", "B");
    row("everybody's override the user's", "Y", "NYY", "A");
    row("none at all", "", "", "SYSTEM_PARAMETERS");
    row("none granted", "NNN", "YYY", "SYSTEM_PARAMETERS");
}

void tst_editor::grantsTabs()
{
    QFETCH(QString, everybody);
    QFETCH(QString, user);
    for (const auto& [number, name] :
         {std::pair(u"1"_s, u"A"_s), {u"2"_s, u"B"_s}, {u"3"_s, u"C"_s}, {u"10"_s, u"J"_s}})
        setting(u"$$TABS"_s, number, name);
    setting(u"$$DESC_EN"_s, u"FPARAMETERS_C"_s, u"Third"_s);
    m_database->main.userName = u"jdoe"_s;
    if (!everybody.isEmpty())
        setting(u"AUTHC"_s, u"*"_s, everybody);
    if (!user.isEmpty())
        setting(u"AUTHC"_s, u"JDOE"_s, user);
    QStringList shown;
    for (const TableTab& tab : tableTabs(m_database->main)) {
        shown << tab.table;
        QCOMPARE(tab.caption, tab.table == "C"_L1 ? u"Third"_s : QString());
    }
    QTEST(shown.join(u' '), "tabs");
}

void tst_editor::opensByPassword_data()
{
    columns<QString, QString, QString, Access>("first", "second", "entry", "access");
    row("open to all", "-", "-", "", Access::True);
    row("open to all, in spite of a second one", "-", "two", "", Access::True);
    row("the first", "abc", "-", "abc", Access::True);
    row("empty, without a second", "abc", "-", "", Access::Admin);
    row("wrong", "abc", "-", "ABC", Access::False);
    row("the second", "abc", "two", "two", Access::Admin);
    row("empty, with a second", "abc", "two", "", Access::False);
    row("both the same", "abc", "abc", "abc", Access::True);
}

void tst_editor::opensByPassword()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, entry);
    // Rows under the other code of each must not count.
    setting(u"$$LEVELS"_s, u"$$PWD"_s, u"no"_s);
    setting(u"LEVELS"_s, u"$$PWD2"_s, u"no"_s);
    if (first != "-"_L1)
        setting(u"LEVELS"_s, u"$$PWD"_s, first);
    if (second != "-"_L1)
        setting(u"$$LEVELS"_s, u"$$PWD2"_s, second);
    QTEST(accessFor(passwordsOf(m_database->main, u"LEVELS"_s), entry), "access");
}

void tst_editor::readsTheSchema()
{
    m_database->run(
        u"CREATE TABLE DOORS (DO_SITE varchar(5), DO_CODE varchar(5), DO_NOTE varchar(50), PRIMARY KEY "
        "(DO_CODE, DO_SITE))"_s);
    if (onServer())
        m_database->run(u"ALTER TABLE DOORS MODIFY DO_NOTE varchar(50) COMMENT 'What to know', "
                        "MODIFY DO_SITE varchar(5) COMMENT 'unused'"_s);
    setting(u"$$DESC_EN"_s, u"DO_SITE"_s, u"Site"_s);
    const TableDescription doors = describeTable(m_database->main, u"DOORS"_s);
    QStringList captions;
    QString keys;
    for (const TableColumn& column : doors.columns) {
        captions << column.name + u'=' + column.caption;
        keys += column.key ? u'k' : u'-';
    }
    QCOMPARE(captions, QStringList({u"DO_SITE=Site"_s, u"DO_CODE=DO_CODE"_s,
                                    onServer() ? u"DO_NOTE=What to know"_s : u"DO_NOTE=DO_NOTE"_s}));
    QCOMPARE(keys, u"kk-"_s);
    QCOMPARE(doors.keys, QStringList({u"DO_CODE"_s, u"DO_SITE"_s}));
}

void tst_editor::refusesAMissingTable()
{
    QVERIFY_THROWS_EXCEPTION(DatabaseError, describeTable(m_database->main, u"NOWHERE"_s));
}

void tst_editor::listsRecords_data()
{
    // The columns of T, filters as column:index:text, and the statement.
    columns<QString, QString, Access, QString>("columns", "filters", "access", "statement");
    row("all", "K D", "K:0:All", Access::True, "SELECT K, D FROM T WHERE K NOT LIKE '$$%' ORDER BY K");
    row("system rows", "K D", "K:0:All", Access::Admin, "SELECT K, D FROM T WHERE K LIKE '$$%' ORDER BY K");
    row("the second filter", "K1 K2 D", "K1:0:All K2:3:x", Access::True,
        "SELECT K1, K2, D FROM T WHERE K1 NOT LIKE '$$%' AND K2 = 'x' ORDER BY K1, K2");
    row("a typed text", "K1 K2", "K1:-1:a'b K2:1:All", Access::True,
        "SELECT K1, K2 FROM T WHERE K1 NOT LIKE '$$%' AND K1 = 'a'b' AND K2 = 'All' ORDER BY K1, K2");
    row("without a key", "D E", "", Access::Admin, "SELECT D, E FROM T");
}

void tst_editor::listsRecords()
{
    QFETCH(QString, columns);
    QFETCH(QString, filters);
    QFETCH(Access, access);
    QList<KeyFilter> chosen;
    for (const QString& filter : filters.split(u' ', Qt::SkipEmptyParts)) {
        const QStringList parts = filter.split(u':');
        chosen << KeyFilter{parts[0], parts[1].toInt(), parts[2]};
    }
    QTEST(listStatement(table(columns.split(u' ')), chosen, access), "statement");
}

void tst_editor::fillsPlaceholders_data()
{
    columns<QString, QString>("statement", "filled");
    row("none", "SELECT 1", "SELECT 1");
    row("a drop-down is quoted", "SELECT PH_CODE FROM PHONES WHERE CO_CODE = &CO_CODE",
        "SELECT PH_CODE FROM PHONES WHERE CO_CODE = 'C1'");
    row("a locked key with a pick list, too", "X = &CO_KEY", "X = 'C9'");
    row("a text is not", "X = &PH_DESC AND 1", "X = Hall 3 AND 1");
    row("a text between quotes", "X = '&PH_DESC'", "X = 'Hall 3'");
    row("ended by a bracket, twice", "A IN (&CO_CODE) AND B IN (SELECT &CO_CODE)",
        "A IN ('C1') AND B IN (SELECT 'C1')");
    row("a name that begins with another", "&CO_CODE &CO_CODE2", "'C1' two");
    row("a value that looks like one", "&CO_CODE2 &ODD", "two R&D");
}

void tst_editor::fillsPlaceholders()
{
    const auto field = [](const QString& column, bool dropDown, const QString& text) {
        RecordField made;
        made.column = column;
        made.dropDown = dropDown;
        made.pickList = dropDown || column == "CO_KEY"_L1 ? u"list"_s : QString();
        made.text = text;
        return made;
    };
    const QList<RecordField> fields = {
        field(u"CO_KEY"_s, false, u"C9"_s), field(u"CO_CODE"_s, true, u"C1 \\\\ Company one"_s),
        field(u"CO_CODE2"_s, false, u"two"_s), field(u"PH_DESC"_s, false, u"Hall 3"_s),
        field(u"ODD"_s, false, u"R&D"_s)};
    QFETCH(QString, statement);
    QTEST(substitutePlaceholders(statement, fields), "filled");
}

void tst_editor::refusesUnknownPlaceholders()
{
    QVERIFY_THROWS_EXCEPTION(DatabaseError, substitutePlaceholders(u"SELECT &NO_SUCH FROM T"_s, {}));
}

void tst_editor::readsPickLists()
{
    setting(u"$$PHONES"_s, u"L_EQ_CODE"_s, u"SELECT 1"_s);
    setting(u"PHONES"_s, u"L_PH_MAC"_s, u"not a system row"_s);
    const TableDescription phones = describeTable(m_database->main, u"PHONES"_s);
    QCOMPARE(pickListStatements(m_database->main, phones), QStringList({{}, {}, u"SELECT 1"_s, {}, {}}));
    QCOMPARE(pickListEntries(m_database->main, u"SELECT 'a', 'Text', 'more' UNION SELECT 'b', '', ''"_s),
             QStringList({u"a \\\\ Text"_s, u"b \\\\ "_s}));
    QCOMPARE(pickListEntries(m_database->main, u"SELECT 'a'"_s), QStringList(u"a"_s));
    QVERIFY_THROWS_EXCEPTION(DatabaseError, pickListEntries(m_database->main, u"SELECT FROM"_s));
}

void tst_editor::opensFieldAfterField_data()
{
    // Columns in capitals are drop-downs. A list offers its own statement's name with the values before it.
    columns<QString, QString, QString>("columns", "steps", "state");
    row("opened", "Ka b", "", "o|.");
    row("a key gives the next", "Ka b", "1=x", "ox|o ok");
    row("a text given up closes nothing", "Ka b", "1=x 1=", "o|o ok");
    row("a key that is empty is not complete", "Ka Kb", "1=x 2=y 2= 1=z", "oz|o ok");
    row("a key never filled", "Ka Kb", "1=x", "ox|o");
    row("an empty text opens nothing", "Ka b c", "1=x 2=y 2=", "ox|o|o ok");
    row("an empty text, passed by", "Ka b c", "1=x 2>", "ox|o|o ok");
    row("an empty key is not passed by", "Ka Kb c", "1=x 2>", "ox|o|.");
    row("drop-downs", "KA KB c", "1#a", "oa|o|.");
    row("the last drop-down completes", "Ka b C", "1=x 2=y 3#z", "ox|oy|oz ok");
    row("a drop-down chosen anew empties those after it", "KA KB c", "1#a 2#b 3=t 1#z", "oz|o|ot");
    row("and is complete with them", "KA KB c", "1#a 2#b 3=t 1#z 2#b", "oz|ob|ot ok");
    row("a typed text refills the drop-down after it", "Ka KB", "1=x 2#y 1=z", "oz|o ok");
    row("which keeps what is still listed", "Ka KB", "1=x 2#same 1=z", "oz|osame ok");
}

void tst_editor::opensFieldAfterField()
{
    QFETCH(QString, columns);
    QFETCH(QString, steps);
    const QStringList names = columns.split(u' ');
    QStringList lists;
    for (const QString& name : names)
        lists << (name.back().isUpper() ? name : QString());
    const auto fill = [](const QString& statement, const QList<RecordField>& fields) {
        return QStringList({fields.first().text + statement, u"same"_s});
    };
    RecordForm form(RecordMode::Insert, table(names), lists, {}, fill);
    enter(form, steps);
    QTEST(state(form), "state");
}

void tst_editor::locksTheKey()
{
    const auto fill = [](const QString&, const QList<RecordField>&) {
        return QStringList({u"1 \\\\ One"_s, u"2 \\\\ Two"_s});
    };
    const TableDescription description = table({u"K"_s, u"L"_s, u"d"_s});
    RecordForm update(RecordMode::Update, description, {u"list"_s, u"list"_s, {}}, {u"1"_s, u"2"_s, u"x"_s},
                      fill);
    QCOMPARE(state(update), u".1|o2 \\\\ Two|ox ok"_s);
    QVERIFY(!update.fields()[0].dropDown);
    QVERIFY(!update.changed());
    QCOMPARE(update.statement(), QString());
    update.choose(1, u"1 \\\\ One"_s);
    update.changeText(2, u""_s);
    QCOMPARE(state(update), u".1|o1 \\\\ One|o ok"_s);
    QCOMPARE(update.statement(), u"UPDATE T SET L = '1', d = '' WHERE K = '1'"_s);

    const RecordForm deletion(RecordMode::Delete, description, {u"list"_s, u"list"_s, {}},
                              {u"1"_s, u"2"_s, u"x"_s}, fill);
    QCOMPARE(state(deletion), u".1|.2 \\\\ Two|.x ok"_s);
}

void tst_editor::keepsAnUnlistedValue()
{
    const auto fill = [](const QString&, const QList<RecordField>&) { return QStringList(u"1 \\\\ One"_s); };
    RecordForm form(RecordMode::Update, table({u"K"_s, u"L"_s, u"M"_s}), {{}, u"list"_s, u"list"_s},
                    {u"k"_s, u"old"_s, {}}, fill);
    QCOMPARE(state(form), u".k|oold|o ok"_s);
    QCOMPARE(form.fields()[1].entries, QStringList({u"old"_s, u"1 \\\\ One"_s}));
    QCOMPARE(form.statement(), QString());
}

void tst_editor::buildsStatements_data()
{
    // Columns in capitals, beside the key, are drop-downs; values are those before and after, apart by "/".
    columns<RecordMode, QString, QString, QString>("mode", "columns", "values", "statement");
    row("insert", RecordMode::Insert, "Ka b", "/x /", "INSERT INTO T VALUES('x', '' )");
    row("insert doubles quotes in texts alone", RecordMode::Insert, "Ka b C", "/O'Neil /it's /c'd",
        "INSERT INTO T VALUES('O''Neil', 'it''s', 'c'd' )");
    row("update", RecordMode::Update, "Ka Kb c d", "1/1 2/2 x/y z/z",
        "UPDATE T SET c = 'y' WHERE Ka = '1' AND Kb = '2'");
    row("update does not", RecordMode::Update, "Ka c D", "o'/o' x/y' p/q'",
        "UPDATE T SET c = 'y'', D = 'q'' WHERE Ka = 'o''");
    row("update without a change", RecordMode::Update, "Ka c", "1/1 x/x", "");
    row("update without a key", RecordMode::Update, "c d", "1/2 x/x", "UPDATE T SET c = '2' WHERE ");
    row("delete", RecordMode::Delete, "Ka Kb c", "1'/ 2/ 3/", "DELETE FROM T WHERE Ka = '1'' AND Kb = '2'");
    row("delete without a key", RecordMode::Delete, "c", "1/", "DELETE FROM T WHERE ");
    row("the key columns last", RecordMode::Delete, "c Ka", "1/ 2/", "DELETE FROM T WHERE Ka = '2'");
}

void tst_editor::buildsStatements()
{
    QFETCH(RecordMode, mode);
    QFETCH(QString, columns);
    QFETCH(QString, values);
    const QStringList names = columns.split(u' ');
    QStringList lists;
    QStringList before;
    QStringList after;
    for (const QString& value : values.split(u' ')) {
        before << value.section(u'/', 0, 0);
        after << value.section(u'/', 1);
    }
    for (const QString& name : names)
        lists << (name.size() == 1 && name[0].isUpper() ? u"list"_s : QString());
    const auto fill = [](const QString&, const QList<RecordField>&) { return QStringList(); };
    RecordForm form(mode, table(names), lists, before, fill);
    for (qsizetype field = 0; field < names.size() && mode != RecordMode::Delete; ++field) {
        if (form.fields()[field].dropDown)
            form.choose(field, after[field] + " \\\\ text"_L1);
        else
            form.changeText(field, after[field]);
    }
    QTEST(form.statement(), "statement");
}

void tst_editor::writesThisRecordOrNone_data()
{
    // The record as it is and as it is to be, values apart by "|"; a "^" before a value makes its field a
    // drop-down. The message, and whether the engine was asked.
    columns<RecordMode, QString, QString, QString, QString, bool>("mode", "table", "before", "after",
                                                                  "message", "asked");
    using enum RecordMode;
    row("everybody renamed", Update, "COMPANY", "C1|One", "C1|Bob' -- boss", "M19: The field CO_DESC can't ",
        false);
    row("a quote doubled by hand", Update, "COMPANY", "C1|One", "C1|Luna''s", "M19: The field CO_DESC can't ",
        false);
    row("another field, too", Update, "PHONE_BOOK", "C1|1|n|W||||", "C1|1|', BK_FLAG='D|W||||",
        "M19: The field BK_NAME can't ", false);
    row("a chosen entry", Update, "COMPANY", "C1|^One", "C1|^x''y",
        "M19: The entry chosen in the field CO_DESC", false);
    row("everybody deleted", Delete, "PHONE_BOOK", "C1|0' OR '1'='1|n|W||||", "",
        "M18: The key field BK_NUM ", false);
    row("another record deleted", Delete, "COMPANY", "C''1|x", "", "M18: The key field CO_CODE ", false);
    row("another record changed", Update, "COMPANY", "C''1|x", "C''1|y", "M19: The key field CO_CODE ",
        false);
    row("two added", Insert, "COMPANY", "", "C8|^a'), ('C9', 'b",
        "M17: The entry chosen in the field CO_DESC", false);
    row("deleted meanwhile", Delete, "COMPANY", "C9|x", "", "M18: Another user has deleted it", false);
    row("changed after that", Update, "COMPANY", "C9|x", "C9|y", "M19: Another user has deleted it", false);
    row("without a key", Delete, "LOOSE", "a", "", "M18: This record can't be told from others", true);
    row("key", Insert, "COMPANY", "", "C1|Two", "M17: A record with this key exists already.", true);
    row("too long", Update, "COMPANY", "C1|One", u"C1|"_s + QString(51, u'x'),
        "M19: The field CO_DESC holds at most 50 characters.", true);
    row("used", Delete, "RANGES", "C1|101", "", "M18: It is still used in: PHONES. ", true);
    row("refers to none", Update, "PHONES", "C1|101|PAP2|x|y", "C1|101|nix|x|y",
        "M19: There is no entry in the table EQUIPMENT for EQ_CODE nix. ", true);
}

void tst_editor::writesThisRecordOrNone()
{
    m_database->addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"x"_s, u"y"_s);
    m_database->run(u"CREATE TABLE LOOSE (L_ONE varchar(5))"_s);
    for (const QString& values :
         {u"COMPANY VALUES('C2', 'Two')"_s, u"COMPANY VALUES('C''1', 'Quoted')"_s, u"LOOSE VALUES('a')"_s,
          u"CREATION_FLAGS VALUES('W', '', 'Y')"_s, u"CREATION_FLAGS VALUES('D', '', 'Y')"_s,
          u"PHONE_BOOK VALUES('C1', '1', 'n', 'W', '', '', '', '')"_s,
          u"PHONE_BOOK VALUES('C1', '0'' OR ''1''=''1', 'n', 'W', '', '', '', '')"_s})
        m_database->run("INSERT INTO "_L1 + values);
    QFETCH(RecordMode, mode);
    QFETCH(QString, table);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, message);
    const TableDescription description = describeTable(m_database->main, table);
    const auto contents = [&] {
        QString rows;
        for (Recordset found = m_database->main.connection.select("SELECT * FROM "_L1 + table); !found.eof();
             found.moveNext())
            for (int field = 0; field < description.columns.size(); ++field)
                rows += found.text(field) + u'|';
        return rows;
    };
    QStringList lists;
    for (const QString& value : (after.isEmpty() ? before : after).split(u'|'))
        lists << (value.startsWith(u'^') ? u"list"_s : QString());
    RecordForm form(mode, description, lists, QString(before).remove(u'^').split(u'|'),
                    [](const QString&, const QList<RecordField>&) { return QStringList(); });
    const QStringList values = after.split(u'|');
    for (qsizetype field = 0; field < values.size() && mode != RecordMode::Delete; ++field)
        if (lists[field].isEmpty())
            form.changeText(field, values[field]);
        else
            form.choose(field, values[field].sliced(1));

    const QString rows = contents();
    const QString told = writeRecord(m_database->main, form);
    QVERIFY2(told.startsWith(message), qPrintable(told));
    QCOMPARE(contents(), rows);
    QCOMPARE(m_database->user.shown, QStringList(told));
    // The engine's own words stand behind the message, in which there is nothing of them.
    const QString words = m_database->user.details.first();
    QTEST(!words.isEmpty(), "asked");
    QVERIFY(words.isEmpty() || !told.contains(words));
    QCOMPARE(m_database->main.sqlText, form.statement());
}

void tst_editor::writesApostrophes()
{
    const auto fill = [](const QString&, const QList<RecordField>&) { return QStringList(); };
    const TableDescription company = describeTable(m_database->main, u"COMPANY"_s);
    RecordForm apostrophe(RecordMode::Insert, company, {{}, {}}, {}, fill);
    enter(apostrophe, u"1=C2 2=O'Neil"_s);
    QCOMPARE(writeRecord(m_database->main, apostrophe), QString());
    QCOMPARE(m_database->value(u"SELECT CO_DESC FROM COMPANY WHERE CO_CODE = 'C2'"_s), u"O'Neil"_s);

    RecordForm typographic(RecordMode::Update, company, {{}, {}}, {u"C2"_s, u"O'Neil"_s}, fill);
    typographic.changeText(1, u"O’Neil"_s);
    QCOMPARE(writeRecord(m_database->main, typographic), QString());
    QCOMPARE(storedRecord(m_database->main, typographic), QStringList({u"C2"_s, u"O’Neil"_s}));
    const RecordForm deletion(RecordMode::Delete, company, {{}, {}}, {u"C2"_s, u"O'Neil"_s}, fill);
    QCOMPARE(writeRecord(m_database->main, deletion), QString());
    QCOMPARE(storedRecord(m_database->main, deletion), std::nullopt);
}

void tst_editor::sortsRecords()
{
    RecordModel model(QLocale(u"fr"_s));
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.reset({u"one"_s, u"two"_s}, {true, false});
    model.append({{u"b"_s, u"1"_s}, {u"A"_s, u"10"_s}, {u"c"_s, {}}});
    model.append({{u"B"_s, u"2"_s}});
    const QPersistentModelIndex kept = model.index(3, 1);
    const auto column = [&model](int number) {
        QStringList texts;
        for (int row = 0; row < model.rowCount(); ++row)
            texts << model.index(row, number).data().toString();
        return texts.join(u' ');
    };
    model.sort(0, Qt::AscendingOrder);
    QCOMPARE(column(0), u"A b B c"_s);
    QCOMPARE(kept.row(), 2);
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(column(0), u"c b B A"_s);
    model.sort(1, Qt::AscendingOrder);
    QCOMPARE(column(1), u" 1 10 2"_s);
    model.removeRows(1, 2);
    QCOMPARE(column(0), u"c B"_s);
    model.update(1, {u"B"_s, u"new"_s});
    QCOMPARE(kept.data().toString(), u"new"_s);
}

void tst_editor::keysOfRecordsDoNotCollide()
{
    RecordModel model(QLocale(u"fr"_s));
    model.reset({u"1"_s, u"2"_s, u"3"_s}, {true, true, false});
    model.append({{u"a"_s, u"bc"_s, u"x"_s}, {u"ab"_s, u"c"_s, u"y"_s}});
    QCOMPARE(model.find({u"ab"_s, u"c"_s, u"other"_s}), std::optional(1));
    QCOMPARE(model.find({u"a"_s, u"bc"_s, u"x"_s}), std::optional(0));
    QCOMPARE(model.find({u"a"_s, u"bc"_s, u"x"_s}, 1), std::nullopt);
    QCOMPARE(model.find({u"abc"_s, {}, {}}), std::nullopt);
}

void tst_editor::laysOut_data()
{
    // At 96 dots per inch 100 twips are 7 pixels, at 192 they are 13.
    columns<int, QSize, int, int, QRect, QRect, QRect>("scale", "inside", "fields", "frame", "list", "panel",
                                                       "ok");
    const QRect none;
    // Error line at 600 - 51 = 549; list from 7+22+7+27+2*29 = 121 (27: 400 twips) to 549-7-7.
    row("browsing", 1, QSize(900, 600), 0, 0, QRect(14, 121, 872, 414), none, QRect(720, 520, 80, 22));
    // The frame moves the error line down by its 30 and keeps the list where it was.
    row("in a frame", 1, QSize(900, 600), 0, 30, QRect(14, 121, 872, 414), none, QRect(720, 550, 80, 22));
    // Five fields end 20 above 549: 5*29-7 = 138 from 391 on; the list ends 14 above.
    row("editing", 1, QSize(900, 600), 5, 0, QRect(14, 121, 872, 256), QRect(14, 391, 699, 138),
        QRect(720, 520, 80, 22));
    // Thirty fields scroll: the list keeps four rows, 121 + 4*22 + 14 - 7 = 216... the panel begins at 223.
    row("too many fields", 1, QSize(900, 600), 30, 0, QRect(14, 121, 872, 88), QRect(14, 223, 699, 306),
        QRect(720, 520, 80, 22));
    // The smallest window: two fields stay visible, nothing of the list does.
    row("too low", 1, QSize(800, 233), 8, 0, QRect(14, 121, 772, 0), QRect(14, 111, 599, 51),
        QRect(620, 153, 80, 22));
    row("twice the resolution", 2, QSize(1800, 1200), 0, 0, QRect(26, 237, 1748, 835), none,
        QRect(1440, 1041, 160, 44));
}

void tst_editor::laysOut()
{
    QFETCH(int, scale);
    QFETCH(QSize, inside);
    QFETCH(int, fields);
    QFETCH(int, frame);
    const QSize button = QSize(80, 22) * scale;
    const EditorLayout at = layOutEditor({.inside = inside,
                                          .frame = frame,
                                          .dotsPerInch = 96 * scale,
                                          .topRow = 22 * scale,
                                          .tabRow = 20 * scale,
                                          .label = 17 * scale,
                                          .row = 22 * scale,
                                          .ok = button,
                                          .cancel = button,
                                          .filters = 2,
                                          .fields = fields});
    QTEST(at.list, "list");
    QTEST(at.panel, "panel");
    QTEST(at.ok, "ok");
    QCOMPARE(leastEditorSize(96 * scale), QSize(800, 233) * scale + QSize(0, scale - 1));
}

QTEST_GUILESS_MAIN(tst_editor)
#include "tst_editor.moc"
