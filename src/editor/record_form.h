// Entering, changing or deleting one record: the fields of the editing panel and the rules of their order.
#pragma once

#include "editor/table_catalogue.h"

#include <functional>
#include <optional>

namespace velmora {

class MMain;

enum class RecordMode { Insert, Update, Delete };

/// A field of the editing panel.
struct RecordField {
    QString column;
    QString caption;
    bool key = false;
    /// The query of the drop-down's entries; empty for free text.
    QString pickList;
    /// Whether it is shown as a drop-down; a locked key is shown as text.
    bool dropDown = false;
    QStringList entries;
    /// What is typed, or the entry that is chosen.
    QString text;
    /// Whether the user may change it now.
    bool enabled = false;

    /// What goes into the database: the text, or the code of the chosen entry.
    QString value() const;
};

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
    /// The user goes on from a field: one that may stay empty opens the next even if it is.
    void leave(qsizetype field);

    /// The statement that carries it out; an empty text when there is nothing to write. Quotes are doubled in
    /// the free text of a new record alone.
    QString statement() const;

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

/// Runs the statement of the form, if there is one, so that it writes this one record or nothing. When
/// nothing was written, the reason is shown in the message M17, M19 or M18 (inserting, updating, deleting),
/// whose text is returned; an empty text otherwise.
///
/// A value with a "'" is not written where the statement does not double it: the statement would fail, or
/// mean another value or other records.
QString writeRecord(MMain& main, const RecordForm& form);

/// What the database holds of the form's record now, in table order; nothing where it has no such record.
std::optional<QStringList> storedRecord(MMain& main, const RecordForm& form);

} // namespace velmora
