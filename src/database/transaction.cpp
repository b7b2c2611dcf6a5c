#include "database/transaction.h"

#include "database/connection.h"

using namespace Qt::StringLiterals;

namespace velmora {

Transaction::Transaction(Connection& connection) : m_connection(connection)
{
    m_connection.execute(m_connection.m_engine->beginTransaction());
    m_connection.m_inTransaction = true;
}

Transaction::~Transaction()
{
    if (!m_open)
        return;
    try {
        m_connection.execute(u"ROLLBACK"_s);
    } catch (const DatabaseError&) {
        // The engine has rolled back by itself, or is gone: either way nothing of it is kept.
    }
    m_connection.m_inTransaction = false;
}

void Transaction::commit()
{
    m_connection.execute(u"COMMIT"_s);
    m_open = false;
    m_connection.m_inTransaction = false;
}

} // namespace velmora
