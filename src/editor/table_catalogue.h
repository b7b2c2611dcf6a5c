// Which tables the editor offers to a user, who may open them, and what a table consists of.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace velmora {

class MMain;

/// A tab of the editor.
struct TableTab {
    QString table;
    /// Empty where the database holds no text for the tab.
    QString caption;
};

/// The tables that `rights` grants, of the "$$TABS" rows (`numbers` and `tables`, in their order). The
/// character at the 1-based place that a row's number gives grants its table when it is "Y" or "y"; rights
/// that are exactly "*" grant every one.
QStringList grantedTables(const QString& rights, const QStringList& numbers, const QStringList& tables);

/// Whether the rights of the current user grant that table. One that is only a tab for want of any other is
/// not.
bool isGranted(MMain& main, const QString& table);

/// The current user's tabs, in the order of the "$$TABS" rows, their numbers sorted as text. A user without
/// any granted tab gets the table SYSTEM_PARAMETERS.
QList<TableTab> tableTabs(MMain& main);

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

struct TableColumn {
    QString name;
    /// The text of the database for the column, else the schema's description of it, else its name.
    QString caption;
    bool key = false;
};

/// A table as the schema of the database declares it.
struct TableDescription {
    QString name;
    QList<TableColumn> columns;
    /// The columns of the primary key in the order of the key.
    QStringList keys;
};

/// Throws DatabaseError when there is no such table.
TableDescription describeTable(MMain& main, const QString& table);

/// The different values of a column, as the texts of a filter.
QStringList distinctValues(MMain& main, const QString& table, const QString& column);

} // namespace velmora
