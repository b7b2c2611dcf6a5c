#include "factory/markdown.h"

#include <QHash>
#include <QRegularExpression>
#include <QStringList>

#include <stdexcept>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString attribute(const QString& attributes, const QString& name)
{
    const QRegularExpression pattern(u"\\b%1=\"(.*?)\""_s.arg(name));
    return pattern.match(attributes).captured(1);
}

/// Code as it is typed: there, Markdown reads no entities.
QString unescaped(QString code)
{
    return code.replace("&lt;"_L1, "<"_L1)
        .replace("&gt;"_L1, ">"_L1)
        .replace("&quot;"_L1, "\""_L1)
        .replace("&amp;"_L1, "&"_L1);
}

/// Text that means nothing else in Markdown. Entities mean the same there.
QString literal(QString text)
{
    static const QRegularExpression special(u"([\\\\`*_\\[\\]])"_s);
    // Two dollars would begin a formula.
    static const QRegularExpression dollars(u"(\\$\\$[A-Za-z0-9]*(?:,[0-9]+)*)"_s);
    return text.replace(special, u"\\\\1"_s).replace(dollars, u"`\\1`"_s);
}

/// On one line. A no-break space is no blank here.
QString onOneLine(QString text)
{
    static const QRegularExpression blanks(u"[ \\r\\n\\t]+"_s);
    static const QRegularExpression ends(u"^ | $"_s);
    return text.replace(blanks, u" "_s).remove(ends);
}

class Converter {
public:
    explicit Converter(const LinkTarget& target) : m_target(target) {}

    QString convert(const QString& body)
    {
        static const QRegularExpression token(u"<(/?)(\\w+)([^>]*)>|[^<]+"_s);
        for (const QRegularExpressionMatch& match : token.globalMatch(body)) {
            const QString element = match.captured(2);
            if (element.isEmpty())
                m_text += m_inCode ? match.captured() : literal(match.captured());
            else if (match.captured(1).isEmpty())
                open(element, match.captured(3));
            else
                close(element);
        }
        endBlock();
        return m_blocks.join("\n\n"_L1) + u'\n';
    }

private:
    void open(const QString& element, const QString& attributes)
    {
        if (element == "a"_L1)
            openAnchor(attributes);
        else if (element == "img"_L1)
            m_text += "!["_L1 + attribute(attributes, u"alt"_s) + "]("_L1 +
                      m_target(attribute(attributes, u"src"_s)) + u')';
        else if (element == "code"_L1)
            m_inCode = true, m_text += m_codeMark;
        else if (const QString mark = inlineMark(element, false); !mark.isEmpty())
            m_text += mark;
        else
            openBlock(element);
    }

    void close(const QString& element)
    {
        if (element == "a"_L1)
            m_text += std::exchange(m_linkEnd, {});
        else if (element == "code"_L1)
            closeCode();
        else if (const QString mark = inlineMark(element, true); !mark.isEmpty())
            m_text += mark;
        else
            closeBlock(element);
    }

    static QString inlineMark(const QString& element, bool closing)
    {
        if (element == "sup"_L1)
            return closing ? u"</sup>"_s : u"<sup>"_s;
        return element == "b"_L1 ? u"**"_s : element == "i"_L1 ? u"*"_s : QString();
    }

    void openAnchor(const QString& attributes)
    {
        if (const QString name = attribute(attributes, u"name"_s); !name.isEmpty()) {
            m_text += "<a name=\""_L1 + name + "\"></a>"_L1;
            return;
        }
        m_text += u'[';
        m_linkEnd = "]("_L1 + m_target(attribute(attributes, u"href"_s)) + u')';
    }

    void closeCode()
    {
        const qsizetype start = m_text.lastIndexOf(m_codeMark);
        m_text = m_text.first(start) + u'`' + unescaped(m_text.sliced(start + 1)) + u'`';
        m_inCode = false;
    }

    void openBlock(const QString& element)
    {
        static const QHash<QString, QString> marks = {
            {u"h1"_s, u"# "_s}, {u"h2"_s, u"## "_s}, {u"h3"_s, u"### "_s}, {u"p"_s, {}},
            {u"table"_s, {}},   {u"pre"_s, {}},      {u"ul"_s, {}},        {u"ol"_s, {}},
        };
        if (element == "tr"_L1)
            m_cells.clear();
        else if (element == "li"_L1)
            m_text = m_item == 0 ? u"- "_s : QString::number(m_item++) + ". "_L1;
        else if (element == "td"_L1 || element == "th"_L1)
            m_text.clear();
        else if (!marks.contains(element))
            throw std::invalid_argument("Markdown has nothing for <" + element.toStdString() + '>');
        else {
            endBlock();
            m_text = marks.value(element);
            m_inCode = element == "pre"_L1;
            m_item = element == "ol"_L1 ? 1 : 0;
        }
    }

    void closeBlock(const QString& element)
    {
        if (element == "td"_L1 || element == "th"_L1)
            m_cells << onOneLine(m_text).replace(u'|', "\\|"_L1);
        else if (element == "tr"_L1)
            endRow();
        else if (element == "li"_L1)
            m_lines << onOneLine(m_text);
        else if (element == "pre"_L1)
            m_lines << "```\n"_L1 + unescaped(m_text).trimmed() + "\n```"_L1;
        else {
            endBlock();
            return;
        }
        m_text.clear();
        if (element == "pre"_L1) {
            m_inCode = false;
            endBlock();
        }
    }

    /// The first row of a table holds its headings.
    void endRow()
    {
        m_lines << "| "_L1 + m_cells.join(" | "_L1) + " |"_L1;
        if (m_lines.size() == 1)
            m_lines << u'|' + u"---|"_s.repeated(m_cells.size());
    }

    void endBlock()
    {
        if (const QString text = onOneLine(std::exchange(m_text, {})); !text.isEmpty())
            m_lines << text;
        if (const QStringList lines = std::exchange(m_lines, {}); !lines.isEmpty())
            m_blocks << lines.join(u'\n');
    }

    /// Where a piece of code begins, until it is whole.
    static constexpr QChar m_codeMark = QChar::ObjectReplacementCharacter;

    const LinkTarget& m_target;
    /// What is done; the lines of the list, table or paragraph that is being read; its unfinished line.
    QStringList m_blocks;
    QStringList m_lines;
    QString m_text;
    QStringList m_cells;
    QString m_linkEnd;
    /// The next item's number; 0 in a list without numbers.
    int m_item = 0;
    bool m_inCode = false;
};

} // namespace

QString markdownOf(const QString& html, const LinkTarget& target)
{
    const QString body = html.section("<body>"_L1, 1).section("</body>"_L1, 0, 0);
    return Converter(target).convert(body);
}

} // namespace velmora
