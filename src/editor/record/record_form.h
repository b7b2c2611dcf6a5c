// Entering, changing or deleting one record: the rules of the fields' order.
#pragma once

#include "editor/record/record_field.h"
#include "editor/table_description.h"

#include <functional>

namespace velmora {

enum class RecordMode { Insert, Update, Delete };

/// One opening of the editing panel, without its window.
///
/// A new record is entered field by field: each one opens the next. A drop-down that is chosen anew empties
/// the drop-downs after it, since their entries may depend on it.
class RecordForm {
public:
    /// The entries of a pick list. Called with the fields as they are at that moment.
    using Fill = std::function<QStringList(const QString& statement, const QList<RecordField>& fields)>;

    /// `pickLists` has one statement per column of the table, empty for free text; `values` are those of the
    /// record to change or delete, and are ignored for a new one.
    RecordForm(RecordMode mode, const TableDescription& table, const QStringList& pickLists,
               const QStringList& values, Fill fill);

    RecordMode mode() const { return m_mode; }
    const QString& table() const { return m_table; }
    const QList<RecordField>& fields() const { return m_fields; }
    /// The values that go into the database, in table order.
    QStringList values() const;
    /// Whether the record can be written. Once true it stays so until a drop-down is chosen.
    bool complete() const { return m_complete; }
    /// Whether the user has entered anything.
    bool changed() const { return values() != m_before; }
    bool changed(qsizetype field) const { return m_fields[field].value() != m_before[field]; }

    /// The text of a free-text field has been changed.
    void changeText(qsizetype field, const QString& text);
    /// An entry of a drop-down has been chosen.
    void choose(qsizetype field, const QString& entry);
    /// Enters a value for the user, if the field is open and takes it. It is not what the user has entered.
    bool propose(qsizetype field, const QString& value);
    /// The user goes on from a field: one that may stay empty opens the next even if it is.
    void leave(qsizetype field);

private:
    void open(qsizetype field);
    void refill(RecordField& field);
    void countComplete();

    RecordMode m_mode;
    QString m_table;
    QList<RecordField> m_fields;
    QStringList m_before;
    Fill m_fill;
    bool m_complete;
};

} // namespace velmora
