// The manual: what its pages refer to, and that they leave nothing out.
#include "factory/manual.h"
#include "files/file_error.h"
#include "files/separated_values.h"
#include "files/whole_file.h"
#include "support/rows.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace velmora;

class tst_manual : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void refersOnlyToWhatExists_data();
    void refersOnlyToWhatExists();
    void explainsEveryMessage_data();
    void explainsEveryMessage();
    void mentionsEveryCommandAndOption_data();
    void mentionsEveryCommandAndOption();
    void keepsFrenchPunctuationTogether();
    void refusesBrokenTemplates_data();
    void refusesBrokenTemplates();
};

namespace {

QString pathOf(const QString& page)
{
    return u"" VELMORA_SHARE "/"_s + page;
}

QString read(const QString& page)
{
    return QString::fromUtf8(readWholeFile(pathOf(page)));
}

/// What stands in the group of each match.
QStringList matches(const QString& text, const QString& pattern)
{
    QStringList found;
    for (const QRegularExpressionMatch& match : QRegularExpression(pattern).globalMatch(text))
        found << match.captured(1);
    return found;
}

void addPages(const QStringList& pages)
{
    QTest::addColumn<QString>("page");
    for (const QString& page : pages)
        QTest::newRow(qPrintable(page)) << page;
}

QString helpOf(const QString& command)
{
    QProcess program;
    program.start(QStringLiteral(VELMORA_CLI), command.split(u' ', Qt::SkipEmptyParts) << u"--help"_s);
    program.waitForFinished();
    return QString::fromUtf8(program.readAllStandardOutput());
}

/// The commands of velmora-cli, as its help lists them.
QStringList commandsBelow(const QString& command)
{
    QStringList commands;
    for (const QString& name :
         matches(helpOf(command).section(u"\nSubcommands:\n"_s, 1), u"(?m)^  ([a-z]\\S*)"_s)) {
        const QString below = (command + u' ' + name).trimmed();
        commands << below << commandsBelow(below);
    }
    return commands;
}

} // namespace

void tst_manual::refersOnlyToWhatExists_data()
{
    addPages({u"manual.htm"_s, u"manual/en.htm"_s, u"manual/fr.htm"_s});
}

void tst_manual::refersOnlyToWhatExists()
{
    QFETCH(QString, page);
    const QString text = read(page);
    const QDir folder = QFileInfo(pathOf(page)).dir();
    const QStringList links = matches(text, u"href=\"(.*?)\""_s);
    QVERIFY(links.size() > 20);
    for (const QString& link : links) {
        const QString file = link.section(u'#', 0, 0);
        const QString anchor = link.section(u'#', 1);
        const QString target = file.isEmpty() ? pathOf(page) : folder.filePath(file);
        QVERIFY2(QFileInfo(target).isFile(), qPrintable(link));
        const QString targetText = QString::fromUtf8(readWholeFile(target));
        QVERIFY2(anchor.isEmpty() || targetText.contains("<a name=\""_L1 + anchor + u'"'), qPrintable(link));
    }
    for (const QString& image : matches(text, u"<img[^>]* src=\"(.*?)\""_s))
        QVERIFY2(QFileInfo(folder.filePath(image)).isFile(), qPrintable(image));
    QVERIFY(!text.contains("{{"_L1) && !text.contains("}}"_L1));
}

void tst_manual::explainsEveryMessage_data()
{
    addPages({u"manual/en.htm"_s, u"manual/fr.htm"_s});
}

void tst_manual::explainsEveryMessage()
{
    QFETCH(QString, page);
    const QStringList explained =
        matches(read(page), u"<tr><td><a name=\"(M\\w+)\">\\1</a></td><td>[^<]+</td><td>[^<]+</td></tr>"_s);
    QStringList codes;
    for (const QStringList& row : readSeparatedValues(u"" VELMORA_SOURCE "/data/texts.csv"_s))
        if (row[0].contains(QRegularExpression(u"^M\\d"_s)))
            codes << row[0];
    for (const QString& code : codes)
        QVERIFY2(explained.contains(code),
                 qPrintable(code + " is not explained in data/manual/messages.csv"_L1));
    QCOMPARE(explained, codes);
}

void tst_manual::mentionsEveryCommandAndOption_data()
{
    addPages({u"manual/en.htm"_s, u"manual/fr.htm"_s});
}

void tst_manual::mentionsEveryCommandAndOption()
{
    QFETCH(QString, page);
    const QString text = read(page);
    const QStringList commands = QStringList(QString()) + commandsBelow({});
    QVERIFY(commands.contains(u"phonebook export"_s));
    for (const QString& command : commands) {
        // A command that others stand below is none by itself.
        const bool complete = !commands.contains(QRegularExpression(u'^' + command + " .*"_L1));
        QVERIFY2(!complete || command.isEmpty() || text.contains("<code>"_L1 + command + "</code>"_L1),
                 qPrintable(command));
        for (const QString& option : matches(helpOf(command), u"(?m)^  (?:-\\w,)?(--[a-z-]+)"_s))
            QVERIFY2(text.contains(QRegularExpression("<code>"_L1 + option + "[< ]"_L1)),
                     qPrintable(command + u' ' + option));
    }
}

void tst_manual::keepsFrenchPunctuationTogether()
{
    static const QRegularExpression code(u"<pre>.*?</pre>|<code>.*?</code>"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    static const QString parted = u"(.{0,20}[ \\n][:;!?»]|« )"_s;
    QCOMPARE(matches(read(u"manual/fr.htm"_s).replace(code, u"code"_s), parted).join(u" | "_s), QString());
}

void tst_manual::refusesBrokenTemplates_data()
{
    columns<QString, QString>("page", "failure");
    row("placeholder", "<p>\n{{NO_SUCH_TEXT}}",
        "manual-en.htm: line 2: there is no text for {{NO_SUCH_TEXT}}");
    row("image", "<img src=\"missing.png\">", "missing.png: No such file or directory");
}

void tst_manual::refusesBrokenTemplates()
{
    QFETCH(QString, page);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"manual"_s));
    writeWholeFile(folder.filePath(u"texts.csv"_s), "code;EN\n");
    writeWholeFile(folder.filePath(u"manual/messages.csv"_s), "code;EN\n");
    writeWholeFile(folder.filePath(u"manual/manual-en.htm"_s), page.toUtf8());
    QString failure;
    try {
        writeManual(folder.path(), folder.path(), folder.path());
    } catch (const FileError& error) {
        failure = error.path().section(u'/', -1) + ": "_L1 + error.description();
    }
    QTEST(failure, "failure");
}

QTEST_GUILESS_MAIN(tst_manual)
#include "tst_manual.moc"
