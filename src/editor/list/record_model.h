// The records of the table that the editor lists.
#pragma once

#include <QAbstractTableModel>
#include <QLocale>
#include <QStringList>

#include <optional>
#include <vector>

namespace velmora {

/// Records are sorted as texts, in the order of the user's language and without regard to case.
class RecordModel : public QAbstractTableModel {
    Q_OBJECT

public:
    explicit RecordModel(const QLocale& language, QObject* parent = nullptr);

    /// Replaces everything: the columns, by their captions and whether they belong to the key, and the
    /// records by none.
    void reset(const QStringList& captions, const QList<bool>& keys);
    void append(std::vector<QStringList> records);
    /// Replaces the values of a record in its place.
    void update(int row, const QStringList& values);

    const QStringList& record(int row) const { return m_records[static_cast<size_t>(row)]; }
    /// Where the record stands whose key is that of `values`; nothing when it is not there. Only rows from
    /// `firstRow` on are looked at.
    std::optional<int> find(const QStringList& values, int firstRow = 0) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    bool removeRows(int row, int count, const QModelIndex& parent = {}) override;
    void sort(int column, Qt::SortOrder order) override;

private:
    QStringList keyOf(const QStringList& values) const;

    QLocale m_language;
    QStringList m_captions;
    QList<bool> m_keys;
    std::vector<QStringList> m_records;
};

} // namespace velmora
