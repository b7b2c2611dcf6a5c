#include "editor/transfer/table_file.h"

#include "files/ansi.h"
#include "files/file_error.h"
#include "files/separated_values.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

/// How many bytes of a file are asked for at once.
constexpr qsizetype bytesTogether = 0x100000;

/// Turns fields into texts, in the one encoding of their file.
class Decoder {
public:
    explicit Decoder(QByteArrayView bytes) : m_isUtf8(bytes.isValidUtf8()) {}

    QString text(QByteArrayView field) const
    {
        if (field.isNull())
            return {};
        if (field.isEmpty())
            return u""_s;
        if (!m_isUtf8)
            return decodeAnsi(field.toByteArray());
        // Within a file it is a character as any other, which the conversion would take away.
        return field.startsWith(byteOrderMark)
                   ? QChar(QChar::ByteOrderMark) + QString::fromUtf8(field.sliced(byteOrderMark.size()))
                   : QString::fromUtf8(field);
    }

private:
    bool m_isUtf8;
};

/// The place of the column that a heading names; -1 where it names none.
qsizetype placeOf(const TableDescription& table, const QString& heading)
{
    const auto find = [&](auto member) {
        const auto found =
            std::find_if(table.columns.begin(), table.columns.end(), [&](const TableColumn& column) {
                return QString::compare(column.*member, heading, Qt::CaseInsensitive) == 0;
            });
        return found == table.columns.end() ? -1 : found - table.columns.begin();
    };
    const qsizetype named = find(&TableColumn::name);
    return named >= 0 ? named : find(&TableColumn::caption);
}

/// The first line's fields; none where they can't be told.
QStringList headings(QByteArrayView text, char separator, const Decoder& decoder)
{
    QStringList headings;
    const auto take = [&](const SeparatedRow& row) {
        for (qsizetype field = 0; field < row.size(); ++field)
            headings << decoder.text(row.field(field)).trimmed();
        return false;
    };
    try {
        readSeparatedRows(text, separator, take);
    } catch (const SeparatedValuesError&) {
        // Told by the reading of the whole file.
    }
    return headings;
}

char recognisedSeparator(QByteArrayView text, const TableDescription& table, const Decoder& decoder)
{
    char best = ',';
    std::pair<qsizetype, qsizetype> most;
    for (const char separator : {',', ';', '\t'}) {
        const QStringList names = headings(text, separator, decoder);
        const auto known = std::count_if(names.begin(), names.end(),
                                         [&](const QString& name) { return placeOf(table, name) >= 0; });
        const std::pair<qsizetype, qsizetype> columns(known, names.size());
        if (columns > most) {
            most = columns;
            best = separator;
        }
    }
    return best;
}

bool isEmpty(const SeparatedRow& row)
{
    for (qsizetype field = 0; field < row.size(); ++field)
        if (!row.field(field).isNull())
            return false;
    return true;
}

/// The rows of one file, as they come.
class Reading {
public:
    Reading(const TableDescription& table, const Decoder& decoder) : m_table(table), m_decoder(decoder)
    {
        m_file.held.resize(static_cast<size_t>(table.columns.size()));
    }

    bool take(const SeparatedRow& row)
    {
        if (m_file.fields == 0) {
            takeHeadings(row);
            return true;
        }
        // Spreadsheets write rows that have been emptied, too.
        if (isEmpty(row))
            return true;
        if (m_file.lines.size() == size_t{mostFileLines})
            throw TableFileError({u"M324"_s, {QString::number(mostFileLines)}});
        takeLine(row);
        return true;
    }

    TableFile file()
    {
        // Without any line nothing has asked for them yet.
        requireKeys();
        return std::move(m_file);
    }

private:
    void takeHeadings(const SeparatedRow& row)
    {
        m_file.fields = row.size();
        for (qsizetype field = 0; field < row.size(); ++field) {
            const QString heading = m_decoder.text(row.field(field)).trimmed();
            const qsizetype place = placeOf(m_table, heading);
            m_places.push_back(place);
            if (place < 0 && !heading.isEmpty())
                m_file.further << heading;
            if (place < 0)
                continue;
            if (m_file.held[static_cast<size_t>(place)])
                throw TableFileError({u"M326"_s, {m_table.columns[place].name}});
            m_file.held[static_cast<size_t>(place)] = true;
        }
        requireKeys();
    }

    void requireKeys() const
    {
        QStringList missing;
        for (qsizetype place = 0; place < m_table.columns.size(); ++place)
            if (m_table.columns[place].key && !m_file.held[static_cast<size_t>(place)])
                missing << m_table.columns[place].name;
        if (!missing.isEmpty())
            throw TableFileError({u"M325"_s, {missing.join(", "_L1)}});
    }

    void takeLine(const SeparatedRow& row)
    {
        TableLine line{row.line(), {}, row.size()};
        if (line.fields == m_file.fields) {
            line.values.resize(m_table.columns.size());
            for (qsizetype field = 0; field < line.fields; ++field)
                if (const qsizetype place = m_places[static_cast<size_t>(field)]; place >= 0)
                    line.values[place] = m_decoder.text(row.field(field));
        }
        m_file.lines.push_back(std::move(line));
    }

    const TableDescription& m_table;
    const Decoder& m_decoder;
    std::vector<qsizetype> m_places;
    TableFile m_file;
};

Note noteOf(const SeparatedValuesError& error)
{
    const QString line = QString::number(error.line());
    switch (error.reason()) {
    case SeparatedValuesError::Reason::MisplacedQuote:
        return {u"M322"_s, {line}};
    case SeparatedValuesError::Reason::ManyFields:
        return {u"M323"_s, {line, QString::number(mostFields)}};
    case SeparatedValuesError::Reason::OpenQuote:
    case SeparatedValuesError::Reason::LongField:
        break;
    }
    return {u"M321"_s, {line}};
}

/// Whether the first line is that of a text: not of a program or a picture, nor of two bytes a character.
bool looksLikeText(QByteArrayView bytes)
{
    const qsizetype end = bytes.indexOf('\n');
    return !(end < 0 ? bytes : bytes.first(end)).contains('\0');
}

} // namespace

TableFile readTableFile(QByteArrayView bytes, const TableDescription& table, std::optional<char> separator)
{
    if (bytes.size() > mostFileBytes)
        throw TableFileError({u"M320"_s, {QString::number(mostFileBytes >> 20)}});
    if (!looksLikeText(bytes))
        throw TableFileError({u"M319"_s, {}});
    const Decoder decoder(bytes);
    const QByteArrayView text = bytes.startsWith(byteOrderMark) ? bytes.sliced(byteOrderMark.size()) : bytes;
    Reading reading(table, decoder);
    try {
        readSeparatedRows(text, separator.value_or(recognisedSeparator(text, table, decoder)),
                          [&](const SeparatedRow& row) { return reading.take(row); });
    } catch (const SeparatedValuesError& error) {
        throw TableFileError(noteOf(error));
    }
    return reading.file();
}

QByteArray pastedTableBytes(const QString& text)
{
    // From where fields begin: one that is quoted already, or any other.
    static const QRegularExpression fields(
        u"(?<![^\t\r\n])(?:\"(?:[^\"]++|\"\")*+\"|([^\"\t\r\n][^\t\r\n]*+))"_s);
    QString rows;
    qsizetype copied = 0;
    for (const QRegularExpressionMatch& field : fields.globalMatch(text)) {
        QString value = field.captured(1);
        if (!value.contains(u'"'))
            continue;
        rows += QStringView(text).sliced(copied, field.capturedStart() - copied);
        rows += u'"' + value.replace(u'"', "\"\""_L1) + u'"';
        copied = field.capturedEnd();
    }
    return (rows += QStringView(text).sliced(copied)).toUtf8();
}

QByteArray readTableBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw FileError(path, file.errorString());
    // A pipe gives what it has at the moment, and some devices have no end.
    QByteArray bytes;
    QByteArray some;
    do {
        some = file.read(std::min(bytesTogether, mostFileBytes + 1 - bytes.size()));
        bytes += some;
    } while (!some.isEmpty());
    if (file.error() != QFileDevice::NoError)
        throw FileError(path, file.errorString());
    if (bytes.size() > mostFileBytes)
        throw TableFileError({u"M320"_s, {QString::number(mostFileBytes >> 20)}});
    return bytes;
}

} // namespace velmora
