// The manual: what its pages refer to, and that they leave nothing out.
#include "factory/manual.h"
#include "factory/markdown.h"
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
    void refersOnlyToWhatExists();
    void explainsEveryMessage();
    void mentionsEveryCommandAndOption();
    void keepsFrenchPunctuationTogether();
    void isMarkdownToo_data();
    void isMarkdownToo();
    void isInTheRepositoryAsTheBuildMakesIt();
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

const QStringList translations = {u"manual/en.htm"_s, u"manual/fr.htm"_s};

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

void tst_manual::refersOnlyToWhatExists()
{
    for (const QString& page : {u"manual.htm"_s, u"manual/en.htm"_s, u"manual/fr.htm"_s}) {
        const QString text = read(page);
        const QDir folder = QFileInfo(pathOf(page)).dir();
        const QStringList links = matches(text, u"href=\"(.*?)\""_s);
        QVERIFY(links.size() > 20);
        for (const QString& link : links) {
            const QString file = link.section(u'#', 0, 0);
            const QString anchor = link.section(u'#', 1);
            const QString target = file.isEmpty() ? pathOf(page) : folder.filePath(file);
            QVERIFY2(QFileInfo(target).isFile(), qPrintable(page + u' ' + link));
            QVERIFY2(anchor.isEmpty() || readWholeFile(target).contains("<a name=\"" + anchor.toUtf8() + '"'),
                     qPrintable(page + u' ' + link));
        }
        for (const QString& image : matches(text, u"<img[^>]* src=\"(.*?)\""_s))
            QVERIFY2(QFileInfo(folder.filePath(image)).isFile(), qPrintable(image));
        QVERIFY(!text.contains("{{"_L1) && !text.contains("}}"_L1));
    }
}

void tst_manual::explainsEveryMessage()
{
    QStringList codes;
    for (const QStringList& row : readSeparatedValues(u"" VELMORA_SOURCE "/data/texts.csv"_s))
        if (row[0].contains(QRegularExpression(u"^M\\d"_s)))
            codes << row[0];
    for (const QString& page : translations) {
        const QStringList explained = matches(
            read(page), u"<tr><td><a name=\"(M\\w+)\">\\1</a></td><td>[^<]+</td><td>[^<]+</td></tr>"_s);
        for (const QString& code : codes)
            QVERIFY2(explained.contains(code),
                     qPrintable(code + " is not explained in data/manual/messages.csv, for "_L1 + page));
        QCOMPARE(explained, codes);
    }
}

void tst_manual::mentionsEveryCommandAndOption()
{
    const QString english = read(translations[0]);
    const QString french = read(translations[1]);
    const auto mentioned = [&](const QString& pattern) {
        const QRegularExpression code("<code>"_L1 + pattern);
        return english.contains(code) && french.contains(code);
    };
    const QStringList commands = QStringList(QString()) + commandsBelow({});
    QVERIFY(commands.contains(u"phonebook export"_s));
    for (const QString& command : commands) {
        // A command that others stand below is none by itself.
        const bool complete = !commands.contains(QRegularExpression(u'^' + command + " .*"_L1));
        QVERIFY2(!complete || command.isEmpty() || mentioned(command + "</code>"_L1), qPrintable(command));
        for (const QString& option : matches(helpOf(command), u"(?m)^  (?:-\\w,)?(--[a-z-]+)"_s))
            QVERIFY2(mentioned(option + "[< ]"_L1), qPrintable(command + u' ' + option));
    }
}

void tst_manual::keepsFrenchPunctuationTogether()
{
    static const QRegularExpression code(u"<pre>.*?</pre>|<code>.*?</code>"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    static const QString parted = u"(.{0,20}[ \\n][:;!?»]|« )"_s;
    QCOMPARE(matches(read(u"manual/fr.htm"_s).replace(code, u"code"_s), parted).join(u" | "_s), QString());
}

void tst_manual::isMarkdownToo_data()
{
    columns<QString, QString>("html", "markdown");
    row("what Markdown would read as its own", "<p>a * b_c [User\n&lt;x&gt; M$$, $$P,2,2</p>",
        "a \\* b\\_c \\[User &lt;x&gt; M`$$`, `$$P,2,2`\n");
    row("code", "<p>Type <code>'&amp;A_B'\n$$P</code></p>\n<pre>\na  *\n  &lt;b\n</pre>",
        "Type `'&A_B' $$P`\n\n```\na  *\n  <b\n```\n");
    row("links", "<h2><a name=\"x\">X</a></h2>\n<p><a href=\"#x\"><b>X</b></a> <img src=\"i\" alt=\"I\"></p>",
        "## <a name=\"x\"></a>X\n\n[**X**](to:#x) ![I](to:i)\n");
    row("lists", "<ul>\n<li>a\n</li></ul><p></p><ol><li>b</li>\n<li>c</li></ol>", "- a\n\n1. b\n2. c\n");
    row("table",
        "<table><tr><th>A</th><th>B</th></tr>\n<tr><td>a|<i>b</i></td><td>2<sup>e</sup></td></tr></table>",
        "| A | B |\n|---|---|\n| a\\|*b* | 2<sup>e</sup> |\n");
}

void tst_manual::isMarkdownToo()
{
    QFETCH(QString, html);
    const auto target = [](const QString& address) { return "to:"_L1 + address; };
    QTEST(markdownOf("<title>t</title><body>"_L1 + html + "</body>"_L1, target), "markdown");
    QVERIFY_THROWS_EXCEPTION(std::invalid_argument, markdownOf(u"<body><form></body>"_s, target));
}

void tst_manual::isInTheRepositoryAsTheBuildMakesIt()
{
    const QTemporaryDir folder;
    writeManualAsMarkdown(u"" VELMORA_SOURCE "/data"_s, folder.path());
    for (const QString& page : {u"/manual-en.md"_s, u"/manual-fr.md"_s})
        QVERIFY2(readWholeFile(u"" VELMORA_SOURCE "/docs"_s + page) == readWholeFile(folder.path() + page),
                 "renew docs/manual-*.md: cmake --build --preset release --target manual_pages");
}

void tst_manual::refusesBrokenTemplates()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"manual"_s));
    for (const QString& table : {u"texts.csv"_s, u"manual/messages.csv"_s})
        writeWholeFile(folder.filePath(table), "code;EN\n");
    const auto failure = [&folder](const QByteArray& page) {
        writeWholeFile(folder.filePath(u"manual/manual-en.htm"_s), page);
        try {
            writeManual(folder.path(), folder.path(), folder.path());
        } catch (const FileError& error) {
            return error.path().section(u'/', -1) + ": "_L1 + error.description();
        }
        return QString();
    };
    QCOMPARE(failure("<p>\n{{NO_SUCH_TEXT}}"),
             u"manual-en.htm: line 2: there is no text for {{NO_SUCH_TEXT}}"_s);
    QVERIFY(failure("<img src=\"missing.png\">")
                .startsWith("missing.png: "_L1)); // and why, in the system's words
}

QTEST_GUILESS_MAIN(tst_manual)
#include "tst_manual.moc"
