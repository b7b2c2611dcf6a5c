// One session at a time creates or updates a database.
#pragma once

namespace velmora {

class Connection;

/// Held from construction to destruction, or until the session ends, however it does. REQUIRES: no
/// transaction at either moment.
class SchemaLock {
public:
    explicit SchemaLock(Connection& connection);
    ~SchemaLock();
    SchemaLock(const SchemaLock&) = delete;
    SchemaLock& operator=(const SchemaLock&) = delete;

    /// False where another session holds the lock.
    bool isHeld() const { return m_held; }

private:
    Connection& m_connection;
    bool m_held;
};

} // namespace velmora
