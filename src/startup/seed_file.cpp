#include "startup/seed_file.h"

#include "common/MMain.h"
#include "database/bulk/row_inserter.h"
#include "database/transaction.h"
#include "files/ansi.h"
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "schema/version.h"

#include <QFile>

#include <algorithm>
#include <memory>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr auto harmlessTag = "All"_L1;

/// How many rows of one table are held back, to be inserted together.
constexpr qsizetype rowsAtOnce = 1024;

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
        insertRows();
        m_inserters.clear();
    }

    /// What to tell about the refused rows.
    const QStringList& refusals() const { return m_refusals; }

private:
    void loadLine(const QStringList& fields)
    {
        const bool isHarmless = fields[0] == harmlessTag;
        if (!isHarmless && fields[0] != m_versionTag)
            return;
        const QString table = fields.value(1);
        if (table != m_table || m_rows.size() == rowsAtOnce)
            insertRows();
        m_table = table;
        const QStringList values = fields.sliced(std::min<qsizetype>(2, fields.size()));
        const qsizetype columns = inserter().columnCount();
        if (values.size() >= columns) {
            m_rows << values.first(columns);
            m_harmless << isHarmless;
        } else {
            insertRows();
            refuse(DatabaseError(insertBeginning(table, values),
                                 u"The line holds %1 values where %2 are needed."_s.arg(
                                     QString::number(values.size()), QString::number(columns))),
                   isHarmless);
        }
        m_main.prompts.letEventsRun();
    }

    /// Inserts what is held back.
    void insertRows()
    {
        if (m_rows.isEmpty())
            return;
        m_main.sqlText = insertStatement(m_table, m_rows.last());
        for (const RowInserter::Refusal& refusal : inserter().insert(m_rows))
            refuse(refusal.error, m_harmless[refusal.row]);
        m_rows.clear();
        m_harmless.clear();
    }

    void refuse(const DatabaseError& error, bool isHarmless)
    {
        m_main.sqlText = error.statement();
        if (!isHarmless)
            m_refusals << "Error : "_L1 + error.statement() + u' ' + error.description();
    }

    /// That of the current table.
    RowInserter& inserter()
    {
        std::unique_ptr<RowInserter>& known = m_inserters[m_table];
        if (!known)
            known = std::make_unique<RowInserter>(m_main.connection, m_table);
        return *known;
    }

    MMain& m_main;
    const QString m_versionTag = versionDigits() + u'V';
    std::unordered_map<QString, std::unique_ptr<RowInserter>> m_inserters;
    QString m_table;
    /// The rows of that table that are held back, and whether the refusal of each is to be told to nobody.
    QList<QStringList> m_rows;
    QList<bool> m_harmless;
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
