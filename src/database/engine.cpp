#include "database/engine.h"

#include "database/mariadb_engine.h"
#include "database/sqlite_engine.h"

using namespace Qt::StringLiterals;

namespace velmora {

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
