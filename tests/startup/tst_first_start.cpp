// What a first start puts into the user's data folder.
#include "common/MMain.h"
#include "database/connection.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"
#include "startup/first_start.h"
#include "startup/program_folder.h"
#include "support/recorded_prompts.h"
#include "support/rows.h"

#include <QDir>
#include <QDirIterator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// Writes every file with its origin as its content, so that a copy tells where it comes from.
void make(const QString& folder, const QString& files, const QByteArray& origin)
{
    for (const QString& file : files.split(u' ', Qt::SkipEmptyParts)) {
        const QString path = folder + u'/' + file;
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        writeWholeFile(path, origin);
    }
}

/// All files in the folder, as "name=origin", and all empty folders, as "name/".
QString found(const QString& folder)
{
    QStringList entries;
    QDirIterator files(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        const QString name = QDir(folder).relativeFilePath(path);
        if (files.fileInfo().isFile())
            entries << name + u'=' + QString::fromUtf8(readWholeFile(path));
        else if (QDir(path).isEmpty())
            entries << name + u'/';
    }
    entries.sort();
    return entries.join(u' ');
}

} // namespace

class tst_first_start : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void fills_data();
    void fills();
    void renewsTheFactoryDatabase_data();
    void renewsTheFactoryDatabase();
};

void tst_first_start::init()
{
#ifdef Q_OS_WIN
    QSKIP("The user's data folder is not told by a variable");
#endif
}

void tst_first_start::cleanup()
{
    qunsetenv("VELMORA_HOME");
}

void tst_first_start::fills_data()
{
    columns<QString, QString, QString, QString, QString, QString>("share", "user", "option", "variable",
                                                                  "after", "message");
    const QString all = u"ParamDB.txt factory.db demo.csv manual.htm manual/fr/a.htm"_s;
    const QString least = u"ParamDB.txt factory.db"_s;
    const QString leastCopied = u"velmora/ParamDB.txt=share velmora/factory.db=share"_s;
    row("everything", all, "", "", "",
        leastCopied + " velmora/manual.htm=share velmora/manual/fr/a.htm=share"_L1, "");
    row("what is there stays", all, "velmora/factory.db velmora/manual/own.htm", "", "",
        "velmora/ParamDB.txt=share velmora/factory.db=user velmora/manual.htm=share "
        "velmora/manual/own.htm=user",
        "");
    row("one that was killed before", least, unfinishedName(u"velmora/filling-abc"_s) + "/factory.db"_L1, "",
        "", leastCopied, "");
    row("filled before: only the manual is renewed", all, "velmora/ParamDB.txt velmora/manual.htm", "", "",
        "velmora/ParamDB.txt=user velmora/manual.htm=share velmora/manual/fr/a.htm=share", "");
    row("chosen by option", all, "chosen/x", "chosen", "", "chosen/x=user", "");
    row("chosen by variable", all, "chosen/x", "", "chosen", "chosen/x=user", "");
    row("nothing installed", "", "", "", "", "", "");
    row("half installed", "ParamDB.txt", "", "", "", "velmora/",
        "Velmora can't start: .*share/factory.db: .+");
    row("a file in the way", least, "velmora", "", "", "velmora=user",
        "Velmora can't start: .*/velmora: the folder can't be made");
}

void tst_first_start::fills()
{
    QFETCH(QString, share);
    QFETCH(QString, user);
    QFETCH(QString, option);
    QFETCH(QString, variable);
    QFETCH(QString, message);
    const QTemporaryDir root;
    const QString home = root.filePath(u"home"_s);
    make(root.filePath(u"share"_s), share, "share");
    make(home, user, "user");
    qputenv("XDG_DATA_HOME", home.toUtf8());
    if (!variable.isEmpty())
        qputenv("VELMORA_HOME", (home + u'/' + variable).toUtf8());
    const QString chosen = option.isEmpty() ? QString() : home + u'/' + option;

    RecordedPrompts prompts;
    const MMain main(programFolder(chosen), prompts.prompts());
    QCOMPARE(fillProgramFolder(main, chosen, root.filePath(u"share"_s)), message.isEmpty());
    QTEST(found(home), "after");
    const QRegularExpression expected(QRegularExpression::anchoredPattern(message));
    QVERIFY2(expected.match(prompts.shown.join(u'\n')).hasMatch(), qPrintable(prompts.shown.join(u'\n')));
}

void tst_first_start::renewsTheFactoryDatabase_data()
{
    const QString installed = u"Provider=SQLite;Data Source=$$APPPATH$$/factory.db"_s;
    const QString older = u"UPDATE SYSTEM_PARAMETERS SET SY_VALUE = '010141' WHERE SY_CODE = '$$BASEVER'"_s;
    const auto holding = [&older](const QString& row) {
        return QStringList({older, "INSERT INTO "_L1 + row});
    };
    // The lines of ParamDB.txt, how the user's factory.db differs from the installed one, whether an
    // unfinished change lies beside it, and the files after.
    columns<QString, QString, QStringList, bool, bool>("working", "original", "changes", "open", "renewed");
    const QString working = u"Provider=SQLite;Data Source=velmora.db"_s;
    row("an earlier version", working, installed, QStringList(older), false, true);
    row("named in other words", working, "data source=./factory.db;PROVIDER=sqlite", QStringList(older),
        false, true);
    row("this version", working, installed,
        QStringList(u"INSERT INTO SYSTEM_PARAMETERS VALUES('own', 'row', '')"_s), false, false);
    row("a company", working, installed, holding(u"COMPANY VALUES('X', 'x')"_s), false, false);
    row("phone codes", working, installed, holding(u"RANGES VALUES('X', '1')"_s), false, false);
    row("a phone book", working, installed,
        holding(u"PHONE_BOOK VALUES('X', '1', 'x', 'V', '', '', '', '')"_s), false, false);
    row("no version", working, installed,
        QStringList(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$BASEVER'"_s), false, false);
    row("somebody writes to it", working, installed, QStringList(older), true, false);
    row("the working database", installed, installed, QStringList(older), false, false);
    row("another original", working, "Provider=SQLite;Data Source=other.db", QStringList(older), false,
        false);
    row("a server", working, "Provider=MariaDB;Data Source=factory.db", QStringList(older), false, false);
    row("no original", working, "", QStringList(older), false, false);
    row("no connection string", working, "factory.db", QStringList(older), false, false);
}

void tst_first_start::renewsTheFactoryDatabase()
{
    QFETCH(QString, working);
    QFETCH(QString, original);
    QFETCH(QStringList, changes);
    QFETCH(bool, open);
    QFETCH(bool, renewed);
    const QTemporaryDir home;
    const QString folder = home.filePath(u"velmora"_s);
    const QString share = QStringLiteral(VELMORA_SHARE);
    make(folder, {u"ParamDB.txt"_s}, (working + u'\n' + original).toUtf8());
    const QString own = folder + "/factory.db"_L1;
    const QByteArray installed = readWholeFile(share + "/factory.db"_L1);
    writeWholeFile(own, installed);
    Connection session;
    session.open("Provider=SQLite;Data Source="_L1 + own);
    session.execute(u"PRAGMA foreign_keys = OFF"_s);
    for (const QString& change : changes)
        session.execute(change);
    if (!open)
        session.closeUnused();
    const QByteArray before = readWholeFile(own);

    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    RecordedPrompts prompts;
    const MMain main(programFolder({}), prompts.prompts());
    for (int start = 0; start < 2; ++start)
        QVERIFY(fillProgramFolder(main, {}, share));
    QCOMPARE(prompts.shown, QStringList());
    QVERIFY(readWholeFile(own) == (renewed ? installed : before));
    const QString kept = folder + "/factory_010141.db"_L1;
    QVERIFY(renewed ? readWholeFile(kept) == before : !QFile::exists(kept));
}

QTEST_GUILESS_MAIN(tst_first_start)
#include "tst_first_start.moc"
