#include "factory/manual.h"

#include "factory/markdown.h"
#include "files/file_error.h"
#include "files/separated_values.h"
#include "files/whole_file.h"

#include <QDir>
#include <QHash>
#include <QRegularExpression>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// A table of texts: the code in the first column, then a column for each language.
using TextTable = QList<QStringList>;

/// The text of a placeholder; nothing where the name is not known.
using Lookup = std::function<std::optional<QString>(const QString& name)>;

QString readTemplate(const QString& path)
{
    return QString::fromUtf8(readWholeFile(path));
}

/// The template with each placeholder replaced, which stands in double braces.
QString expand(const QString& path, const QString& text, const Lookup& lookup)
{
    static const QRegularExpression placeholder(u"\\{\\{(.*?)\\}\\}"_s);
    QString expanded;
    qsizetype end = 0;
    for (const QRegularExpressionMatch& match : placeholder.globalMatch(text)) {
        const std::optional<QString> replacement = lookup(match.captured(1));
        if (!replacement) {
            const qsizetype line = text.first(match.capturedStart()).count(u'\n') + 1;
            throw FileError(
                path, u"line %1: there is no text for %2"_s.arg(QString::number(line), match.captured()));
        }
        expanded += text.sliced(end, match.capturedStart() - end) + *replacement;
        end = match.capturedEnd();
    }
    return expanded + text.sliced(end);
}

/// A caption as running text names it: without the mark of its key and the colon before a field.
QString caption(QString text)
{
    static const QRegularExpression colon(u"\\s*:$"_s);
    return text.remove(u'&').remove(colon).toHtmlEscaped();
}

/// A text whose double punctuation no line end parts from the word before it, as French has it.
QString keptTogether(QString text)
{
    static const QRegularExpression blank(u" (?=[:;!?])"_s);
    return text.replace(blank, QString(QChar::Nbsp));
}

QHash<QString, QString> textsOf(const TextTable& table, qsizetype language)
{
    QHash<QString, QString> texts;
    for (const QStringList& row : table.sliced(1))
        texts.insert(row[0], keptTogether(row[language]));
    return texts;
}

/// The rows of all messages: code, text, and what it means. A message without an explanation gets an empty
/// one.
QString messageRows(const TextTable& texts, const QHash<QString, QString>& explanations, qsizetype language)
{
    static const QRegularExpression message(u"^M\\d"_s);
    QString rows;
    for (const QStringList& row : texts.sliced(1))
        if (message.match(row[0]).hasMatch())
            rows += u"<tr><td><a name=\"%1\">%1</a></td><td>%2</td><td>%3</td></tr>\n"_s.arg(
                row[0], keptTogether(row[language].trimmed()).toHtmlEscaped(),
                explanations.value(row[0]).toHtmlEscaped());
    return rows;
}

/// Links to the second-level headings of a page, which is the file `target`.
QString contentsOf(const QString& page, const QString& target)
{
    static const QRegularExpression heading(u"<h2><a name=\"(.+?)\">(.*?)</a></h2>"_s);
    QString list = u"<ul>\n"_s;
    for (const QRegularExpressionMatch& match : heading.globalMatch(page))
        list += u"<li><a href=\"%1#%2\">%3</a></li>\n"_s.arg(target, match.captured(1), match.captured(2));
    return list + "</ul>"_L1;
}

void copyImages(const QString& page, const QString& from, const QString& to)
{
    static const QRegularExpression image(u"<img[^>]* src=\"(.+?)\""_s);
    for (const QRegularExpressionMatch& match : image.globalMatch(page))
        writeWholeFile(to + u'/' + match.captured(1), readWholeFile(from + u'/' + match.captured(1)));
}

/// What the pages are made of, read once.
struct Sources {
    QString folder;
    TextTable texts;
    TextTable explanations;
};

Sources readSources(const QString& dataFolder)
{
    const QString folder = dataFolder + "/manual"_L1;
    const QString explanationPath = folder + "/messages.csv"_L1;
    const Sources sources{folder, readSeparatedValues(dataFolder + "/texts.csv"_L1),
                          readSeparatedValues(explanationPath)};
    if (sources.explanations.value(0) != sources.texts.value(0))
        throw FileError(explanationPath, u"its heading is not that of texts.csv"_s);
    return sources;
}

/// The page of a language, which is a column of the texts.
QString languagePage(const Sources& sources, qsizetype language)
{
    const QString path = sources.folder + "/manual-"_L1 + sources.texts[0][language].toLower() + ".htm"_L1;
    const QString text = readTemplate(path);
    const QHash<QString, QString> captions = textsOf(sources.texts, language);
    return expand(path, text, [&](const QString& name) -> std::optional<QString> {
        if (name == "contents"_L1)
            return contentsOf(text, {});
        if (name == "messages"_L1)
            return messageRows(sources.texts, textsOf(sources.explanations, language), language);
        return captions.contains(name) ? std::optional(caption(captions[name])) : std::nullopt;
    });
}

/// The page where the manual begins. The names of its placeholders are the keys of `contents`.
QString firstPage(const Sources& sources, const QHash<QString, QString>& contents)
{
    const QString path = sources.folder + "/manual.htm"_L1;
    return expand(path, readTemplate(path), [&](const QString& name) -> std::optional<QString> {
        return contents.contains(name) ? std::optional(contents[name]) : std::nullopt;
    });
}

/// Where a link of a page leads from the folder of the Markdown pages.
QString targetInDocs(const QString& target)
{
    if (target.startsWith(u'#'))
        return target;
    if (target == "../manual.htm"_L1)
        return u"../README.md"_s;
    if (target.endsWith(".htm"_L1))
        return "manual-"_L1 + target.chopped(4) + ".md"_L1;
    return "images/"_L1 + target;
}

} // namespace

void writeManual(const QString& dataFolder, const QString& imageFolder, const QString& outputFolder)
{
    const Sources sources = readSources(dataFolder);
    const QString pageFolder = outputFolder + "/manual"_L1;
    QDir().mkpath(pageFolder);
    QHash<QString, QString> contents;
    for (qsizetype language = 1; language < sources.texts[0].size(); ++language) {
        const QString name = sources.texts[0][language].toLower();
        const QString page = languagePage(sources, language);
        copyImages(page, imageFolder, pageFolder);
        writeWholeFile(pageFolder + u'/' + name + ".htm"_L1, page.toUtf8());
        contents.insert("contents_"_L1 + name, contentsOf(page, "manual/"_L1 + name + ".htm"_L1));
    }
    // Last, since its time is for the build that of the whole manual.
    writeWholeFile(outputFolder + "/manual.htm"_L1, firstPage(sources, contents).toUtf8());
}

void writeManualAsMarkdown(const QString& dataFolder, const QString& docsFolder)
{
    const Sources sources = readSources(dataFolder);
    const QString origin =
        u"<!-- Made from data/manual and data/texts.csv by the target manual_pages. -->\n\n"_s;
    for (qsizetype language = 1; language < sources.texts[0].size(); ++language)
        writeWholeFile(docsFolder + "/manual-"_L1 + sources.texts[0][language].toLower() + ".md"_L1,
                       (origin + markdownOf(languagePage(sources, language), targetInDocs)).toUtf8());
}

} // namespace velmora
