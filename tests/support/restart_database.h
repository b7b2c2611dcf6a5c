// A database with phones that can be restarted.
#pragma once

#include "support/test_database.h"

namespace velmora {

/// Holds GXP2000, PAP2 and F1000 with the system rows of their addresses and passwords.
class RestartDatabase : public TestDatabase {
public:
    RestartDatabase();

    /// Adds a phone of company C1 whose device is at 127.0.0.`last` and has the password "secret".
    void addDevice(const QString& equipment, const QString& code, int last);
};

} // namespace velmora
