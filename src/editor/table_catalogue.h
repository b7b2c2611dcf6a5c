// Which tables the editor offers to a user.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

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

} // namespace velmora
