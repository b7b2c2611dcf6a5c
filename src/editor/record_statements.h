// The statements that insert, update and delete one record.
#pragma once

#include "editor/record_form.h"

namespace velmora {

/// Values in table order, without a column list. Each "'" in a free-text value is doubled.
QString insertStatement(const QString& table, const QList<RecordField>& fields);

/// Sets only the fields whose value differs from that of `before`; an empty text when none does. Quotes are
/// not doubled.
QString updateStatement(const QString& table, const QList<RecordField>& fields, const QStringList& before);

/// Quotes are not doubled. Without key fields the statement has no condition and no engine takes it.
QString deleteStatement(const QString& table, const QList<RecordField>& fields);

} // namespace velmora
