// A transaction that undoes itself unless it is committed.
#pragma once

namespace velmora {

class Connection;

/// Begins on construction; rolls back on destruction unless commit() was called.
class Transaction {
public:
    explicit Transaction(Connection& connection);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Makes everything since construction lasting. Throws DatabaseError, and then rolls back later.
    void commit();
    /// To be called after changes of the schema: where the engine has made them lasting and ended the
    /// transaction with them, it begins anew.
    void goOnAfterSchemaChange();

private:
    void begin();

    Connection& m_connection;
    bool m_open = false;
};

} // namespace velmora
