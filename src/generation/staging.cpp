#include "generation/staging.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The rows of one level: a query for code, description, value and level, with the values for its "?".
struct LevelRows {
    QString level;
    QString query;
    QStringList values;
};

/// A query for the rows of a table of values, for the condition that follows it. Its first "?" is the model
/// whose catalogue describes the parameters; one that this catalogue lacks has no description.
QString valuesOf(QLatin1StringView table, QLatin1StringView level)
{
    return "SELECT V.PA_CODE, COALESCE(E.PA_DESC, '') AS PA_DESC, V.PA_VALUE, '"_L1 + level +
           "' AS LE_CODE FROM "_L1 + table +
           " V LEFT JOIN EQUIPMENT_PARAMETERS E ON E.EQ_CODE = ? AND E.PA_CODE = V.PA_CODE WHERE "_L1;
}

constexpr auto holdsMacro =
    "INSTR(PA_CODE, '$$') > 0 OR INSTR(PA_DESC, '$$') > 0 OR INSTR(PA_VALUE, '$$') > 0"_L1;

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', "''"_L1) + u'\'';
}

/// Adds one row by its own statement, which passes whole through the macro expansion. False when its
/// parameter is staged already.
bool stageRow(MMain& main, const Recordset& row, const LineSink& line)
{
    const QString code = row.text(0);
    main.sqlText =
        main.ExpandMacros("INSERT INTO EQ_TEMP VALUES("_L1 + quoted(code) + ", "_L1 + quoted(row.text(1)) +
                              ", "_L1 + quoted(row.text(2)) + ", "_L1 + quoted(row.text(3)) + u')',
                          MacroContext::Statement);
    try {
        main.connection.execute(main.sqlText);
    } catch (const DatabaseError& error) {
        if (error.reason() == DatabaseError::Reason::ConnectionLost)
            throw;
        if (error.reason() == DatabaseError::Reason::DuplicateKey)
            return false;
        line(main.messageLine(u"M201"_s, code + " - "_L1 + refusalReason(main, error)));
    }
    return true;
}

void stageRowByRow(MMain& main, const LevelRows& level, const QString& condition, const LineSink& line)
{
    const QString statement =
        "SELECT * FROM ("_L1 + level.query + ") LEVEL_ROWS WHERE "_L1 + condition + " ORDER BY PA_CODE"_L1;
    for (Recordset rows = main.connection.select(statement, level.values); !rows.eof(); rows.moveNext())
        if (!stageRow(main, rows, line))
            line(main.messageLine(u"M200"_s, rows.text(0)));
}

/// Adds a level: in one statement what needs no macro expansion, then the rest row by row. Where the one
/// statement is refused, which adds nothing, its rows are taken one by one to tell which are the refused
/// ones.
void stageLevel(MMain& main, const LevelRows& level, const LineSink& line)
{
    const QString plain = "NOT ("_L1 + holdsMacro + u')';
    try {
        main.connection.execute("INSERT INTO EQ_TEMP SELECT * FROM ("_L1 + level.query +
                                    ") LEVEL_ROWS WHERE "_L1 + plain,
                                level.values);
    } catch (const DatabaseError& error) {
        if (error.reason() == DatabaseError::Reason::ConnectionLost)
            throw;
        stageRowByRow(main, level, plain, line);
    }
    stageRowByRow(main, level, holdsMacro, line);
}

LevelRows equipmentLevel(const Phone& phone)
{
    return {u"E"_s,
            u"SELECT PA_CODE, PA_DESC, PA_DEFAULT AS PA_VALUE, LE_CODE FROM EQUIPMENT_PARAMETERS WHERE "
            "EQ_CODE = ? AND LE_CODE = 'E'"_s,
            {phone.equipment}};
}

LevelRows companyLevel(const Phone& phone)
{
    return {u"C"_s,
            valuesOf("COMPANY_PARAMETERS"_L1, "C"_L1) + "V.CO_CODE = ? AND V.EQ_CODE = ?"_L1,
            {phone.equipment, phone.company, phone.equipment}};
}

/// What is set for the phone under its own model; see stageOtherModels().
LevelRows phoneLevel(const Phone& phone)
{
    return {u"P"_s,
            valuesOf("PHONES_PARAMETERS"_L1, "P"_L1) + "V.CO_CODE = ? AND V.EQ_CODE = ? AND V.PH_CODE = ?"_L1,
            {phone.equipment, phone.company, phone.equipment, phone.code}};
}

/// Adds what is set for the phone under other models, which counts as well, as where the phone was moved from
/// one model to another: but not where its own model has a value. Naming the models lets the primary key find
/// the rows.
void stageOtherModels(MMain& main, const LineSink& line)
{
    const Phone phone = main.currentPhone();
    Recordset rows = main.connection.select(
        u"SELECT V.PA_CODE, COALESCE(E.PA_DESC, '') AS PA_DESC, V.PA_VALUE, 'P' AS LE_CODE, V.EQ_CODE, "
        "O.EQ_CODE IS NOT NULL AS HAS_OWN FROM PHONES_PARAMETERS V LEFT JOIN EQUIPMENT_PARAMETERS E ON "
        "E.EQ_CODE = ? AND E.PA_CODE = V.PA_CODE LEFT JOIN PHONES_PARAMETERS O ON O.CO_CODE = V.CO_CODE AND "
        "O.EQ_CODE = ? AND O.PH_CODE = V.PH_CODE AND O.PA_CODE = V.PA_CODE WHERE V.CO_CODE = ? AND V.EQ_CODE "
        "IN (SELECT EQ_CODE FROM EQUIPMENT WHERE EQ_CODE <> ?) AND V.PH_CODE = ? ORDER BY V.PA_CODE, "
        "V.EQ_CODE"_s,
        {phone.equipment, phone.equipment, phone.company, phone.equipment, phone.code});
    for (; !rows.eof(); rows.moveNext()) {
        if (rows.text("HAS_OWN"_L1) == "1"_L1)
            line(main.messageLine(u"M266"_s, rows.text("EQ_CODE"_L1) + " - "_L1 + rows.text(0)));
        else if (!stageRow(main, rows, line))
            line(main.messageLine(u"M200"_s, rows.text(0)));
    }
}

/// The levels to stage, in the order in which the first one to set a parameter wins.
QList<LevelRows> wantedLevels(const Phone& phone, const Levels& levels)
{
    QList<LevelRows> wanted;
    if (levels.equipment)
        wanted << equipmentLevel(phone);
    if (levels.company)
        wanted << companyLevel(phone);
    if (levels.phone)
        wanted << phoneLevel(phone);
    return wanted;
}

/// The condition for the staged rows of some levels, for use with their codes as values.
QString ofLevels(QLatin1StringView comparison, const QStringList& levels)
{
    if (levels.isEmpty())
        return {};
    return " WHERE LE_CODE "_L1 + comparison + " ("_L1 + QStringList(levels.size(), u"?"_s).join(u',') + u')';
}

QList<Parameter> stagedParameters(MMain& main, const QString& condition, const QStringList& levels)
{
    const QString statement = "SELECT * FROM EQ_TEMP"_L1 + condition + " ORDER BY PA_CODE"_L1;
    QList<Parameter> parameters;
    for (Recordset rows = main.connection.select(statement, levels); !rows.eof(); rows.moveNext())
        parameters << Parameter{rows.text(0), rows.text(1), rows.text(2)};
    return parameters;
}

bool needsExpansion(const QList<Parameter>& parameters)
{
    return std::any_of(parameters.begin(), parameters.end(), [](const Parameter& parameter) {
        return parameter.code.contains("$$"_L1) || parameter.description.contains("$$"_L1) ||
               parameter.value.contains("$$"_L1);
    });
}

/// Adds a level by one statement, if that is enough, and returns what it holds. Nothing, and nothing added,
/// where one of its rows is refused or holds a macro.
std::optional<QList<Parameter>> stageWhole(MMain& main, const LevelRows& level)
{
    try {
        main.connection.execute("INSERT INTO EQ_TEMP "_L1 + level.query, level.values);
    } catch (const DatabaseError& error) {
        if (error.reason() == DatabaseError::Reason::ConnectionLost)
            throw;
        // Which row is refused shows when the rows are staged for each phone.
        return std::nullopt;
    }
    const QString condition = ofLevels("IN"_L1, {level.level});
    const QList<Parameter> parameters = stagedParameters(main, condition, {level.level});
    if (!needsExpansion(parameters))
        return parameters;
    main.connection.execute("DELETE FROM EQ_TEMP"_L1 + condition, {level.level});
    return std::nullopt;
}

QList<Parameter> inCodeOrder(const QList<Parameter>& some, const QList<Parameter>& others)
{
    QList<Parameter> all;
    all.reserve(some.size() + others.size());
    std::merge(some.begin(), some.end(), others.begin(), others.end(), std::back_inserter(all),
               [](const Parameter& left, const Parameter& right) { return left.code < right.code; });
    return all;
}

} // namespace

Staging::Staging(MMain& main, const Levels& levels) : m_main(main), m_levels(levels) {}

Staging::~Staging()
{
    if (m_main.connection.isLost())
        return;
    try {
        m_main.connection.execute(u"DELETE FROM EQ_TEMP"_s);
    } catch (const DatabaseError&) {
        // The database is gone, and the private staging table with it.
    }
}

std::optional<QList<Parameter>> Staging::merge(const LineSink& line)
{
    m_main.connection.execute("DELETE FROM EQ_TEMP"_L1 + ofLevels("NOT IN"_L1, m_sharedLevels),
                              m_sharedLevels);
    if (!m_started) {
        stageShared();
        findMovedPhones();
    }
    for (const LevelRows& level : wantedLevels(m_main.currentPhone(), m_levels)) {
        if (m_sharedLevels.contains(level.level))
            continue;
        stageLevel(m_main, level, line);
        if (level.level == "P"_L1 && m_moved.contains(m_main.currentPhone().code))
            stageOtherModels(m_main, line);
        if (m_main.stopFlag)
            return std::nullopt;
    }
    return inCodeOrder(m_shared,
                       stagedParameters(m_main, ofLevels("NOT IN"_L1, m_sharedLevels), m_sharedLevels));
}

/// Asked once for the whole run: hardly a phone has any, and asking for each would cost more.
void Staging::findMovedPhones()
{
    if (!m_levels.phone)
        return;
    const Phone first = m_main.currentPhone();
    QString last;
    for (Recordset phones = m_main.phones; !phones.eof(); phones.moveNext())
        last = phones.text("PH_CODE"_L1);
    Recordset moved = m_main.connection.select(
        u"SELECT P.PH_CODE FROM PHONES P WHERE P.CO_CODE = ? AND P.PH_CODE BETWEEN ? AND ? AND P.EQ_CODE = ? "
        "AND EXISTS (SELECT 1 FROM PHONES_PARAMETERS V WHERE V.CO_CODE = P.CO_CODE AND V.EQ_CODE IN (SELECT "
        "EQ_CODE FROM EQUIPMENT WHERE EQ_CODE <> ?) AND V.PH_CODE = P.PH_CODE)"_s,
        {first.company, first.code, last, first.equipment, first.equipment});
    for (; !moved.eof(); moved.moveNext())
        m_moved << moved.text(0);
}

void Staging::stageShared()
{
    m_started = true;
    Levels shareable = m_levels;
    shareable.phone = false;
    for (const LevelRows& level : wantedLevels(m_main.currentPhone(), shareable)) {
        const std::optional<QList<Parameter>> parameters = stageWhole(m_main, level);
        if (!parameters)
            return;
        m_sharedLevels << level.level;
        m_shared = inCodeOrder(m_shared, *parameters);
    }
}

} // namespace velmora
