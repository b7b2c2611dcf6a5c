// What a first start puts into the user's data folder.
#include "common/MMain.h"
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
void make(const QString& folder, const QStringList& files, const QByteArray& origin)
{
    for (const QString& file : files) {
        const QString path = folder + u'/' + file;
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        writeWholeFile(path, origin);
    }
}

/// All files and folders of files in the folder, as "name=origin".
QStringList found(const QString& folder)
{
    QStringList entries;
    QDirIterator files(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        if (files.fileInfo().isFile())
            entries << QDir(folder).relativeFilePath(files.filePath()) + u'=' +
                           QString::fromUtf8(readWholeFile(files.filePath()));
        else if (QDir(files.filePath()).isEmpty())
            entries << QDir(folder).relativeFilePath(files.filePath()) + u'/';
    }
    entries.sort();
    return entries;
}

} // namespace

class tst_first_start : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void fills_data();
    void fills();
};

void tst_first_start::cleanup()
{
    qunsetenv("VELMORA_HOME");
}

void tst_first_start::fills_data()
{
    using Files = QStringList;
    const Files all = {u"ParamDB.txt"_s, u"factory.db"_s, u"demo.csv"_s, u"manual.htm"_s,
                       u"manual/fr/a.htm"_s};
    const Files least = {u"ParamDB.txt"_s, u"factory.db"_s};
    columns<Files, Files, QString, QString, Files, QString>("share", "user", "option", "variable", "after",
                                                            "message");
    row("everything", all, Files(), "", "",
        Files{u"velmora/ParamDB.txt=share"_s, u"velmora/factory.db=share"_s, u"velmora/manual.htm=share"_s,
              u"velmora/manual/fr/a.htm=share"_s},
        "");
    row("no manual", least, Files(), "", "",
        Files{u"velmora/ParamDB.txt=share"_s, u"velmora/factory.db=share"_s}, "");
    row("what is there stays", all, Files{u"velmora/factory.db"_s, u"velmora/manual/own.htm"_s}, "", "",
        Files{u"velmora/ParamDB.txt=share"_s, u"velmora/factory.db=user"_s, u"velmora/manual.htm=share"_s,
              u"velmora/manual/own.htm=user"_s},
        "");
    row("one that was killed before", least,
        Files{unfinishedName(u"velmora/filling-abc"_s) + "/factory.db"_L1}, "", "",
        Files{u"velmora/ParamDB.txt=share"_s, u"velmora/factory.db=share"_s}, "");
    row("filled before: only the manual is renewed", all,
        Files{u"velmora/ParamDB.txt"_s, u"velmora/manual.htm"_s}, "", "",
        Files{u"velmora/ParamDB.txt=user"_s, u"velmora/manual.htm=share"_s,
              u"velmora/manual/fr/a.htm=share"_s},
        "");
    row("filled before, without a manual to renew", least, Files{u"velmora/ParamDB.txt"_s}, "", "",
        Files{u"velmora/ParamDB.txt=user"_s}, "");
    row("chosen by option", all, Files{u"chosen/x"_s}, "chosen", "", Files{u"chosen/x=user"_s}, "");
    row("chosen by variable", all, Files{u"chosen/x"_s}, "", "chosen", Files{u"chosen/x=user"_s}, "");
    row("the user's folder, chosen", all, Files(), "velmora", "", Files(), "");
    row("nothing installed", Files(), Files(), "", "", Files(), "");
    row("half installed", Files{u"ParamDB.txt"_s}, Files(), "", "", Files{u"velmora/"_s},
        "Velmora can't start: .*share/factory.db: .+");
    row("a file in the way", least, Files{u"velmora"_s}, "", "", Files{u"velmora=user"_s},
        "Velmora can't start: .*/velmora: the folder can't be made");
}

void tst_first_start::fills()
{
    QFETCH(QStringList, share);
    QFETCH(QStringList, user);
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

QTEST_GUILESS_MAIN(tst_first_start)
#include "tst_first_start.moc"
