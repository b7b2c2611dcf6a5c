#include "database/connection_string.h"

#include "database/database_error.h"

#include <QDir>
#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velmora {

QString withoutPasswords(const QString& text)
{
    // The key in any spelling, such as "Pwd" or "Pass word"; a quoted value; what else stands before a known
    // key.
    static const QRegularExpression password(
        u"((?:pas|pwd)[^;=]*=|(?:^|;)\\s*(?:password|pwd)\\b\\s*=?)"
        "(?:\\s*\"[^\"]*\"|\\s*'[^']*')?[^;]*"
        "(?:;(?!\\s*$|\\s*(?:provider|data source|port|initial catalog|user id)\\s*=)[^;]*)*"_s,
        QRegularExpression::CaseInsensitiveOption);
    return QString(text).replace(password, u"\\1..."_s);
}

ConnectionString::ConnectionString(const QString& given, const QString& folder)
    : m_text(given), m_folder(folder)
{
    const QStringList pairs = given.split(u';', Qt::SkipEmptyParts);
    for (const QString& pair : pairs) {
        const QString trimmed = pair.trimmed();
        if (trimmed.isEmpty())
            continue;
        const qsizetype equals = trimmed.indexOf(u'=');
        if (equals < 1)
            throw DatabaseError(text(), wordsAbout(trimmed));
        m_values.insert(trimmed.first(equals).trimmed().toLower(), trimmed.sliced(equals + 1).trimmed());
    }
}

QString ConnectionString::wordsAbout(const QString& piece) const
{
    for (const QString& shown : text().split(u';'))
        if (shown.trimmed() == piece)
            return u"The connection string holds \"%1\" where Key=Value is expected."_s.arg(piece);
    return u"A piece of the connection string is no pair of key and value. A password can't hold \";\"."_s;
}

QString ConnectionString::text() const
{
    return withoutPasswords(m_text);
}

QString ConnectionString::value(const QString& key) const
{
    return m_values.value(key.toLower());
}

QString ConnectionString::required(const QString& key) const
{
    const QString found = value(key);
    if (found.isEmpty())
        throw DatabaseError(text(), u"The connection string lacks \"%1\"."_s.arg(key));
    return found;
}

QString ConnectionString::requiredFile(const QString& key) const
{
    const QString name = required(key);
    // ":memory:" is no file.
    return m_folder.isEmpty() || name.startsWith(u':') ? name : QDir(m_folder).filePath(name);
}

} // namespace velmora
