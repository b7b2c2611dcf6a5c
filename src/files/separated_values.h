// Separated values as RFC 4180 has them: fields apart by a separator, quoted where they must be.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <stdexcept>

namespace velmora {

/// The longest field that a reading takes, in bytes: an open quote would make one of the whole rest.
constexpr qsizetype mostFieldBytes = 0x10000;
/// The most fields of a row that a reading takes.
constexpr qsizetype mostFields = 1000;

/// A row. It holds its fields one behind the other, since a file has hundreds of thousands of them.
class SeparatedRow {
public:
    /// The line of the text on which it begins.
    qsizetype line() const { return m_line; }
    qsizetype size() const { return m_fields.size(); }
    /// A field without anything in it is null; two quotes alone make it empty. Valid as long as the row is.
    QByteArrayView field(qsizetype place) const
    {
        const Part& part = m_fields[place];
        return part.missing ? QByteArrayView() : QByteArrayView(m_bytes).sliced(part.begin, part.size);
    }

private:
    friend class SeparatedValuesParser;

    struct Part {
        qsizetype begin = 0;
        qsizetype size = 0;
        bool missing = false;
    };

    qsizetype m_line = 0;
    QByteArray m_bytes;
    QList<Part> m_fields;
};

/// Bytes that are no separated values.
class SeparatedValuesError : public std::runtime_error {
public:
    enum class Reason {
        /// In an unquoted field, or followed by more than a separator.
        MisplacedQuote,
        OpenQuote,
        LongField,
        ManyFields,
    };

    SeparatedValuesError(Reason reason, qsizetype line);

    Reason reason() const { return m_reason; }
    /// The line on which the field begins.
    qsizetype line() const { return m_line; }

private:
    Reason m_reason;
    qsizetype m_line;
};

/// Gives `take` one row after the other until it returns false. Every character counts, blanks at the ends of
/// a field too; an empty line is no row. Throws SeparatedValuesError; the rows before it are given.
void readSeparatedRows(QByteArrayView text, char separator,
                       const std::function<bool(const SeparatedRow&)>& take);

/// The rows of a data file in UTF-8 with ";" between its fields; each has as many fields as the heading line,
/// which comes first. Throws FileError naming the file that is missing or has a broken row.
QList<QStringList> readSeparatedValues(const QString& path);

/// Appends the row in UTF-8, ended by CR LF. A null text becomes an empty field, an empty one two quotes.
void appendSeparatedRow(QByteArray& bytes, const QStringList& fields, char separator);

} // namespace velmora
