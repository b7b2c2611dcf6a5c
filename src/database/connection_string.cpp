#include "database/connection_string.h"

#include "database/database_error.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velmora {

ConnectionString::ConnectionString(const QString& given) : m_text(given)
{
    const QStringList pairs = given.split(u';', Qt::SkipEmptyParts);
    for (const QString& pair : pairs) {
        const QString trimmed = pair.trimmed();
        if (trimmed.isEmpty())
            continue;
        const qsizetype equals = trimmed.indexOf(u'=');
        if (equals < 1)
            throw DatabaseError(
                text(), u"The connection string holds \"%1\" where Key=Value is expected."_s.arg(trimmed));
        m_values.insert(trimmed.first(equals).trimmed().toLower(), trimmed.sliced(equals + 1).trimmed());
    }
}

QString ConnectionString::text() const
{
    static const QRegularExpression password(u"(password\\s*=)[^;]*"_s,
                                             QRegularExpression::CaseInsensitiveOption);
    return QString(m_text).replace(password, u"\\1..."_s);
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

} // namespace velmora
