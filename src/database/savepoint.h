// A part of a transaction that undoes itself unless it is kept.
#pragma once

namespace velmora {

class Connection;

/// Begins on construction; undoes what came after it on destruction unless keep() was called. What was
/// written before it stays part of the transaction. REQUIRES: a transaction, and no other savepoint.
class Savepoint {
public:
    explicit Savepoint(Connection& connection);
    ~Savepoint();
    Savepoint(const Savepoint&) = delete;
    Savepoint& operator=(const Savepoint&) = delete;

    /// Leaves everything since construction to the transaction.
    void keep();

private:
    Connection& m_connection;
    bool m_open = true;
};

} // namespace velmora
