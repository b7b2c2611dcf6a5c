// The statements that insert, update and delete one record.
#pragma once

#include "editor/record/record_form.h"

namespace velmora {

/// The statement that carries out the form; an empty text when there is nothing to write.
///
/// A new record has its values in table order, without a column list, and each "'" in a free text doubled.
/// Otherwise quotes are not doubled. A change sets only the fields that differ from before. Without key
/// fields a change or deletion has no condition, and no engine takes it.
QString recordStatement(const RecordForm& form);

} // namespace velmora
