#include "editor/record_form.h"

#include "common/MMain.h"
#include "common/list_entry.h"
#include "common/texts/refusal.h"
#include "database/transaction.h"
#include "editor/record_statements.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

QString RecordField::value() const
{
    return dropDown ? codeOf(text) : text;
}

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

QString RecordForm::statement() const
{
    switch (m_mode) {
    case RecordMode::Insert:
        return insertStatement(m_table, m_fields);
    case RecordMode::Update:
        return updateStatement(m_table, m_fields, m_before);
    case RecordMode::Delete:
        return deleteStatement(m_table, m_fields);
    }
    return {};
}

namespace {

/// Why a record was not written, and the engine's own words.
struct Refusal {
    QString reason;
    QString details;
};

QString showFailure(MMain& main, RecordMode mode, const Refusal& refusal)
{
    bool show = true;
    switch (mode) {
    case RecordMode::Insert:
        // M17 is used for two things; the words of this one have a row of their own.
        return main.GetMessage(u"M17"_s, main.textOr(u"M17_INS"_s, u"$$"_s).replace("$$"_L1, refusal.reason),
                               show, refusal.details);
    case RecordMode::Update:
        return main.GetMessage(u"M19"_s, refusal.reason, show, refusal.details);
    case RecordMode::Delete:
        return main.GetMessage(u"M18"_s, refusal.reason, show, refusal.details);
    }
    return {};
}

/// The message for a field whose value would not stand in the statement as it is, but end its text, or stand
/// for another value; an empty code for any other field.
QString apostropheMessage(const RecordForm& form, qsizetype place)
{
    const RecordField& field = form.fields()[place];
    const bool isNew = form.mode() == RecordMode::Insert;
    if (!field.value().contains(u'\''))
        return {};
    if (field.key && !isNew)
        return u"M229"_s;
    if (field.dropDown && (isNew || form.changed(place)))
        return u"M231"_s;
    return form.mode() == RecordMode::Update && form.changed(place) ? u"M228"_s : QString();
}

std::optional<Refusal> apostropheRefusal(MMain& main, const RecordForm& form)
{
    for (qsizetype place = 0; place < form.fields().size(); ++place)
        if (const QString message = apostropheMessage(form, place); !message.isEmpty())
            return Refusal{main.messageLine(message, form.fields()[place].caption), {}};
    return std::nullopt;
}

bool hasKey(const RecordForm& form)
{
    return std::any_of(form.fields().begin(), form.fields().end(),
                       [](const RecordField& field) { return field.key; });
}

/// Runs the statement so that it writes one record or nothing.
std::optional<Refusal> writeOne(MMain& main, const RecordForm& form, const QString& statement)
{
    try {
        Transaction transaction(main.connection);
        const int rows = main.connection.execute(statement);
        if (rows == 1) {
            transaction.commit();
            return std::nullopt;
        }
        return Refusal{main.messageLine(rows == 0 ? u"M217"_s : u"M230"_s), {}};
    } catch (const DatabaseError& error) {
        const bool anyRecord = form.mode() != RecordMode::Insert && !hasKey(form);
        const QString reason =
            anyRecord ? main.messageLine(u"M230"_s) : refusalReason(main, error, form.values());
        return Refusal{reason, reason.contains(error.description()) ? QString() : error.description()};
    }
}

} // namespace

QString writeRecord(MMain& main, const RecordForm& form)
{
    const QString statement = form.statement();
    if (statement.isEmpty())
        return {};
    main.sqlText = statement;
    std::optional<Refusal> refusal = apostropheRefusal(main, form);
    if (!refusal)
        refusal = writeOne(main, form, statement);
    return refusal ? showFailure(main, form.mode(), *refusal) : QString();
}

std::optional<QStringList> storedRecord(MMain& main, const RecordForm& form)
{
    QStringList names;
    QStringList conditions;
    QStringList key;
    for (const RecordField& field : form.fields()) {
        names << field.column;
        if (field.key) {
            conditions << field.column + " = ?"_L1;
            key << field.value();
        }
    }
    const Recordset rows =
        main.connection.select("SELECT "_L1 + names.join(", "_L1) + " FROM "_L1 + form.table() +
                                   " WHERE "_L1 + conditions.join(" AND "_L1),
                               key);
    if (rows.eof())
        return std::nullopt;
    QStringList values;
    for (int field = 0; field < names.size(); ++field)
        values << rows.text(field);
    return values;
}

} // namespace velmora
