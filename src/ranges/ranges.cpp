#include "ranges/ranges.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "database/bulk/halves.h"
#include "database/bulk/row_inserter.h"
#include "database/transaction.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many codes are written together: waiting for the disk after each one would take longer than all the
/// rest.
constexpr qint64 codesTogether = 1000;

/// Of the boxes that ask.
constexpr auto title = "Range Generation"_L1;

class Ranges {
public:
    Ranges(MMain& main, const RangeRequest& request, const RunReport& report)
        : m_main(main),
          m_request(request),
          m_report(report),
          m_code(main.messageLine(u"M27"_s, u"$$"_s)),
          m_removed(main.messageLine(u"M29"_s)),
          m_notAdded(main.messageLine(u"M30"_s)),
          m_added(main.messageLine(u"M31"_s)),
          m_failed(main.messageLine(u"M265"_s, u"$$"_s))
    {
    }

    bool run(qint64 first, qint64 last)
    {
        const qint64 total = last - first + 1;
        qint64 done = 0;
        const auto howFar = [&] { return QString::number(done) + " / "_L1 + QString::number(total); };
        try {
            while (done < total && !m_main.stopFlag)
                done += treatSome(first, done, total);
        } catch (const DatabaseError&) {
            m_report.tell({QString(m_failed).replace("$$"_L1, howFar()), true});
            throw;
        }
        if (done < total) {
            m_report.line(m_main.messageLine(u"M221"_s, howFar()));
            return false;
        }
        m_report.progress(total, total);
        return true;
    }

private:
    /// Treats some of the codes, as far as the run is not stopped, in one transaction; returns how many.
    qint64 treatSome(qint64 first, qint64 done, qint64 total)
    {
        Transaction transaction(m_main.connection);
        const QStringList codes = nextCodes(first, done, total);
        const QHash<QString, RunLine> outcomes = m_request.remove ? remove(codes) : add(codes);
        transaction.commit();
        // Not before: until then nothing of it has happened.
        for (const QString& code : codes) {
            m_report.tell({QString(m_code).replace("$$"_L1, code)});
            if (const auto outcome = outcomes.constFind(code); outcome != outcomes.constEnd())
                m_report.tell(*outcome);
        }
        return codes.size();
    }

    QStringList nextCodes(qint64 first, qint64 done, qint64 total)
    {
        QStringList codes;
        for (; done < total && codes.size() < codesTogether; ++done) {
            m_report.progress(done, total);
            if (m_main.stopFlag)
                break;
            codes << QString::number(first + done);
        }
        return codes;
    }

    /// Removes those that the range holds; the outcomes of these.
    QHash<QString, RunLine> remove(const QStringList& codes)
    {
        QHash<QString, RunLine> outcomes;
        const QSet<QString> present = heldBy(u"RANGES"_s, codes);
        const QSet<QString> used = heldBy(u"PHONES"_s, codes);
        const auto removeSome = [&](const QStringList& some) {
            execute("DELETE FROM RANGES"_L1 + condition(some));
            for (const QString& code : some)
                outcomes.insert(code, {m_removed});
        };
        const auto passOver = [](qsizetype, const DatabaseError&) {};
        QStringList free;
        for (const QString& code : codes) {
            if (!present.contains(code))
                continue;
            if (used.contains(code)) // refused where the schema is ours
                inHalves(
                    0, 1, [&](qsizetype, qsizetype) { removeSome({code}); }, passOver);
            else
                free << code;
        }
        if (!free.isEmpty())
            inHalves(
                0, free.size(),
                [&](qsizetype first, qsizetype count) { removeSome(free.sliced(first, count)); }, passOver);
        return outcomes;
    }

    /// Adds those that neither a phone nor the range has; the outcomes of all.
    QHash<QString, RunLine> add(const QStringList& codes)
    {
        QHash<QString, RunLine> outcomes;
        const QSet<QString> taken = heldBy(u"PHONES"_s, codes) + heldBy(u"RANGES"_s, codes);
        QStringList free;
        for (const QString& code : codes) {
            outcomes.insert(code, {taken.contains(code) ? m_notAdded : m_added});
            if (!taken.contains(code))
                free << code;
        }
        for (const RowInserter::Refusal& refusal : insert(free))
            outcomes.insert(free[refusal.row], lineOf(refusal.error));
        return outcomes;
    }

    QList<RowInserter::Refusal> insert(const QStringList& codes)
    {
        QList<QStringList> rows;
        for (const QString& code : codes)
            rows << QStringList{m_request.company, code};
        if (!m_request.company.contains(u'\''))
            return RowInserter(m_main.connection, u"RANGES"_s).insert(rows);
        // It stands in the statement as it is.
        QList<RowInserter::Refusal> refusals;
        for (qsizetype row = 0; row < rows.size(); ++row)
            inHalves(
                row, 1,
                [&](qsizetype, qsizetype) {
                    execute("INSERT INTO RANGES VALUES('"_L1 + rows[row].join("', '"_L1) + "')"_L1);
                },
                [&](qsizetype, const DatabaseError& error) {
                    refusals.append({row, error});
                });
        return refusals;
    }

    RunLine lineOf(const DatabaseError& refusal)
    {
        m_main.sqlText = refusal.statement();
        if (refusal.reason() == DatabaseError::Reason::DuplicateKey)
            return {m_notAdded};
        return {m_notAdded + " - "_L1 + refusalReason(m_main, refusal), true};
    }

    /// Which of the codes stand in that table.
    QSet<QString> heldBy(const QString& table, const QStringList& codes)
    {
        QSet<QString> held;
        if (!codes.isEmpty())
            for (Recordset rows = m_main.query("SELECT PH_CODE FROM "_L1 + table + condition(codes));
                 !rows.eof(); rows.moveNext())
                held << rows.text(0);
        return held;
    }

    QString condition(const QStringList& codes) const
    {
        const QString company = " WHERE CO_CODE = '"_L1 + m_request.company + "' AND PH_CODE "_L1;
        return codes.size() == 1 ? company + "='"_L1 + codes.first() + u'\''
                                 : company + "IN ('"_L1 + codes.join("', '"_L1) + "')"_L1;
    }

    void execute(const QString& statement)
    {
        m_main.sqlText = statement;
        m_main.connection.execute(statement);
    }

    MMain& m_main;
    const RangeRequest& m_request;
    const RunReport& m_report;
    /// Looked up once, for up to a hundred thousand codes.
    const QString m_code;
    const QString m_removed;
    const QString m_notAdded;
    const QString m_added;
    const QString m_failed;
};

/// The declared width of phone codes in a range.
int codeWidth(MMain& main)
{
    for (const Column& column : main.connection.columns(u"RANGES"_s))
        if (column.name == "PH_CODE"_L1)
            return column.width;
    return 0;
}

/// The company, as a list shows it; nothing, after a message (M291), where there is none.
std::optional<QString> companyText(MMain& main, const QString& code)
{
    const Recordset company =
        main.connection.select(u"SELECT CO_CODE, CO_DESC FROM COMPANY WHERE CO_CODE = ?"_s, {code});
    if (company.eof()) {
        main.showMessage(u"M291"_s, code);
        return std::nullopt;
    }
    return company.text(0) + " - "_L1 + company.text(1);
}

/// Whether a range can hold codes up to `last`; shown otherwise (M292).
bool canHold(MMain& main, qint64 last)
{
    const QString code = QString::number(last);
    const int width = codeWidth(main);
    if (width > 0 && code.size() > width) {
        main.showMessage(u"M292"_s, code);
        return false;
    }
    return true;
}

/// Asks whether to go on, with everything that depends on it; where the database has but the general question
/// (M26), with the number alone.
bool confirm(MMain& main, const RangeRequest& request, const QString& company, qint64 count)
{
    const QString number = QString::number(count);
    const QString specific = main.GetDescription(request.remove ? u"M26_DEL"_s : u"M26_ADD"_s);
    const QString question = specific.isEmpty() ? main.messageLine(u"M26"_s, number)
                                                : specific.arg(company, number, request.from, request.to);
    const auto& ask = request.remove ? main.prompts.askYesNo : main.prompts.askToGoOn;
    return ask(question, title);
}

} // namespace

bool generateRanges(MMain& main, const RangeRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    if (request.to < request.from) {
        main.showMessage(u"M24"_s);
        return false;
    }
    const qint64 first = request.from.toLongLong();
    const qint64 last = request.to.toLongLong();
    const std::optional<QString> company = companyText(main, request.company);
    if (!company || !canHold(main, last))
        return false;
    // As numbers the last one may come first, as 9 does before 10: then there are none.
    if (!confirm(main, request, *company, std::max<qint64>(last - first + 1, 0)))
        return false;
    if (request.remove && !main.prompts.askYesNo(main.messageLine(u"M25"_s), title))
        return false;
    return last < first || Ranges(main, request, report).run(first, last);
}

} // namespace velmora
