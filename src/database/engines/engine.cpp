#include "database/engines/engine.h"

#include "database/engines/mariadb_engine.h"
#include "database/engines/sqlite_engine.h"
#include "database/recordset.h"

using namespace Qt::StringLiterals;

namespace velmora {

QList<Reference> Engine::gathered(Recordset rows)
{
    QList<Reference> references;
    for (; !rows.eof(); rows.moveNext()) {
        if (rows.text(1) == "0"_L1)
            references << Reference{rows.text(0), {}, rows.text(3), {}};
        references.last().columns << rows.text(2);
        references.last().keys << rows.text(4);
    }
    return references;
}

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

void Engine::releaseDeclaredTypes(Connection&, const QString&) const {}

void Engine::holdDeclaredTypesAgain(Connection&, const QString&) const {}

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
