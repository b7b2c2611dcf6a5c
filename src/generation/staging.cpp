#include "generation/staging.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"

#include <QScopeGuard>
#include <QSet>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', "''"_L1) + u'\'';
}

/// The staging of one phone.
class Staging {
public:
    Staging(MMain& main, const StagingReport& report)
        : m_main(main), m_report(report), m_phone(main.currentPhone())
    {
    }

    /// Whether an unknown macro was met.
    bool isStopped() const { return m_isStopped; }

    void stageModel()
    {
        Recordset rows = m_main.query("SELECT * FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = "_L1 +
                                      quoted(m_phone.equipment) + " AND LE_CODE = 'E' ORDER BY PA_CODE"_L1);
        for (; !rows.eof(); rows.moveNext())
            stage({rows.text("PA_CODE"_L1), rows.text("PA_DESC"_L1), rows.text("PA_DEFAULT"_L1)}, u'E');
    }

    void stageCompany()
    {
        Recordset rows =
            m_main.query("SELECT * FROM COMPANY_PARAMETERS WHERE CO_CODE = "_L1 + quoted(m_phone.company) +
                         " AND EQ_CODE = "_L1 + quoted(m_phone.equipment) + " ORDER BY PA_CODE"_L1);
        for (; !rows.eof(); rows.moveNext())
            stage(valueOf(rows), u'C');
    }

    /// What is set for the phone under other models counts as well, as where it was moved from one model to
    /// another: but not where its own model has a value. Naming the models lets the primary key find the
    /// rows.
    void stagePhone()
    {
        Recordset rows =
            m_main.query("SELECT * FROM PHONES_PARAMETERS WHERE CO_CODE = "_L1 + quoted(m_phone.company) +
                         " AND PH_CODE = "_L1 + quoted(m_phone.code) +
                         " AND EQ_CODE IN (SELECT EQ_CODE FROM EQUIPMENT) ORDER BY EQ_CODE <> "_L1 +
                         quoted(m_phone.equipment) + ", PA_CODE, EQ_CODE"_L1);
        QSet<QString> own;
        for (; !rows.eof(); rows.moveNext()) {
            const QString code = rows.text("PA_CODE"_L1);
            const QString model = rows.text("EQ_CODE"_L1);
            if (model == m_phone.equipment)
                own << code;
            else if (own.contains(code)) {
                m_report.line(m_main.messageLine(u"M266"_s, model + " - "_L1 + code));
                continue;
            }
            stage(valueOf(rows), u'P');
        }
    }

    QList<MergedParameter> staged()
    {
        QList<MergedParameter> parameters;
        for (Recordset rows = m_main.query(u"SELECT * FROM EQ_TEMP ORDER BY PA_CODE"_s); !rows.eof();
             rows.moveNext())
            parameters << MergedParameter{
                nullptr, std::make_shared<Parameter>(Parameter{rows.text(0), rows.text(1), rows.text(2)})};
        return parameters;
    }

private:
    /// A row of a table of values, with the description that the model's catalogue has; else with none.
    Parameter valueOf(const Recordset& row)
    {
        const QString code = row.text("PA_CODE"_L1);
        const Recordset described =
            m_main.query("SELECT PA_DESC FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = "_L1 +
                         quoted(m_phone.equipment) + " AND PA_CODE ="_L1 + quoted(code));
        return {code, described.eof() ? QString() : described.text(0), row.text("PA_VALUE"_L1)};
    }

    /// Adds one row by its own statement, which passes whole through the macro expansion.
    void stage(const Parameter& row, QChar level)
    {
        const MacroExpansion expansion = expandMacros("INSERT INTO EQ_TEMP VALUES("_L1 + quoted(row.code) +
                                                          ", "_L1 + quoted(row.description) + ", "_L1 +
                                                          quoted(row.value) + ", "_L1 + quoted(level) + u')',
                                                      m_phone, MacroContext::Statement);
        if (!expansion.refusedToken.isEmpty())
            m_report.refusedMacro(expansion);
        m_isStopped = m_isStopped || expansion.unknownName;
        m_main.sqlText = expansion.text;
        try {
            m_main.connection.execute(m_main.sqlText);
        } catch (const DatabaseError& error) {
            if (error.reason() == DatabaseError::Reason::ConnectionLost)
                throw;
            if (error.reason() == DatabaseError::Reason::DuplicateKey)
                m_report.line(m_main.messageLine(u"M200"_s, row.code));
            else
                m_report.line(
                    m_main.messageLine(u"M201"_s, row.code + " - "_L1 + refusalReason(m_main, error)));
        }
    }

    MMain& m_main;
    const StagingReport& m_report;
    const Phone m_phone;
    bool m_isStopped = false;
};

void empty(Connection& connection)
{
    connection.execute(u"DELETE FROM EQ_TEMP"_s);
}

} // namespace

std::optional<QList<MergedParameter>> mergeInTable(MMain& main, const Levels& levels,
                                                   const StagingReport& report)
{
    empty(main.connection);
    const auto emptyAgain = qScopeGuard([&main] {
        try {
            if (!main.connection.isLost())
                empty(main.connection);
        } catch (const DatabaseError&) {
            // The database is gone, and the private staging table with it.
        }
    });
    Staging staging(main, report);
    if (levels.equipment)
        staging.stageModel();
    if (levels.company && !staging.isStopped())
        staging.stageCompany();
    if (levels.phone && !staging.isStopped())
        staging.stagePhone();
    if (staging.isStopped())
        return std::nullopt;
    return staging.staged();
}

} // namespace velmora
