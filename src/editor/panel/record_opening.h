// Opening a record in the editing panel.
#pragma once

#include "editor/record/record_form.h"

namespace velmora {

class MMain;

/// The form of a record, or of a new one, whose drop-downs are filled by the pick lists of the database. A
/// pick list that fails is filled anew with every letter, and reported once.
RecordForm openRecord(MMain& main, RecordMode mode, const TableDescription& table, const QStringList& values);

} // namespace velmora
