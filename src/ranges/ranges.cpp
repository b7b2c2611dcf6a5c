#include "ranges/ranges.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "database/transaction.h"

#include <algorithm>
#include <optional>
#include <utility>

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
        m_lines.clear();
        const qint64 wanted = std::min(codesTogether, total - done);
        qint64 treated = 0;
        Transaction transaction(m_main.connection);
        for (; treated < wanted; ++treated) {
            m_report.progress(done + treated, total);
            if (m_main.stopFlag)
                break;
            treat(QString::number(first + done + treated));
        }
        transaction.commit();
        // Not before: until then nothing of it has happened.
        for (const RunLine& line : std::as_const(m_lines))
            m_report.tell(line);
        return treated;
    }

    void treat(const QString& code)
    {
        m_lines << RunLine{QString(m_code).replace("$$"_L1, code)};
        if (m_request.remove)
            remove(code);
        else
            add(code);
    }

    void remove(const QString& code)
    {
        if (!rowOf(u"RANGES"_s, code))
            return;
        if (const auto refusal = refusalOf("DELETE FROM RANGES"_L1 + condition(code)); !refusal)
            m_lines << RunLine{m_removed};
    }

    void add(const QString& code)
    {
        if (rowOf(u"PHONES"_s, code)) {
            m_lines << RunLine{m_notAdded};
            return;
        }
        const auto refusal =
            refusalOf("INSERT INTO RANGES VALUES('"_L1 + m_request.company + "', '"_L1 + code + "')"_L1);
        if (!refusal)
            m_lines << RunLine{m_added};
        else if (refusal->reason() == DatabaseError::Reason::DuplicateKey)
            m_lines << RunLine{m_notAdded};
        else
            m_lines << RunLine{m_notAdded + " - "_L1 + refusalReason(m_main, *refusal), true};
    }

    QString condition(const QString& code) const
    {
        return " WHERE CO_CODE = '"_L1 + m_request.company + "' AND PH_CODE ='"_L1 + code + u'\'';
    }

    bool rowOf(const QString& table, const QString& code)
    {
        return !m_main.query("SELECT * FROM "_L1 + table + condition(code)).eof();
    }

    /// Why the database refused the statement; nothing when it did not.
    std::optional<DatabaseError> refusalOf(const QString& statement)
    {
        try {
            m_main.sqlText = statement;
            m_main.connection.execute(statement);
            return std::nullopt;
        } catch (const DatabaseError& error) {
            if (error.reason() == DatabaseError::Reason::ConnectionLost ||
                error.reason() == DatabaseError::Reason::TransactionLost)
                throw;
            return error;
        }
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
    /// The lines about codes that are not committed yet.
    QList<RunLine> m_lines;
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
