// The table editor without its window: rights, passwords, statements, pick lists, the order of entry, the
// record model and the layout.
#include "common/texts/folded_text.h"
#include "editor/list/record_model.h"
#include "editor/many/record_batch.h"
#include "editor/record/pick_list.h"
#include "editor/record/record_form.h"
#include "editor/record/record_statements.h"
#include "editor/record/record_writing.h"
#include "editor/record_list.h"
#include "editor/table_catalogue.h"
#include "editor/window/editor_layout.h"
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

/// A form for a table whose columns in capitals, or ending in one, are drop-downs. Each list offers the first
/// value with the column's name, "same" and, with descriptions, "1" and "2".
RecordForm made(RecordMode mode, const QString& columns, const QString& values)
{
    const auto fill = [](const QString& statement, const QList<RecordField>& fields) {
        return QStringList({fields.first().text + statement, u"same"_s, u"1 \\\\ One"_s, u"2 \\\\ Two"_s});
    };
    QStringList lists;
    for (const QString& name : columns.split(u' '))
        lists << (name.back().isUpper() && name != "K"_L1 ? name : QString());
    return {mode, table(columns.split(u' ')), lists, values.split(u' '), fill};
}

/// The pick lists of a form that has none.
QStringList noEntries(const QString&, const QList<RecordField>&)
{
    return {};
}

/// The state of a form: per field "." (closed) or "o" (open) and its text, and whether it can be written.
QString state(const RecordForm& form)
{
    QStringList fields;
    for (const RecordField& field : form.fields())
        fields << (field.enabled ? u'o' : u'.') + field.text;
    return fields.join(u'|') + (form.complete() ? u" ok"_s : QString());
}

/// Does what `steps` say, apart by ";": "1=x" types x into the first field, "2#y" chooses y in the second,
/// "3>" goes on from the third.
void enter(RecordForm& form, const QString& steps)
{
    for (const QString& step : steps.split(u';', Qt::SkipEmptyParts)) {
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
    void listsRecords_data();
    void listsRecords();
    void fillsPlaceholders_data();
    void fillsPlaceholders();
    void readsPickLists();
    void fillsForms_data();
    void fillsForms();
    void writesThisRecordOrNone_data();
    void writesThisRecordOrNone();
    void writesApostrophes();
    void sortsAndFindsRecords();
    void foldsTexts_data();
    void foldsTexts();
    void searchesRecords();
    void describesCodes();
    void copiesRecords();
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
    row("some", "yNY", "", "A C");
    row("everything", "*", "", "A J B C");
    row("indexed as numbers", "NYNNNNNNNY", "", "J B");
    row("a star among others", "*Y", "", "B");
    row("the user's", "", "NY", "B");
    row("everybody's override the user's", "Y", "NYY", "A");
    row("none at all", "", "", "SYSTEM_PARAMETERS");
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
    row("open to all, in spite of a second one", "-", "two", "", Access::True);
    row("the first", "abc", "-", "abc", Access::True);
    row("empty, without a second", "abc", "-", "", Access::Admin);
    row("wrong", "abc", "-", "ABC", Access::False);
    row("the second", "abc", "two", "two", Access::Admin);
    row("empty, with a second", "abc", "two", "", Access::False);
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
    row("a locked key with a pick list, too", "X = &CO_KEY", "X = 'C9'");
    row("a text is not", "X = &PH_DESC AND 1", "X = Hall 3 AND 1");
    row("ended by a bracket, twice", "A IN (&CO_CODE) AND B IN (SELECT &CO_CODE)",
        "A IN ('C1') AND B IN (SELECT 'C1')");
    row("a name that begins with another", "&CO_CODE &CO_CODE2", "'C1' two");
    row("a value that looks like one", "&CO_CODE2 &ODD", "two R&D");
}

void tst_editor::fillsPlaceholders()
{
    const auto field = [](const QString& column, const QString& text, const QString& list, bool dropDown) {
        return RecordField{column, {}, false, list, dropDown, {}, text, false};
    };
    const QList<RecordField> fields = {field(u"CO_KEY"_s, u"C9"_s, u"list"_s, false),
                                       field(u"CO_CODE"_s, u"C1 \\\\ Company one"_s, u"list"_s, true),
                                       field(u"CO_CODE2"_s, u"two"_s, {}, false),
                                       field(u"PH_DESC"_s, u"Hall 3"_s, {}, false),
                                       field(u"ODD"_s, u"R&D"_s, {}, false)};
    QFETCH(QString, statement);
    QTEST(substitutePlaceholders(statement, fields), "filled");
}

void tst_editor::readsPickLists()
{
    setting(u"$$PHONES"_s, u"L_EQ_CODE"_s, u"SELECT 1"_s);
    setting(u"PHONES"_s, u"L_PH_MAC"_s, u"not a system row"_s);
    const TableDescription phones = describeTable(m_database->main, u"PHONES"_s);
    QCOMPARE(pickListStatements(m_database->main, phones), QStringList({{}, {}, u"SELECT 1"_s, {}, {}}));
    QCOMPARE(pickListEntries(m_database->main, u"SELECT 'a', 'Text', 'more' UNION SELECT 'b', '', ''"_s),
             QStringList({u"a \\\\ Text"_s, u"b \\\\ "_s}));
}

void tst_editor::fillsForms_data()
{
    // Columns as for made(), the values before, the steps of enter(), the state then, and the statement.
    columns<RecordMode, QString, QString, QString, QString, QString>("mode", "columns", "values", "steps",
                                                                     "state", "statement");
    using enum RecordMode;
    const auto entered = [](const char* title, const char* columns, const char* steps, const char* state,
                            const char* statement = "") {
        row(title, Insert, columns, "", steps, state, statement);
    };
    entered("opened", "Ka b", "", "o|.");
    entered("a key gives the next", "Ka b", "1=x", "ox|o ok", "INSERT INTO T VALUES('x', '' )");
    entered("a text given up closes nothing", "Ka b", "1=x;1=", "o|o ok");
    entered("a key never filled", "Ka Kb", "1=x", "ox|o");
    entered("an empty text opens nothing", "Ka b c", "1=x;2=y;2=", "ox|o|o ok");
    entered("an empty text, passed by", "Ka b c", "1=x;2>", "ox|o|o ok");
    entered("an empty key is not passed by", "Ka Kb c", "1=x;2>", "ox|o|.");
    entered("the last drop-down completes", "Ka b C", "1=O'N;2=it's;3#c'd", "oO'N|oit's|oc'd ok",
            "INSERT INTO T VALUES('O''N', 'it''s', 'c'd' )");
    entered("a drop-down chosen anew empties those after it", "KA KB C d", "1#a;2#b;3#c;4=t;1#z",
            "oz|o|.|ot");
    entered("and is complete with them", "KA KB c", "1#1 \\\\ One;2#b;3=t;1#z;2#b", "oz|ob|ot ok",
            "INSERT INTO T VALUES('z', 'b', 't' )");
    entered("a typed text refills the drop-down after it", "Ka KB", "1=x;2#y;1=z", "oz|o ok");
    entered("which keeps what is still listed", "Ka KB", "1=x;2#same;1=z", "oz|osame ok");
    row("a change locks the key", Update, "KA B c", "1 2 x", "", ".1|o2 \\\\ Two|ox ok", "");
    row("and sets what is new", Update, "KA B Kd e", "1 2 k' x'", "2#1 \\\\ One;4=y'",
        ".1|o1 \\\\ One|.k'|oy' ok", "UPDATE T SET B = '1', e = 'y'' WHERE KA = '1' AND Kd = 'k''");
    row("keeps what is not listed", Update, "K B c", "k old x", "3=", ".k|oold|o ok",
        "UPDATE T SET c = '' WHERE K = 'k'");
    row("without a key", Update, "c d", "1 x", "1=2", "o2|ox ok", "UPDATE T SET c = '2' WHERE ");
    row("a deletion locks all", Delete, "b Ka KC", "1 2' 2", "", ".1|.2'|.2 ok",
        "DELETE FROM T WHERE Ka = '2'' AND KC = '2'");
}

void tst_editor::fillsForms()
{
    QFETCH(RecordMode, mode);
    QFETCH(QString, columns);
    QFETCH(QString, values);
    QFETCH(QString, steps);
    QFETCH(QString, statement);
    RecordForm form = made(mode, columns, values);
    enter(form, steps);
    QTEST(state(form), "state");
    if (!statement.isEmpty() || mode == RecordMode::Update)
        QCOMPARE(recordStatement(form), statement);
}

void tst_editor::writesThisRecordOrNone_data()
{
    // The record as it is, values apart by "|" and with a "^" before those of drop-downs, the steps of
    // enter(), the message, and whether the engine was asked.
    columns<RecordMode, QString, QString, QString, QString, bool>("mode", "table", "before", "steps",
                                                                  "message", "asked");
    using enum RecordMode;
    row("everybody renamed", Update, "COMPANY", "C1|One", "2=Bob' -- boss", "M19: The field CO_DESC", false);
    row("a chosen entry", Update, "COMPANY", "C1|^One", "2#x''y", "M19: The entry chosen in ", false);
    row("everybody deleted", Delete, "COMPANY", "0' OR '1'='1|n", "", "M18: The key field CO_CODE ", false);
    row("another record changed", Update, "COMPANY", "C''1|x", "2=y", "M19: The key field CO_CODE ", false);
    row("two added", Insert, "COMPANY", "|^", "1=C8;2#a'), ('C9', 'b", "M17: The entry chosen ", false);
    row("deleted meanwhile", Delete, "COMPANY", "C9|x", "", "M18: Another user has deleted it", false);
    row("changed after that", Update, "COMPANY", "C9|x", "2=y", "M19: Another user has deleted it", false);
    row("without a key", Delete, "LOOSE", "a", "", "M18: This record can't be told from others", true);
    row("refused by the engine", Update, "PHONES", "C1|101|PAP2|x|y", "3=nix",
        "M19: There is no entry in the table EQUIPMENT for EQ_CODE nix. ", true);
}

void tst_editor::writesThisRecordOrNone()
{
    m_database->addPhone(u"C1"_s, u"PAP2"_s, u"101"_s, u"x"_s, u"y"_s);
    m_database->run(u"CREATE TABLE LOOSE (L_ONE varchar(5))"_s);
    m_database->run(u"INSERT INTO LOOSE VALUES('a')"_s);
    m_database->run(u"INSERT INTO COMPANY VALUES('C2', 'Two'), ('C''1', 'Quoted')"_s);
    QFETCH(RecordMode, mode);
    QFETCH(QString, table);
    QFETCH(QString, before);
    QFETCH(QString, steps);
    QFETCH(QString, message);
    const auto contents = [&] {
        QString rows;
        for (Recordset found = m_database->main.connection.select("SELECT * FROM "_L1 + table); !found.eof();
             found.moveNext())
            for (int field = 0; field <= before.count(u'|'); ++field)
                rows += found.text(field) + u'|';
        return rows;
    };
    QStringList lists;
    for (const QString& value : before.split(u'|'))
        lists << (value.startsWith(u'^') ? u"list"_s : QString());
    RecordForm form(mode, describeTable(m_database->main, table), lists,
                    QString(before).remove(u'^').split(u'|'), noEntries);
    enter(form, steps);

    const QString rows = contents();
    const QString told = writeRecord(m_database->main, form);
    QVERIFY2(told.startsWith(message), qPrintable(told));
    QCOMPARE(contents(), rows);
    QCOMPARE(m_database->user.shown, QStringList(told));
    // The engine's own words stand behind the message, in which there is nothing of them.
    const QString words = m_database->user.details.first();
    QTEST(!words.isEmpty(), "asked");
    QVERIFY(words.isEmpty() || !told.contains(words));
    QCOMPARE(m_database->main.sqlText, recordStatement(form));
}

void tst_editor::writesApostrophes()
{
    const TableDescription company = describeTable(m_database->main, u"COMPANY"_s);
    const auto written = [&](RecordMode mode, const QStringList& before, const QString& steps) {
        RecordForm form(mode, company, {{}, {}}, before, noEntries);
        enter(form, steps);
        const QString failure = writeRecord(m_database->main, form);
        return failure.isEmpty() ? storedRecord(m_database->main, form).value_or(QStringList())
                                 : QStringList(failure);
    };
    const QStringList before = {u"C2"_s, u"O'Neil"_s};
    QCOMPARE(written(RecordMode::Insert, {}, u"1=C2;2=O'Neil"_s), before);
    QCOMPARE(written(RecordMode::Update, before, {}), before);
    QCOMPARE(written(RecordMode::Update, before, u"2=O’Neil"_s), QStringList({u"C2"_s, u"O’Neil"_s}));
    QCOMPARE(written(RecordMode::Delete, before, {}), QStringList());
}

void tst_editor::sortsAndFindsRecords()
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

    // The texts of two keys may be the same as a whole.
    model.reset({u"1"_s, u"2"_s, u"3"_s}, {true, true, false});
    model.append({{u"a"_s, u"bc"_s, u"x"_s}, {u"ab"_s, u"c"_s, u"y"_s}});
    QCOMPARE(model.find({u"ab"_s, u"c"_s, u"other"_s}), std::optional(1));
    QCOMPARE(model.find({u"a"_s, u"bc"_s, u"x"_s}, 1), std::nullopt);
}

void tst_editor::foldsTexts_data()
{
    columns<QString, QString>("text", "folded");
    row("accents, composed or not", "Chloé DUBOIS cafe\u0301", "chloe dubois cafe");
    row("letters of their own", "Sørensen Łódź Œuf", "sorensen lodz oeuf");
    row("a typographic apostrophe", "O’Neil", "o'neil");
    row("beyond 16 bits", "Straße \U0001F4DE", "strasse \U0001F4DE");
}

void tst_editor::foldsTexts()
{
    QFETCH(QString, text);
    QTEST(foldedText(text), "folded");
}

void tst_editor::searchesRecords()
{
    RecordModel model(QLocale(u"en"_s));
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.reset({u"one"_s, u"two"_s}, {true, false});
    model.append({{u"a"_s, u"Hall"_s}, {u"b"_s, u"Shop"_s}, {u"c"_s, u"Hall"_s}});
    const QPersistentModelIndex shown = model.index(2, 0);
    const QPersistentModelIndex hidden = model.index(1, 0);
    const auto keys = [&model] {
        QString all;
        for (int row = 0; row < model.rowCount(); ++row)
            all += model.record(row)[0];
        return all;
    };
    model.search(foldedWords(u" HALL "_s));
    QCOMPARE(keys(), u"ac"_s);
    QCOMPARE(shown.row(), 1);
    QVERIFY(!hidden.isValid());
    model.append({{u"d"_s, u"Desk"_s}, {u"e"_s, u"hall"_s}});
    model.sort(0, Qt::DescendingOrder);
    QCOMPARE(keys(), u"eca"_s);
    QCOMPARE(model.find({u"d"_s, {}}), std::nullopt);
    model.removeRows(1, 1);
    model.search(foldedWords(u"a l"_s)); // both in one record, anywhere
    QCOMPARE(keys(), u"ea"_s);
    model.search({});
    QCOMPARE(keys(), u"edba"_s);
}

void tst_editor::describesCodes()
{
    for (const auto& [code, name] : {std::pair(u"C1"_s, u"One"_s), {u"C2"_s, u"Two"_s}, {u"O'N"_s, u"x"_s}})
        m_database->main.connection.execute(u"INSERT INTO COMPANY VALUES(?, ?)"_s, {code, name});
    setting(u"$$PHONES"_s, u"L_CO_CODE"_s, u"SELECT CO_CODE FROM COMPANY"_s);
    setting(u"$$PHONES"_s, u"L_PH_CODE"_s, u"SELECT '1', CO_DESC FROM COMPANY WHERE CO_CODE = &CO_CODE"_s);
    setting(u"$$PHONES"_s, u"L_EQ_CODE"_s, u"SELECT 'G', 'desk' FROM NOWHERE"_s);
    setting(u"$$PHONES"_s, u"L_PH_DESC"_s, u"DELETE FROM COMPANY"_s);
    setting(u"$$PHONES"_s, u"L_PH_MAC"_s, u"SELECT '', 'none' UNION SELECT '1', 'first'"_s);
    RecordDescriptions descriptions(describeTable(m_database->main, u"PHONES"_s));
    const auto of = [&](const QString& company) {
        const QStringList record = {company, u"1"_s, u"G"_s, u"x"_s, u""_s};
        descriptions.learn(m_database->main, record);
        QStringList texts;
        for (int column = 0; column < 5; ++column)
            texts << descriptions.description(record, column).text;
        return texts.join(u'|');
    };
    QCOMPARE(of(u"C1"_s), u"|One|||none"_s);
    QCOMPARE(of(u"C2"_s), u"|Two|||none"_s);
    QCOMPARE(of(u"O'N"_s), u"||||none"_s);
    QCOMPARE(m_database->value(u"SELECT COUNT(*) FROM COMPANY"_s), u"3"_s);
    QCOMPARE(m_database->user.shown, QStringList());

    // What they stand for decides where codes are the same.
    RecordModel model(QLocale(u"en"_s));
    model.reset({5, u"caption"_s}, {true, true, false, false, false},
                RecordDescriptions(describeTable(m_database->main, u"PHONES"_s)));
    model.append({{u"C2"_s, u"1"_s, {}, {}, {}}, {u"C1"_s, u"1"_s, {}, {}, {}}});
    model.learnDescriptions(m_database->main);
    model.sort(1, Qt::AscendingOrder);
    QCOMPARE(model.record(0)[0], u"C1"_s);
    model.search({u"two"_s});
    QCOMPARE(model.index(0, 1).data(RecordModel::descriptionRole).toString(), u"Two"_s);
}

void tst_editor::copiesRecords()
{
    const TableDescription table{u"T"_s, {{u"K"_s, u"Key"_s, true}, {u"V"_s, u"Value"_s, false}}, {u"K"_s}};
    QCOMPARE(tabbedText(table, {{u"1"_s, u" a\tb\"\n"_s}, {u"é"_s, QString()}}),
             u"K\tV\n1\t\" a\tb\"\"\n\"\né\t\n"_s);
}

void tst_editor::laysOut_data()
{
    // At 96 dots per inch 100 twips are 7 pixels, at 192 they are 13.
    columns<int, QSize, int, int, QRect, QRect, QRect>("scale", "inside", "fields", "frame", "list", "panel",
                                                       "ok");
    const QRect none;
    // Error line at 600 - 51 + 30 = 579, list from 7+22+7+27+2*29 = 121 on (27: 400 twips). Five fields end
    // 20 above 579: 5*29-7 = 138 from 421 on; the list ends 14 above.
    row("editing in a frame", 1, QSize(900, 600), 5, 30, QRect(14, 121, 872, 286), QRect(14, 421, 699, 138),
        QRect(720, 550, 80, 22));
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
