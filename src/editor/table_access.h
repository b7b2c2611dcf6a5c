// Who may open a table, and what is open of it then.
#pragma once

#include "editor/table_description.h"

#include <optional>

namespace velmora {

class MMain;

/// How the rows of a table may be seen and changed.
enum class Access {
    /// Not at all: the password was wrong.
    False,
    /// All rows but the system rows, whose first key begins with "$$".
    True,
    /// The system rows alone.
    Admin,
};

/// The passwords of a table.
struct TablePasswords {
    /// Opens the table; where there is none it is open to everybody.
    std::optional<QString> first;
    /// Opens the system rows; an empty text where there is none.
    QString second;
};

TablePasswords passwordsOf(MMain& main, const QString& table);

/// What `entry`, typed at the password prompt, opens. An empty entry opens the system rows of a table that
/// has a first password but no second one.
Access accessFor(const TablePasswords& passwords, const QString& entry);

/// What the user may do with a table: asks for the password where there is one.
Access askForAccess(MMain& main, const QString& table);

/// The table that is open.
struct OpenTable {
    /// Without columns while it could not be opened.
    TableDescription description;
    Access access = Access::False;

    /// Whether its records may be seen and changed.
    bool isOpen() const { return access != Access::False && !description.columns.isEmpty(); }
};

} // namespace velmora
