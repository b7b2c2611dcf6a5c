// Many records and what becomes of each.
#pragma once

#include "editor/many/record_batch.h"

#include <QAbstractTableModel>

namespace velmora {

/// The records that are to be deleted, or that all get one value in a column: old and new are shown beside
/// the key. The last column says why a record was refused, or that it has been written.
class ManyRecordsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    struct Captions {
        QString before;
        QString after;
        QString result;
        QString written;
    };

    ManyRecordsModel(TableDescription table, QList<QStringList> records, Captions captions,
                     QObject* parent = nullptr);

    /// Shows what becomes of that column; what was refused before is forgotten.
    void setChange(qsizetype column, const QString& value);
    /// How many records are written, and are not refused yet.
    int pending() const { return static_cast<int>(m_pending.size()); }
    /// These records, for writeRecords().
    std::vector<RecordForm> forms() const;
    /// Shows what came of them.
    void setResult(const RecordBatch& result);
    int refused() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool isChange() const { return m_change >= 0; }
    QString cell(int row, int column) const;
    void findPending();

    const TableDescription m_table;
    const QList<QStringList> m_records;
    const Captions m_captions;
    /// The places of the columns that are shown: the key, or all of a record that is to be deleted.
    QList<qsizetype> m_shown;
    qsizetype m_change = -1;
    QString m_value;
    QStringList m_results;
    QList<bool> m_refused;
    QList<int> m_pending;
};

} // namespace velmora
