#include "generation/ranges.h"

#include "database/transaction.h"
#include "startup/MMain.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many codes are written together: waiting for the disk after each one would take longer than all the
/// rest.
constexpr qint64 codesTogether = 1000;

class Ranges {
public:
    Ranges(MMain& main, const RangeRequest& request, const RunReport& report)
        : m_main(main),
          m_request(request),
          m_report(report),
          m_code(main.messageLine(u"M27"_s, u"$$"_s)),
          m_removed(main.messageLine(u"M29"_s)),
          m_notAdded(main.messageLine(u"M30"_s)),
          m_added(main.messageLine(u"M31"_s))
    {
    }

    bool run(qint64 first, qint64 last)
    {
        const qint64 total = last - first + 1;
        std::optional<Transaction> transaction;
        for (qint64 done = 0; done < total; ++done) {
            if (done % codesTogether == 0) {
                if (transaction)
                    transaction->commit();
                transaction.emplace(m_main.connection);
            }
            m_report.progress(done, total);
            if (m_main.stopFlag) {
                transaction->commit();
                m_report.line(
                    m_main.messageLine(u"M221"_s, QString::number(done) + " / "_L1 + QString::number(total)));
                return false;
            }
            treat(QString::number(first + done));
        }
        transaction->commit();
        m_report.progress(total, total);
        return true;
    }

private:
    void treat(const QString& code)
    {
        m_report.line(QString(m_code).replace("$$"_L1, code));
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
            m_report.line(m_removed);
    }

    void add(const QString& code)
    {
        if (rowOf(u"PHONES"_s, code)) {
            m_report.line(m_notAdded);
            return;
        }
        const auto refusal =
            refusalOf("INSERT INTO RANGES VALUES('"_L1 + m_request.company + "', '"_L1 + code + "')"_L1);
        if (!refusal)
            m_report.line(m_added);
        else if (refusal->reason() == DatabaseError::Reason::DuplicateKey)
            m_report.line(m_notAdded);
        else
            m_report.line(m_notAdded + " - "_L1 + refusal->description());
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
};

} // namespace

bool generateRanges(MMain& main, const RangeRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    if (request.to < request.from) {
        main.showMessage(u"M24"_s);
        return false;
    }
    const QString title = u"Range Generation"_s;
    const qint64 first = request.from.toLongLong();
    const qint64 last = request.to.toLongLong();
    if (!main.prompts.askYesNo(main.messageLine(u"M26"_s, QString::number(last - first + 1)), title))
        return false;
    if (request.remove && !main.prompts.askYesNo(main.messageLine(u"M25"_s), title))
        return false;
    return last < first || Ranges(main, request, report).run(first, last);
}

} // namespace velmora
