#include "editor/record/record_writing.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "database/transaction.h"
#include "editor/record/record_statements.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

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

Refusal refusalOf(MMain& main, const RecordForm& form, const DatabaseError& error)
{
    const bool anyRecord = form.mode() != RecordMode::Insert && !hasKey(form);
    const QString reason =
        anyRecord ? main.messageLine(u"M230"_s) : refusalReason(main, error, form.values());
    return {reason, reason.contains(error.description()) ? QString() : error.description()};
}

/// Runs the statement of the form and says whether it has not met one record.
std::optional<Refusal> runStatement(MMain& main, const RecordForm& form, const QString& statement)
{
    main.sqlText = statement;
    if (std::optional<Refusal> refusal = apostropheRefusal(main, form))
        return refusal;
    const int rows = main.connection.execute(statement);
    if (rows == 1)
        return std::nullopt;
    return Refusal{main.messageLine(rows == 0 ? u"M217"_s : u"M230"_s), {}};
}

/// Runs the statement so that it writes one record or nothing.
std::optional<Refusal> writeOne(MMain& main, const RecordForm& form, const QString& statement)
{
    try {
        Transaction transaction(main.connection);
        std::optional<Refusal> refusal = runStatement(main, form, statement);
        if (!refusal)
            transaction.commit();
        return refusal;
    } catch (const DatabaseError& error) {
        return refusalOf(main, form, error);
    }
}

} // namespace

QString writeRecord(MMain& main, const RecordForm& form)
{
    const QString statement = recordStatement(form);
    if (statement.isEmpty())
        return {};
    main.sqlText = statement;
    const std::optional<Refusal> refusal = writeOne(main, form, statement);
    return refusal ? showFailure(main, form.mode(), *refusal) : QString();
}

std::optional<Refusal> carryOut(MMain& main, const RecordForm& form)
{
    const QString statement = recordStatement(form);
    if (statement.isEmpty())
        return std::nullopt;
    try {
        return runStatement(main, form, statement);
    } catch (const DatabaseError& error) {
        if (error.endsAll())
            throw;
        return refusalOf(main, form, error);
    }
}

QString writeCaption(MMain& main, RecordMode mode)
{
    switch (mode) {
    case RecordMode::Insert:
        return main.messageLine(u"OK_INS"_s);
    case RecordMode::Update:
        return main.messageLine(u"OK_UPD"_s);
    case RecordMode::Delete:
        return main.messageLine(u"OK_DEL"_s);
    }
    return {};
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
