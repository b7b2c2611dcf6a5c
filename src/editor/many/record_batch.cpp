#include "editor/many/record_batch.h"

#include "common/MMain.h"
#include "database/transaction.h"
#include "editor/record/record_writing.h"
#include "files/separated_values.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// A form without drop-downs: they would be filled for each record, and mean nothing to its statement.
RecordForm plainForm(RecordMode mode, const TableDescription& table, const QStringList& record)
{
    return RecordForm(mode, table, QStringList(table.columns.size(), QString()), record,
                      [](const QString&, const QList<RecordField>&) { return QStringList(); });
}

/// A row without what ends its line; nothing stands for an empty text, as spreadsheets write it.
QString tabbedRow(QStringList values)
{
    for (QString& value : values)
        if (value.isEmpty())
            value = QString();
    QByteArray row;
    appendSeparatedRow(row, values, '\t');
    return QString::fromUtf8(row).chopped(2) + u'\n';
}

} // namespace

RecordBatch writeRecords(MMain& main, const std::vector<RecordForm>& records)
{
    RecordBatch batch;
    Transaction transaction(main.connection);
    bool anyRefused = false;
    for (const RecordForm& record : records) {
        const std::optional<Refusal> refusal = carryOut(main, record);
        batch.refusals << (refusal ? refusal->reason : QString());
        anyRefused = anyRefused || refusal;
    }
    if (!anyRefused) {
        transaction.commit();
        batch.written = true;
    }
    return batch;
}

RecordForm deletionOf(const TableDescription& table, const QStringList& record)
{
    return plainForm(RecordMode::Delete, table, record);
}

RecordForm changeOf(const TableDescription& table, const QStringList& record, qsizetype column,
                    const QString& value)
{
    RecordForm form = plainForm(RecordMode::Update, table, record);
    form.changeText(column, value);
    return form;
}

QString tabbedText(const TableDescription& table, const QList<QStringList>& records)
{
    QStringList names;
    for (const TableColumn& column : table.columns)
        names << column.name;
    QString text = tabbedRow(names);
    for (const QStringList& record : records)
        text += tabbedRow(record);
    return text;
}

} // namespace velmora
