#include "phonebook/phone_book_import.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "database/transaction.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "phonebook/book_writer.h"

#include <QFileInfo>
#include <QHash>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How many entries are held back, to be written together.
constexpr qsizetype entriesAtOnce = 1024;

/// One import, inside its transaction.
class Import {
public:
    explicit Import(MMain& main) : m_main(main) {}

    /// REQUIRES: its transaction has begun.
    void begin()
    {
        m_book = std::make_unique<BookWriter>(m_main);
        execute(u"UPDATE PHONE_BOOK SET BK_FLAG = 'W' WHERE BK_FLAG = 'V'"_s);
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
        Entry& entry = m_entries[asStored(user.extension)];
        // What becomes of an entry depends on what has become of the one before it with its number.
        if (m_changes.size() == entriesAtOnce || entry.piece == m_piece)
            write();
        const bool isNew = entry.companies.isEmpty();
        if (!isNew && entry.flag != "W"_L1) {
            ++m_counts.ignored;
            tell(user, u"Ignored, Hidden or Manual"_s);
            return;
        }
        if (isNew)
            entry.companies << company;
        entry.flag = u"V"_s;
        entry.piece = m_piece;
        m_changes << BookChange{user, entry.companies, isNew};
        m_places << m_lines.size();
        ++(isNew ? m_counts.added : m_counts.updated);
        tell(user, isNew ? u"Added"_s : u"Updated"_s);
    }

    /// The end: imported entries that the file no longer holds become hidden.
    void finish()
    {
        write();
        keepTheRefused();
        m_counts.hidden = execute(u"UPDATE PHONE_BOOK SET BK_FLAG = 'H' WHERE BK_FLAG = 'W'"_s);
        m_book.reset();
    }

    const ImportCounts& counts() const { return m_counts; }
    /// What became of each entry, in the order of the file.
    const QList<RunLine>& lines() const { return m_lines; }
    /// Whether most of the entries of earlier imports are hidden now.
    bool hasHiddenMost() const { return m_counts.hidden * 2 > m_waiting; }

private:
    /// What the table holds under a number, once the changes are written that are held back.
    struct Entry {
        /// The flag in the first company that has the number.
        QString flag;
        QStringList companies;
        /// The piece of the changes that the last one was in.
        qsizetype piece = -1;
    };

    void tell(const ConfUser& user, const QString& outcome)
    {
        m_lines << RunLine{user.extension + " - "_L1 + user.name + " - "_L1 + outcome};
    }

    /// Writes the changes that are held back.
    void write()
    {
        for (const RowInserter::Refusal& refusal : m_book->write(m_changes))
            refuse(m_changes[refusal.row], m_places[refusal.row], refusal.error);
        m_changes.clear();
        m_places.clear();
        ++m_piece;
    }

    void refuse(const BookChange& change, qsizetype line, const DatabaseError& error)
    {
        const ConfUser& user = change.user;
        const QString number = asStored(user.extension);
        --(change.isNew ? m_counts.added : m_counts.updated);
        ++m_counts.refused;
        Entry& entry = m_entries[number];
        entry.flag = u"W"_s;
        if (change.isNew)
            entry.companies.clear();
        m_refused << number;
        m_lines[line] = {m_main.messageLine(u"M220"_s, QString::number(user.line)) + ": "_L1 +
                             user.extension + " - "_L1 + user.name + " - "_L1 + reasonOf(user, error),
                         true};
    }

    QString reasonOf(const ConfUser& user, const DatabaseError& error)
    {
        return leavesItsQuotes(user) ? m_main.messageLine(u"M263"_s) : refusalReason(m_main, error);
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
    std::unique_ptr<BookWriter> m_book;
    QHash<QString, Entry> m_entries;
    /// How many entries of earlier imports wait to be met.
    qsizetype m_waiting = 0;
    ImportCounts m_counts;
    QList<RunLine> m_lines;
    /// The changes that are held back, the places of their lines, and which piece of all they are.
    QList<BookChange> m_changes;
    QList<qsizetype> m_places;
    qsizetype m_piece = 0;
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
    import.finish();
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
