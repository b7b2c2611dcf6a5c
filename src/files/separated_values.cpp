#include "files/separated_values.h"

#include "files/file_error.h"
#include "files/whole_file.h"

#include <stdexcept>
#include <string>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Reads one text from front to back.
class Reader {
public:
    explicit Reader(const QString& text) : m_text(text) {}

    QList<QStringList> rows()
    {
        while (m_position < m_text.size())
            m_rows << row();
        return m_rows;
    }

private:
    QStringList row()
    {
        QStringList fields = {field()};
        while (take(u';'))
            fields << field();
        take(u'\r');
        if (!take(u'\n') && m_position < m_text.size())
            fail("a quote ends before its field does");
        return fields;
    }

    QString field() { return take(u'"') ? quotedField() : plainField(); }

    QString quotedField()
    {
        QString field;
        for (;;) {
            const qsizetype quote = m_text.indexOf(u'"', m_position);
            if (quote < 0)
                fail("a quote is not closed");
            field += m_text.sliced(m_position, quote - m_position);
            m_position = quote + 1;
            if (!take(u'"'))
                return field;
            field += u'"';
        }
    }

    QString plainField()
    {
        const qsizetype start = m_position;
        while (m_position < m_text.size() && !QStringView(u";\r\n").contains(m_text[m_position])) {
            if (m_text[m_position] == u'"')
                fail("a quote stands in an unquoted field");
            ++m_position;
        }
        return m_text.sliced(start, m_position - start);
    }

    bool take(char16_t character)
    {
        const bool there = m_position < m_text.size() && m_text[m_position] == character;
        m_position += there ? 1 : 0;
        return there;
    }

    [[noreturn]] void fail(const char* reason) const
    {
        throw std::invalid_argument("row " + std::to_string(m_rows.size() + 1) + ": " + reason);
    }

    const QString& m_text;
    qsizetype m_position = 0;
    QList<QStringList> m_rows;
};

} // namespace

QList<QStringList> parseSeparatedValues(const QString& text)
{
    return Reader(text).rows();
}

QList<QStringList> readSeparatedValues(const QString& path)
{
    QList<QStringList> rows;
    try {
        rows = parseSeparatedValues(QString::fromUtf8(readWholeFile(path)));
    } catch (const std::invalid_argument& error) {
        throw FileError(path, QString::fromLatin1(error.what()));
    }
    for (qsizetype row = 0; row < rows.size(); ++row)
        if (rows[row].size() != rows[0].size())
            throw FileError(path, u"row %1 has %2 fields where the heading has %3"_s.arg(row + 1)
                                      .arg(rows[row].size())
                                      .arg(rows[0].size()));
    return rows;
}

} // namespace velmora
