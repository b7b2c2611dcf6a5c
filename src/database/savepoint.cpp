#include "database/savepoint.h"

#include "database/connection.h"

using namespace Qt::StringLiterals;

namespace velmora {

Savepoint::Savepoint(Connection& connection) : m_connection(connection)
{
    m_connection.execute(u"SAVEPOINT ATTEMPT"_s);
}

Savepoint::~Savepoint()
{
    if (!m_open)
        return;
    try {
        m_connection.execute(u"ROLLBACK TO SAVEPOINT ATTEMPT"_s);
        m_connection.execute(u"RELEASE SAVEPOINT ATTEMPT"_s);
    } catch (const DatabaseError&) {
        // The whole transaction has been undone, or the engine is gone: either way nothing of it is kept.
    }
}

void Savepoint::keep()
{
    m_connection.execute(u"RELEASE SAVEPOINT ATTEMPT"_s);
    m_open = false;
}

} // namespace velmora
