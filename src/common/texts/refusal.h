// Why the database refused a statement, in the words of whoever entered it.
#pragma once

#include <QStringList>

namespace velmora {

class DatabaseError;
class MMain;

/// What is said where the database can't be reached, or another program holds it, in the user's language; an
/// empty text for any other failure. It asks nothing of the database, which would be waited for once more.
QString unreachableReason(const MMain& main, const DatabaseError& error);

/// The reason in the user's language, with the captions of tables and fields: the key is there already, a
/// record refers to this one or this one to none, a value is too long or missing. What has no words of ours
/// keeps the engine's. Never throws.
///
/// `error` comes from an INSERT INTO, UPDATE or DELETE FROM. `record` has the values, in table order, of the
/// record that it was for: without them a broken reference can't be told from the others of the table.
QString refusalReason(MMain& main, const DatabaseError& error, const QStringList& record = {});

} // namespace velmora
