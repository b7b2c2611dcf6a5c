#include "database/schema_lock.h"

#include "database/connection.h"

namespace velmora {

SchemaLock::SchemaLock(Connection& connection)
    : m_connection(connection), m_held(connection.m_engine->lockSchema(connection))
{
}

SchemaLock::~SchemaLock()
{
    // A lost session has lost its lock; connecting anew would only take time.
    if (!m_held || m_connection.isLost())
        return;
    try {
        m_connection.m_engine->unlockSchema(m_connection);
    } catch (const DatabaseError&) {
        // The session has gone, and the lock with it.
    }
}

} // namespace velmora
