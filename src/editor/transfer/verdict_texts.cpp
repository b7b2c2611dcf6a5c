#include "editor/transfer/verdict_texts.h"

#include "common/MMain.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Old and new value; nothing stands for one that is missing.
QString shownChange(const QString& before, const QString& after)
{
    const QString from = before.isNull() ? QString() : u'"' + before + "\" "_L1;
    const QString to = after.isNull() ? QString() : " \""_L1 + after + u'"';
    return from + "->"_L1 + to;
}

} // namespace

QString VerdictTexts::text(const Note& note)
{
    const QStringList& about = note.about;
    if (note.code.isEmpty())
        return about.value(0);
    const QString unfilled = u"$$"_s;
    if (!m_messages.contains(note.code))
        m_messages.insert(note.code, m_main.messageLine(note.code, unfilled));
    QString message = m_messages.value(note.code);
    switch (about.size()) {
    case 0:
        return message;
    case 1:
        return message.replace(unfilled, about[0]);
    case 2:
        return message.arg(about[0], about[1]);
    case 3:
        return message.arg(about[0], about[1], about[2]);
    default:
        return message.arg(about[0], about[1], about[2], about[3]);
    }
}

QString VerdictTexts::details(const CheckedLine& line)
{
    QStringList parts;
    for (qsizetype column = 0; column < m_columns.size(); ++column)
        if (line.changes(column))
            parts << change().arg(m_columns[column], shownChange(line.before[column], line.values[column]));
    QStringList sentences;
    for (const Note& note : line.notes)
        sentences << text(note);
    if (!sentences.isEmpty())
        parts << sentences.join(u' ');
    return parts.join("; "_L1);
}

/// A column and what becomes of it: languages differ in their colons.
const QString& VerdictTexts::change()
{
    if (m_change.isEmpty())
        m_change = m_main.textOr(u"IMPORT_CHANGE"_s, u"%1: %2"_s);
    return m_change;
}

QString VerdictTexts::counts(const CheckedLines& lines)
{
    const auto number = [&lines](Verdict verdict) { return QString::number(count(lines, verdict)); };
    return text(
        {u"M336"_s,
         {number(Verdict::New), number(Verdict::Changed), number(Verdict::Same), number(Verdict::Refused)}});
}

QString VerdictTexts::furtherColumns(const TableFile& file)
{
    // Of a wrong file there may be a thousand, each as long as a book.
    constexpr qsizetype mostNames = 12;
    constexpr qsizetype mostCharacters = 40;
    QStringList names;
    for (const QString& name : file.further.first(std::min(mostNames, file.further.size())))
        names << (name.size() > mostCharacters ? name.first(mostCharacters) + u'…' : name);
    if (file.further.size() > mostNames)
        names << u"…"_s;
    return names.isEmpty() ? QString() : text({u"M327"_s, {names.join(", "_L1)}});
}

QString keyText(const TableDescription& table, const CheckedLine& line)
{
    return line.values.isEmpty() ? QString() : keyOf(table, line.values).join(", "_L1);
}

QString onOneLine(const QString& text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar each : text) {
        if (each == u'\\')
            line += "\\\\"_L1;
        else if (each == u'\t')
            line += "\\t"_L1;
        else if (each == u'\n')
            line += "\\n"_L1;
        else if (each == u'\r')
            line += "\\r"_L1;
        else
            line += each;
    }
    return line;
}

} // namespace velmora
