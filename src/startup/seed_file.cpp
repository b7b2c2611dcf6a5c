#include "startup/seed_file.h"

#include "common/MMain.h"
#include "database/transaction.h"
#include "files/ansi.h"
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "schema/version.h"

#include <QFile>
#include <QHash>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr auto harmlessTag = "All"_L1;

/// Takes the lines of one seed file into the main database.
class SeedLoader {
public:
    explicit SeedLoader(MMain& main) : m_main(main) {}

    void load(const QString& text)
    {
        for (QStringView line : QStringTokenizer(text, u'\n')) {
            if (line.endsWith(u'\r'))
                line.chop(1);
            loadLine(line.toString().split(u';'));
        }
    }

    /// What to tell about the refused rows.
    const QStringList& refusals() const { return m_refusals; }

private:
    void loadLine(const QStringList& fields)
    {
        if (fields[0] != harmlessTag && fields[0] != m_versionTag)
            return;
        m_main.sqlText.clear();
        try {
            insertRow(fields);
        } catch (const DatabaseError& error) {
            if (error.reason() == DatabaseError::Reason::ConnectionLost ||
                error.reason() == DatabaseError::Reason::TransactionLost)
                throw;
            if (fields[0] != harmlessTag)
                m_refusals << "Error : "_L1 + m_main.sqlText + u' ' + error.description();
        }
        m_main.prompts.letEventsRun();
    }

    void insertRow(const QStringList& fields)
    {
        const QString table = fields.value(1);
        const qsizetype columns = columnCount(table);
        m_main.sqlText = "INSERT INTO "_L1 + table + " VALUES('"_L1;
        for (qsizetype field = 2; field <= columns + 1; ++field) {
            if (field >= fields.size())
                throw DatabaseError(m_main.sqlText,
                                    u"The line holds %1 values where %2 are needed."_s.arg(
                                        QString::number(fields.size() - 2), QString::number(columns)));
            m_main.sqlText += QString(fields[field]).replace(u'\'', "''"_L1) + "', '"_L1;
        }
        m_main.sqlText.chop(3);
        m_main.sqlText += u')';
        m_main.connection.execute(m_main.sqlText);
    }

    qsizetype columnCount(const QString& table)
    {
        const auto known = m_columnCounts.constFind(table);
        if (known != m_columnCounts.constEnd())
            return *known;
        return *m_columnCounts.insert(table, m_main.connection.columns(table).size());
    }

    MMain& m_main;
    const QString m_versionTag = versionDigits() + u'V';
    QHash<QString, qsizetype> m_columnCounts;
    QStringList m_refusals;
};

/// One message for all refused rows, however many: a file of another make has tens of thousands.
void tellRefusals(MMain& main, const QStringList& refusals)
{
    if (refusals.isEmpty())
        return;
    const QString count = QString::number(refusals.size());
    main.prompts.show(refusals.join(u'\n'),
                      refusals.size() == 1 ? QString() : main.messageLine(u"M270"_s, count));
}

} // namespace

void loadSeedFile(MMain& main)
{
    const QString path = pathIn(main.programFolder, u"tarvel.csv"_s);
    if (!QFile::exists(path))
        return;
    QByteArray content;
    try {
        content = readWholeFile(path);
    } catch (const FileError& error) {
        main.prompts.show("Error : "_L1 + path + u' ' + error.description(), {});
        return;
    }
    Transaction load(main.connection);
    SeedLoader loader(main);
    loader.load(decodeText(content));
    // The copy is written before the rows are made lasting: where it can't be, the load has not happened.
    writeWholeFile(pathIn(main.programFolder, "tarvel_"_L1 + versionDigits() + ".csv"_L1), content, path);
    load.commit();
    QFile seed(path);
    const bool removed = seed.remove();
    // Only now: whoever waits for a reader of messages may be cut off, and would load the file once more.
    tellRefusals(main, loader.refusals());
    if (!removed)
        throw FileError(path, seed.errorString());
}

} // namespace velmora
