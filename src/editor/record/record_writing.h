// Writing one record to the database.
#pragma once

#include "editor/record/record_form.h"

#include <optional>

namespace velmora {

class MMain;

/// Carries out the form, if there is anything to write, so that it writes this one record or nothing. When
/// nothing was written, the reason is shown in the message M17, M19 or M18 (inserting, updating, deleting),
/// whose text is returned; an empty text otherwise.
///
/// A value with a "'" is not written where the statement does not double it: the statement would fail, or
/// mean another value or other records.
QString writeRecord(MMain& main, const RecordForm& form);

/// Why a record was not written, and the engine's own words.
struct Refusal {
    QString reason;
    QString details;
};

/// Carries out the form in the transaction of the caller, who has to undo it where anything is refused: what
/// is refused may have met several records. Throws DatabaseError for what ends the transaction.
std::optional<Refusal> carryOut(MMain& main, const RecordForm& form);

/// What the button is called that writes: add, change or delete.
QString writeCaption(MMain& main, RecordMode mode);

/// What the database holds of the form's record now, in table order; nothing where it has no such record.
std::optional<QStringList> storedRecord(MMain& main, const RecordForm& form);

} // namespace velmora
