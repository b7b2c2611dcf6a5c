// The records of the table that the editor lists.
#pragma once

#include "editor/list/record_descriptions.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QLocale>
#include <QStringList>

#include <functional>
#include <vector>

namespace velmora {

/// Records are sorted as texts, in the order of the user's language and without regard to case. Those that
/// are searched for are shown, the others kept: rows are counted among those that are shown.
class RecordModel : public QAbstractTableModel {
    Q_OBJECT

public:
    /// The role of what a cell's code stands for.
    static constexpr int descriptionRole = Qt::UserRole;

    explicit RecordModel(const QLocale& language, QObject* parent = nullptr);

    /// Replaces everything: the columns, by their captions and whether they belong to the key, what is known
    /// of their codes, and the records by none. What is searched for stays.
    void reset(const QStringList& captions, const QList<bool>& keys, RecordDescriptions descriptions = {});
    /// Removes all records; what is searched for stays.
    void clear();
    void append(std::vector<QStringList> records);
    /// Replaces the values of a record in its place.
    void update(int row, const QStringList& values);
    /// Shows only the records in which each of these folded words is found, in a value or its description.
    void search(const QStringList& words);
    bool isSearching() const { return !m_words.isEmpty(); }
    /// Whether a record with those values would be shown.
    bool finds(const QStringList& values) const;

    RecordDescriptions& descriptions() { return m_descriptions; }
    /// Reads what the codes of all records stand for.
    void learnDescriptions(MMain& main);

    const QStringList& record(int row) const { return m_records[place(row)].values; }
    /// How many records there are, shown or not.
    int recordCount() const { return static_cast<int>(m_records.size()); }
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
    struct Record {
        QStringList values;
        /// All that can be found in it, made when it is looked for; null before.
        QString folded;
    };

    size_t place(int row) const
    {
        return isSearching() ? m_shown[static_cast<size_t>(row)] : static_cast<size_t>(row);
    }
    QStringList keyOf(const QStringList& values) const;
    QString foldedRecord(const QStringList& values) const;
    bool isFound(Record& record) const;
    void findShown();
    void rearrange(const std::function<std::vector<size_t>()>& change);
    int rowOf(size_t place) const;
    std::vector<int> descriptionRanks(int column, const QCollator& collator) const;
    std::vector<size_t> sortedPlaces(int column, Qt::SortOrder order) const;

    QLocale m_language;
    QStringList m_captions;
    QList<bool> m_keys;
    RecordDescriptions m_descriptions;
    std::vector<Record> m_records;
    QStringList m_words;
    /// The places of the records that are shown while something is searched for.
    std::vector<size_t> m_shown;
};

} // namespace velmora
