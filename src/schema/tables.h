// The thirteen tables: their creation statements and the orders in which they are made and copied.
#pragma once

#include <QString>
#include <QStringList>

namespace velmora {

/// The thirteen CREATE TABLE statements, in the order in which their foreign keys are satisfied.
const QStringList& creationStatements();

/// The tables whose rows a new database takes over from an earlier one, in an order that keeps the foreign
/// keys satisfied: all but the scratch table EQ_TEMP.
const QStringList& copiedTables();

/// The creation statement of EQ_TEMP as a table of the session alone, which stands before the permanent one.
QString privateStagingStatement();

} // namespace velmora
