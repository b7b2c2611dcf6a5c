#include "database/transaction.h"

#include "database/connection.h"

using namespace Qt::StringLiterals;

namespace velmora {

Transaction::Transaction(Connection& connection) : m_connection(connection)
{
    begin();
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

void Transaction::goOnAfterSchemaChange()
{
    if (!m_connection.m_engine->schemaChangeEndsTransaction())
        return;
    commit();
    begin();
}

void Transaction::begin()
{
    m_connection.execute(m_connection.m_engine->beginTransaction());
    m_connection.m_inTransaction = true;
    m_open = true;
}

void Transaction::commit()
{
    m_connection.execute(u"COMMIT"_s);
    m_open = false;
    m_connection.m_inTransaction = false;
}

} // namespace velmora
