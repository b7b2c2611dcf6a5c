#include "database/engine.h"

#include "database/mariadb_engine.h"
#include "database/sqlite_engine.h"

using namespace Qt::StringLiterals;

namespace velmora {

QString Engine::file(const ConnectionString&) const
{
    return {};
}

bool Engine::isUnused(Connection&) const
{
    return false;
}

QString Engine::hint(const QSqlError&, const QString&) const
{
    return {};
}

std::unique_ptr<Engine> engineFor(const ConnectionString& string)
{
    const QString provider = string.required(u"Provider"_s);
    if (provider.compare("SQLite"_L1, Qt::CaseInsensitive) == 0)
        return std::make_unique<SqliteEngine>();
    if (provider.compare("MariaDB"_L1, Qt::CaseInsensitive) == 0)
        return std::make_unique<MariaDbEngine>();
    throw DatabaseError(string.text(),
                        u"Unknown Provider \"%1\": Velmora knows SQLite and MariaDB."_s.arg(provider));
}

} // namespace velmora
