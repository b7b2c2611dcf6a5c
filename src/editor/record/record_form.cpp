#include "editor/record/record_form.h"

#include "common/list_entry.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

RecordForm::RecordForm(RecordMode mode, const TableDescription& table, const QStringList& pickLists,
                       const QStringList& values, Fill fill)
    : m_mode(mode), m_table(table.name), m_fill(std::move(fill)), m_complete(mode != RecordMode::Insert)
{
    const bool isNew = mode == RecordMode::Insert;
    for (qsizetype place = 0; place < table.columns.size(); ++place) {
        const TableColumn& column = table.columns[place];
        RecordField field{column.name, column.caption, column.key, pickLists[place], false, {}, {}, false};
        field.dropDown = !field.pickList.isEmpty() && (isNew || !field.key);
        field.text = isNew ? QString() : values[place];
        field.enabled = mode == RecordMode::Update && !field.key;
        m_fields << field;
    }
    m_before = this->values();
    if (isNew)
        open(0);
    else
        for (RecordField& field : m_fields)
            refill(field);
}

QStringList RecordForm::values() const
{
    QStringList values;
    for (const RecordField& field : m_fields)
        values << field.value();
    return values;
}

void RecordForm::changeText(qsizetype field, const QString& text)
{
    m_fields[field].text = text;
    if (!text.isEmpty())
        open(field + 1);
    countComplete();
}

void RecordForm::choose(qsizetype field, const QString& entry)
{
    m_fields[field].text = entry;
    if (m_mode == RecordMode::Update)
        return;
    for (qsizetype later = field + 1; later < m_fields.size(); ++later)
        if (m_fields[later].dropDown) {
            m_fields[later].entries.clear();
            m_fields[later].text.clear();
            m_fields[later].enabled = false;
        }
    m_complete = false;
    if (field + 1 < m_fields.size() && (m_fields[field + 1].dropDown || !entry.isEmpty()))
        open(field + 1);
    countComplete();
}

bool RecordForm::propose(qsizetype field, const QString& value)
{
    const RecordField& open = m_fields[field];
    if (!open.enabled)
        return false;
    if (open.dropDown) {
        const auto entry = std::find_if(open.entries.begin(), open.entries.end(),
                                        [&value](const QString& one) { return codeOf(one) == value; });
        if (entry == open.entries.end())
            return false;
        choose(field, QString(*entry)); // which fills lists anew
    } else {
        changeText(field, value);
        leave(field);
    }
    m_before = values();
    return true;
}

void RecordForm::leave(qsizetype field)
{
    const RecordField& left = m_fields[field];
    if (m_mode == RecordMode::Insert && left.enabled && !left.key && !left.dropDown)
        open(field + 1);
    countComplete();
}

/// Lets the user enter the field, if there is one and its value may be changed.
void RecordForm::open(qsizetype field)
{
    if (field >= m_fields.size() || (m_mode == RecordMode::Update && m_fields[field].key))
        return;
    refill(m_fields[field]);
    m_fields[field].enabled = true;
}

void RecordForm::refill(RecordField& field)
{
    if (!field.dropDown)
        return;
    const QString code = field.value();
    field.entries = m_fill(field.pickList, m_fields);
    const bool chosen = m_mode != RecordMode::Insert || !field.text.isEmpty();
    const auto entry = std::find_if(field.entries.begin(), field.entries.end(),
                                    [&code](const QString& one) { return codeOf(one) == code; });
    if (chosen && entry != field.entries.end()) {
        field.text = *entry;
    } else if (m_mode != RecordMode::Insert && !code.isEmpty()) {
        // A stored value that the list does not offer must not be lost by saving the other fields.
        field.entries.prepend(code);
        field.text = code;
    } else {
        field.text.clear();
    }
}

void RecordForm::countComplete()
{
    const auto isComplete = [](const RecordField& field) {
        const bool mayBeEmpty = !field.dropDown && !field.key;
        return field.enabled && (mayBeEmpty || !field.text.isEmpty());
    };
    if (std::all_of(m_fields.begin(), m_fields.end(), isComplete))
        m_complete = true;
}

} // namespace velmora
