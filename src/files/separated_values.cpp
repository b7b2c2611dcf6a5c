#include "files/separated_values.h"

#include "files/file_error.h"
#include "files/whole_file.h"

#include <csv.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

using Reason = SeparatedValuesError::Reason;

/// How many bytes are read before their rows are handed on.
constexpr qsizetype bytesTogether = 0x10000;

const char* wordsFor(Reason reason)
{
    switch (reason) {
    case Reason::MisplacedQuote:
        return "a quote stands in an unquoted field, or ends before its field does";
    case Reason::OpenQuote:
        return "a quote is not closed";
    case Reason::LongField:
        return "a field is too long, or its quote is not closed";
    case Reason::ManyFields:
        return "there are too many fields";
    }
    return "";
}

/// How many lines end within the field.
qsizetype lineBreaks(QByteArrayView field)
{
    qsizetype breaks = 0;
    for (qsizetype place = 0; place < field.size(); ++place) {
        const bool returnsToo = place > 0 && field[place - 1] == '\r';
        breaks += field[place] == '\r' || (field[place] == '\n' && !returnsToo) ? 1 : 0;
    }
    return breaks;
}

} // namespace

/// One reading by the library, whose calls must not be left by an exception: so rows and failures are kept
/// until they are over.
class SeparatedValuesParser {
public:
    explicit SeparatedValuesParser(char separator)
    {
        csv_init(&m_parser, CSV_STRICT | CSV_STRICT_FINI | CSV_REPALL_NL | CSV_EMPTY_IS_NULL);
        csv_set_delim(&m_parser, static_cast<unsigned char>(separator));
        csv_set_space_func(&m_parser, [](unsigned char) { return 0; }); // blanks belong to their field
        csv_set_realloc_func(&m_parser, [](void* buffer, size_t size) {
            return size > size_t{mostFieldBytes} ? nullptr : std::realloc(buffer, size);
        });
    }
    ~SeparatedValuesParser() { csv_free(&m_parser); }
    SeparatedValuesParser(const SeparatedValuesParser&) = delete;
    SeparatedValuesParser& operator=(const SeparatedValuesParser&) = delete;

    void read(QByteArrayView bytes)
    {
        const auto size = static_cast<size_t>(bytes.size());
        if (csv_parse(&m_parser, bytes.data(), size, takeField, takeRowEnd, this) != size)
            fail(csv_error(&m_parser) == CSV_EPARSE ? Reason::MisplacedQuote : Reason::LongField);
    }

    void end()
    {
        if (!m_failure && csv_fini(&m_parser, takeField, takeRowEnd, this) != 0)
            fail(Reason::OpenQuote);
    }

    std::vector<SeparatedRow> takeRows() { return std::exchange(m_rows, {}); }
    const std::optional<SeparatedValuesError>& failure() const { return m_failure; }

private:
    static void takeField(void* bytes, size_t size, void* parser)
    {
        const QByteArrayView field(static_cast<const char*>(bytes), static_cast<qsizetype>(size));
        static_cast<SeparatedValuesParser*>(parser)->append(field, bytes == nullptr);
    }

    static void takeRowEnd(int character, void* parser)
    {
        static_cast<SeparatedValuesParser*>(parser)->endRow(character);
    }

    void append(QByteArrayView field, bool missing)
    {
        if (m_row.size() == 0)
            m_row.m_line = m_line;
        if (m_row.size() == mostFields)
            fail(Reason::ManyFields);
        if (m_failure)
            return;
        m_line += lineBreaks(field);
        m_row.m_fields << SeparatedRow::Part{m_row.m_bytes.size(), field.size(), missing};
        m_row.m_bytes.append(field);
        m_afterReturn = false;
    }

    void endRow(int character)
    {
        if (m_row.size() > 0 && !m_failure)
            m_rows.push_back(std::move(m_row));
        m_row = {};
        // CR LF is the end of one line.
        m_line += character == CSV_LF && m_afterReturn ? 0 : 1;
        m_afterReturn = character == CSV_CR;
    }

    void fail(Reason reason)
    {
        if (!m_failure)
            m_failure.emplace(reason, m_line);
    }

    csv_parser m_parser = {};
    std::vector<SeparatedRow> m_rows;
    SeparatedRow m_row;
    qsizetype m_line = 1;
    bool m_afterReturn = false;
    std::optional<SeparatedValuesError> m_failure;
};

namespace {

QStringList texts(const SeparatedRow& row)
{
    QStringList texts;
    for (qsizetype place = 0; place < row.size(); ++place)
        texts << QString::fromUtf8(row.field(place));
    return texts;
}

QByteArray quoted(QByteArray field)
{
    return '"' + field.replace('"', "\"\"") + '"';
}

bool needsQuotes(const QByteArray& field, char separator)
{
    // Blanks at the ends are taken away by some readers.
    return field.isEmpty() || field.startsWith(' ') || field.endsWith(' ') ||
           std::any_of(field.begin(), field.end(), [separator](char each) {
               return each == separator || each == '"' || each == '\r' || each == '\n' || each == '\t';
           });
}

} // namespace

SeparatedValuesError::SeparatedValuesError(Reason reason, qsizetype line)
    : std::runtime_error("line " + std::to_string(line) + ": " + wordsFor(reason)),
      m_reason(reason),
      m_line(line)
{
}

void readSeparatedRows(QByteArrayView text, char separator,
                       const std::function<bool(const SeparatedRow&)>& take)
{
    SeparatedValuesParser parser(separator);
    for (qsizetype place = 0; place < text.size() && !parser.failure(); place += bytesTogether) {
        const QByteArrayView some = text.sliced(place, std::min(bytesTogether, text.size() - place));
        parser.read(some);
        if (place + some.size() == text.size())
            parser.end();
        for (const SeparatedRow& row : parser.takeRows())
            if (!take(row))
                return;
    }
    if (parser.failure())
        throw SeparatedValuesError(*parser.failure());
}

QList<QStringList> readSeparatedValues(const QString& path)
{
    QList<QStringList> rows;
    try {
        readSeparatedRows(readWholeFile(path), ';', [&](const SeparatedRow& row) {
            rows << texts(row);
            if (rows.last().size() == rows.first().size())
                return true;
            throw FileError(path, u"line %1 has %2 fields where the heading has %3"_s.arg(row.line())
                                      .arg(rows.last().size())
                                      .arg(rows.first().size()));
        });
    } catch (const SeparatedValuesError& error) {
        throw FileError(path, QString::fromLatin1(error.what()));
    }
    return rows;
}

void appendSeparatedRow(QByteArray& bytes, const QStringList& fields, char separator)
{
    for (qsizetype place = 0; place < fields.size(); ++place) {
        if (place > 0)
            bytes += separator;
        const QByteArray field = fields[place].toUtf8();
        if (!fields[place].isNull())
            bytes += needsQuotes(field, separator) ? quoted(field) : field;
    }
    bytes += "\r\n";
}

} // namespace velmora
