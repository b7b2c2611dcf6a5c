#include "phonebook/phone_book_import.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "database/savepoint.h"
#include "database/transaction.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "phonebook/conf_users.h"

#include <QFileInfo>
#include <QHash>

#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', "''"_L1) + u'\'';
}

/// The text that a quoted literal with `text` between its quotes stands for.
QString asStored(QString text)
{
    return text.replace("''"_L1, "'"_L1);
}

/// Whether `text` ends the quoted literal that it is put into, and goes on as a part of the statement.
bool leavesItsQuotes(QString text)
{
    return text.remove("''"_L1).contains(u'\'');
}

/// One import, inside its transaction.
class Import {
public:
    explicit Import(MMain& main) : m_main(main) {}

    /// REQUIRES: its transaction has begun.
    void begin()
    {
        execute(u"UPDATE PHONE_BOOK SET BK_FLAG = 'W' WHERE BK_FLAG = 'V'"_s);
        const qsizetype further = m_main.connection.columns(u"PHONE_BOOK"_s).size() - 4;
        m_furtherColumns = u",''"_s.repeated(further);
        // An entry is looked up by its number over all companies, for which the table has no index.
        Cursor rows =
            m_main.connection.cursor(u"SELECT BK_NUM, BK_FLAG, CO_CODE FROM PHONE_BOOK ORDER BY CO_CODE"_s);
        while (rows.next()) {
            Entry& entry = m_entries[rows.text(0)];
            if (entry.companies.isEmpty())
                entry.flag = rows.text(1);
            entry.companies << rows.text(2);
            m_waiting += rows.text(1) == "W"_L1 ? 1 : 0;
        }
    }

    /// Takes an entry of the file over. One that the database refuses is noted, and the others go on.
    void apply(const ConfUser& user, const QString& company)
    {
        try {
            const QString outcome = takeOver(user, company);
            m_lines << RunLine{user.extension + " - "_L1 + user.name + " - "_L1 + outcome};
        } catch (const DatabaseError& error) {
            if (error.reason() == DatabaseError::Reason::ConnectionLost ||
                error.reason() == DatabaseError::Reason::TransactionLost)
                throw;
            ++m_counts.refused;
            m_refused << asStored(user.extension);
            m_lines << RunLine{m_main.messageLine(u"M220"_s, QString::number(user.line)) + ": "_L1 +
                                   user.extension + " - "_L1 + user.name + " - "_L1 + reasonOf(user, error),
                               true};
        }
    }

    /// Imported entries that the file no longer holds become hidden.
    void hideTheRest()
    {
        keepTheRefused();
        m_counts.hidden = execute(u"UPDATE PHONE_BOOK SET BK_FLAG = 'H' WHERE BK_FLAG = 'W'"_s);
    }

    const ImportCounts& counts() const { return m_counts; }
    /// What became of each entry, in the order of the file.
    const QList<RunLine>& lines() const { return m_lines; }
    /// Whether most of the entries of earlier imports are hidden now.
    bool hasHiddenMost() const { return m_counts.hidden * 2 > m_waiting; }

private:
    /// What the table holds under a number.
    struct Entry {
        /// The flag in the first company that has the number.
        QString flag;
        QStringList companies;
    };

    QString takeOver(const ConfUser& user, const QString& company)
    {
        const QString number = asStored(user.extension);
        const auto entry = m_entries.find(number);
        if (entry == m_entries.end()) {
            execute("INSERT INTO PHONE_BOOK VALUES('"_L1 + company + "', '"_L1 + user.extension + "', '"_L1 +
                        user.name + "', 'V'"_L1 + m_furtherColumns + u')',
                    user, {company});
            m_entries.insert(number, {u"V"_s, {company}});
            ++m_counts.added;
            return u"Added"_s;
        }
        if (entry->flag != "W"_L1) {
            ++m_counts.ignored;
            return u"Ignored, Hidden or Manual"_s;
        }
        // The companies are named for the sake of the primary key: every row of the number has one of them.
        QStringList quotedCompanies;
        for (const QString& holder : std::as_const(entry->companies))
            quotedCompanies << quoted(holder);
        execute("UPDATE PHONE_BOOK SET BK_NAME = '"_L1 + user.name + "', BK_FLAG = 'V' WHERE BK_NUM = '"_L1 +
                    user.extension + "' AND CO_CODE IN ("_L1 + quotedCompanies.join(", "_L1) + u')',
                user, entry->companies);
        entry->flag = u"V"_s;
        ++m_counts.updated;
        return u"Updated"_s;
    }

    /// Runs the statement that takes an entry over in some companies. The file's text stands in it as it is:
    /// one that leaves its quotes may do anything to the table, so that it counts only when the entry's rows,
    /// and no others, have become what the file says. Else it is undone and refused.
    void execute(const QString& statement, const ConfUser& user, const QStringList& companies)
    {
        if (!leavesItsQuotes(user.extension) && !leavesItsQuotes(user.name)) {
            execute(statement);
            return;
        }
        Savepoint savepoint(m_main.connection);
        if (execute(statement) != companies.size() || !holds(user, companies))
            throw DatabaseError(statement, {});
        savepoint.keep();
    }

    bool holds(const ConfUser& user, const QStringList& companies)
    {
        const Recordset rows = m_main.connection.select(
            "SELECT COUNT(*) FROM PHONE_BOOK WHERE BK_NUM = ? AND BK_NAME = ? AND BK_FLAG = 'V' AND CO_CODE "
            "IN ("_L1 +
                QStringList(companies.size(), u"?"_s).join(u',') + u')',
            QStringList{asStored(user.extension), asStored(user.name)} + companies);
        return rows.text(0).toLongLong() == companies.size();
    }

    QString reasonOf(const ConfUser& user, const DatabaseError& error)
    {
        return leavesItsQuotes(user.extension) || leavesItsQuotes(user.name) ? m_main.messageLine(u"M263"_s)
                                                                             : refusalReason(m_main, error);
    }

    /// The entries that were refused are in the file, and so are not to be hidden.
    void keepTheRefused()
    {
        for (const QString& number : std::as_const(m_refused))
            for (const QString& company : m_entries.value(number).companies)
                m_main.connection.execute(
                    u"UPDATE PHONE_BOOK SET BK_FLAG = 'V' WHERE CO_CODE = ? AND BK_NUM = ? AND BK_FLAG = 'W'"_s,
                    {company, number});
    }

    int execute(const QString& statement)
    {
        m_main.sqlText = statement;
        return m_main.connection.execute(statement);
    }

    MMain& m_main;
    QString m_furtherColumns;
    QHash<QString, Entry> m_entries;
    /// How many entries of earlier imports wait to be met.
    qsizetype m_waiting = 0;
    ImportCounts m_counts;
    QList<RunLine> m_lines;
    /// The numbers of the entries that were refused.
    QStringList m_refused;
};

QString summaryOf(MMain& main, const ImportCounts& counts)
{
    QStringList parts;
    for (const auto& [code, count] : {std::pair(u"M257"_s, counts.added),
                                      {u"M258"_s, counts.updated},
                                      {u"M259"_s, counts.ignored},
                                      {u"M260"_s, counts.refused},
                                      {u"M261"_s, counts.hidden}})
        parts << main.messageLine(code, QString::number(count));
    return parts.join(", "_L1);
}

/// Takes the users over. False, and nothing is changed, when the run was stopped.
bool run(MMain& main, Import& import, const QList<ConfUser>& users, const RunReport& report)
{
    const QString company = main.currentPhone().company;
    Transaction transaction(main.connection);
    import.begin();
    for (qsizetype place = 0; place < users.size(); ++place) {
        report.progress(place, users.size());
        if (main.stopFlag) {
            report.line(main.messageLine(u"M219"_s));
            return false;
        }
        import.apply(users[place], company);
    }
    import.hideTheRest();
    transaction.commit();
    return true;
}

/// Tells what became of the entries. To be called after the commit: until then nothing of it has happened.
void tell(MMain& main, const Import& import, const RunReport& report)
{
    for (const RunLine& line : import.lines())
        report.tell(line);
    report.line(summaryOf(main, import.counts()));
    if (import.hasHiddenMost())
        report.tell({main.messageLine(u"M262"_s), true});
}

} // namespace

std::optional<ImportCounts> importPhoneBook(MMain& main, const PhoneBookRequest& request,
                                            const RunReport& report)
{
    main.stopFlag = false;
    if (!openPhones(main, request) || !loadsPhoneBooks(main))
        return std::nullopt;
    const QString path = pathIn(localFolder(request.folder), u"confUsers.ini"_s);
    if (!QFileInfo(path).isFile()) {
        main.showMessage(u"M16"_s, path);
        return std::nullopt;
    }
    const std::optional<QList<ConfUser>> users = readConfUsers(readWholeFile(path));
    if (!users) {
        main.showMessage(u"M256"_s, path);
        return std::nullopt;
    }
    // Looked up beforehand: an import can fail with its database.
    const QString failed = main.messageLine(u"M264"_s);
    Import import(main);
    try {
        if (!run(main, import, *users, report))
            return std::nullopt;
    } catch (const DatabaseError& error) {
        // Whether a commit whose answer was lost has happened, nobody knows.
        if (error.reason() != DatabaseError::Reason::ConnectionLost)
            report.tell({failed, true});
        throw;
    }
    tell(main, import, report);
    report.progress(users->size(), users->size());
    // M17 is used for two things; the words of this one have a row of their own.
    main.showMessage(u"M17"_s, main.textOr(u"M17_IMP"_s, {}));
    return import.counts();
}

} // namespace velmora
