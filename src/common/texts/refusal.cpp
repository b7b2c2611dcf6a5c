#include "common/texts/refusal.h"

#include "common/MMain.h"
#include "common/texts/built_in_texts.h"
#include "common/texts/schema_captions.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

using Reason = DatabaseError::Reason;

/// The refused statement, as far as its text tells.
struct Statement {
    QString table;
    bool isDeletion = false;

    explicit Statement(const QString& text)
    {
        static const QRegularExpression beginning(u"^\\s*(INSERT INTO|UPDATE|DELETE FROM)\\s+(\\w+)"_s,
                                                  QRegularExpression::CaseInsensitiveOption);
        const QRegularExpressionMatch match = beginning.match(text);
        table = match.captured(2);
        isDeletion = match.capturedView(1).startsWith(u'D', Qt::CaseInsensitive);
    }
};

bool sameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

/// A table with the values of one of its records; without values where they are not known.
class Record {
public:
    Record(MMain& main, const QString& table, const QStringList& values)
        : m_main(main), m_columns(main.connection.columns(table)), m_values(values)
    {
        if (m_values.size() != m_columns.size())
            m_values.clear();
    }

    bool hasValues() const { return !m_values.isEmpty(); }

    Column column(const QString& name) const
    {
        const auto found = place(name);
        return found == m_columns.end() ? Column{name, 0, 0, {}} : *found;
    }

    QString caption(const QString& name) const { return columnCaption(m_main, column(name)); }

    QStringList values(const QStringList& names) const
    {
        QStringList values;
        for (const QString& name : names)
            values << m_values.value(place(name) - m_columns.begin());
        return values;
    }

    /// The captions of the columns, with their values where those are known.
    QString text(const QStringList& names) const
    {
        QStringList texts;
        for (const QString& name : names)
            texts << caption(name) + (hasValues() ? u' ' + values({name}).first() : QString());
        return texts.join(", "_L1);
    }

private:
    QList<Column>::const_iterator place(const QString& name) const
    {
        return std::find_if(m_columns.begin(), m_columns.end(),
                            [&name](const Column& column) { return sameName(column.name, name); });
    }

    MMain& m_main;
    const QList<Column> m_columns;
    QStringList m_values;
};

bool isThere(MMain& main, const QString& table, const QStringList& columns, const QStringList& values)
{
    return !main.connection
                .select("SELECT 1 FROM "_L1 + table + " WHERE "_L1 + columns.join(" = ? AND "_L1) +
                            " = ? LIMIT 1"_L1,
                        values)
                .eof();
}

/// The references of which `asked` holds; where it holds of none of them, all.
template <typename Asked> QList<Reference> those(const QList<Reference>& references, const Asked& asked)
{
    QList<Reference> found;
    std::copy_if(references.begin(), references.end(), std::back_inserter(found), asked);
    return found.isEmpty() ? references : found;
}

/// The first of the shortest: what a longer key lacks often lacks its parts too.
Reference shortest(const QList<Reference>& references)
{
    return *std::min_element(references.begin(), references.end(),
                             [](const Reference& one, const Reference& other) {
                                 return one.columns.size() < other.columns.size();
                             });
}

QString tableCaptions(MMain& main, const QStringList& tables)
{
    QStringList captions;
    for (const QString& table : tables)
        captions << tableCaption(main, table);
    captions.removeDuplicates();
    return captions.join(", "_L1);
}

/// Which tables still refer to the record.
QString stillUsed(MMain& main, QList<Reference> references, const Record& record)
{
    if (record.hasValues())
        references = those(references, [&](const Reference& one) {
            return isThere(main, one.table, one.columns, record.values(one.keys));
        });
    QStringList tables;
    for (const Reference& one : references)
        tables << one.table;
    return main.messageLine(u"M223"_s, tableCaptions(main, tables));
}

/// Which record is missing that this one refers to.
QString missingTarget(MMain& main, QList<Reference> references, const Record& record)
{
    if (record.hasValues())
        references = {shortest(those(references, [&](const Reference& one) {
            return !isThere(main, one.target, one.keys, record.values(one.columns));
        }))};
    QStringList targets;
    QStringList fields;
    for (const Reference& one : references) {
        targets << one.target;
        fields << record.text(one.columns);
    }
    fields.removeDuplicates();
    return main.messageLine(u"M224"_s).arg(tableCaptions(main, targets), fields.join(", "_L1));
}

/// What is wrong with the references of the record; an empty text where the schema has none.
QString brokenReference(MMain& main, const DatabaseError::Cause& cause, const Statement& statement,
                        const QStringList& values)
{
    // A changed key, too, may be used by other tables, which the engine then names.
    const bool used =
        statement.isDeletion || (!cause.table.isEmpty() && !sameName(cause.table, statement.table));
    QList<Reference> references = main.connection.references();
    references.removeIf(
        [&](const Reference& one) { return !sameName(used ? one.target : one.table, statement.table); });
    if (references.isEmpty())
        return {};
    const QList<Reference> told = those(references, [&cause](const Reference& one) {
        return sameName(one.table, cause.table) && sameName(one.columns.join(", "_L1), cause.column);
    });
    const Record record(main, statement.table, values);
    return used ? stillUsed(main, record.hasValues() ? references : told, record)
                : missingTarget(main, record.hasValues() ? references : told, record);
}

/// What is wrong with the value of one field; an empty text where the schema lacks it.
QString brokenField(MMain& main, const DatabaseError::Cause& cause, const Statement& statement)
{
    // A change may go on into the tables that refer to this one.
    const Record record(main, cause.table.isEmpty() ? statement.table : cause.table, {});
    const QString caption = record.caption(cause.column);
    if (cause.reason == Reason::Required)
        return main.messageLine(u"M226"_s, caption);
    const int width = record.column(cause.column).width;
    return width == 0 ? QString() : main.messageLine(u"M225"_s).arg(caption, QString::number(width));
}

/// The reason in words of ours; an empty text where there are none.
QString ownWords(MMain& main, const DatabaseError& error, const QStringList& values)
{
    const DatabaseError::Cause& cause = error.cause();
    const Statement statement(error.statement());
    switch (cause.reason) {
    case Reason::DuplicateKey:
        return main.messageLine(u"M222"_s);
    case Reason::ForeignKey:
        return brokenReference(main, cause, statement, values);
    case Reason::TooLong:
    case Reason::Required:
        return brokenField(main, cause, statement);
    case Reason::Busy:
    case Reason::ConnectionLost:
        return unreachableReason(main, error);
    case Reason::TransactionLost:
    case Reason::Other:
        break;
    }
    return {};
}

} // namespace

QString unreachableReason(const MMain& main, const DatabaseError& error)
{
    const bool unreachable = error.reason() == Reason::Busy || error.reason() == Reason::ConnectionLost;
    return unreachable ? builtInText(u"M227"_s, main.language) : QString();
}

QString refusalReason(MMain& main, const DatabaseError& error, const QStringList& record)
{
    try {
        const QString words = ownWords(main, error, record);
        return words.isEmpty() ? main.messageLine(u"M235"_s, error.description()) : words;
    } catch (const DatabaseError&) {
        return error.description();
    }
}

} // namespace velmora
