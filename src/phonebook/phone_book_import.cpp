#include "phonebook/phone_book_import.h"

#include "database/transaction.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "phonebook/conf_users.h"
#include "startup/MMain.h"

#include <QFileInfo>
#include <QHash>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

QString quoted(QString text)
{
    return u'\'' + text.replace(u'\'', "''"_L1) + u'\'';
}

/// One import, inside its transaction.
class Import {
public:
    Import(MMain& main, const RunReport& report) : m_main(main), m_report(report)
    {
        execute(u"UPDATE PHONE_BOOK SET BK_FLAG = 'W' WHERE BK_FLAG = 'V'"_s);
        const qsizetype further = main.connection.columns(u"PHONE_BOOK"_s).size() - 4;
        m_furtherColumns = u",''"_s.repeated(further);
        // An entry is looked up by its number over all companies, for which the table has no index.
        Cursor rows =
            main.connection.cursor(u"SELECT BK_NUM, BK_FLAG, CO_CODE FROM PHONE_BOOK ORDER BY CO_CODE"_s);
        while (rows.next()) {
            Entry& entry = m_entries[rows.text(0)];
            if (entry.companies.isEmpty())
                entry.flag = rows.text(1);
            entry.companies << quoted(rows.text(2));
        }
    }

    /// Takes an entry of the file over. One that the database refuses is reported, and the others go on.
    void apply(const ConfUser& user, const QString& company)
    {
        try {
            const QString outcome = takeOver(user, company);
            m_report.line(user.extension + " - "_L1 + user.name + " - "_L1 + outcome);
        } catch (const DatabaseError& error) {
            if (error.reason() == DatabaseError::Reason::ConnectionLost ||
                error.reason() == DatabaseError::Reason::TransactionLost)
                throw;
            m_report.line(m_main.messageLine(u"M220"_s, QString::number(user.line)) + ": "_L1 +
                          user.extension + " - "_L1 + user.name + " - "_L1 + error.description());
        }
    }

    /// Imported entries that the file no longer holds become hidden.
    void hideTheRest() { execute(u"UPDATE PHONE_BOOK SET BK_FLAG = 'H' WHERE BK_FLAG = 'W'"_s); }

private:
    /// What the table holds under a number.
    struct Entry {
        /// The flag in the first company that has the number.
        QString flag;
        QStringList companies;
    };

    QString takeOver(const ConfUser& user, const QString& company)
    {
        const auto entry = m_entries.find(user.extension);
        if (entry == m_entries.end()) {
            execute("INSERT INTO PHONE_BOOK VALUES('"_L1 + company + "', '"_L1 + user.extension + "', '"_L1 +
                    user.name + "', 'V'"_L1 + m_furtherColumns + u')');
            m_entries.insert(user.extension, {u"V"_s, {quoted(company)}});
            return u"Added"_s;
        }
        if (entry->flag != "W"_L1)
            return u"Ignored, Hidden or Manual"_s;
        // The companies are named for the sake of the primary key: every row of the number has one of them.
        execute("UPDATE PHONE_BOOK SET BK_NAME = '"_L1 + user.name + "', BK_FLAG = 'V' WHERE BK_NUM = '"_L1 +
                user.extension + "' AND CO_CODE IN ("_L1 + entry->companies.join(", "_L1) + u')');
        entry->flag = u"V"_s;
        return u"Updated"_s;
    }

    void execute(const QString& statement)
    {
        m_main.sqlText = statement;
        m_main.connection.execute(statement);
    }

    MMain& m_main;
    const RunReport& m_report;
    QString m_furtherColumns;
    QHash<QString, Entry> m_entries;
};

} // namespace

bool importPhoneBook(MMain& main, const PhoneBookRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    if (!openPhones(main, request) || !loadsPhoneBooks(main))
        return false;
    const QString path = pathIn(localFolder(request.folder), u"confUsers.ini"_s);
    if (!QFileInfo(path).isFile()) {
        main.showMessage(u"M16"_s, path);
        return false;
    }
    const QList<ConfUser> users = readConfUsers(readWholeFile(path));
    const QString company = main.currentPhone().company;

    Transaction transaction(main.connection);
    Import import(main, report);
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
    report.progress(users.size(), users.size());
    // M17 is used for two things; the words of this one have a row of their own.
    main.showMessage(u"M17"_s, main.textOr(u"M17_IMP"_s, {}));
    return true;
}

} // namespace velmora
