#include "editor/list/record_model.h"

#include <QCollator>

#include <algorithm>
#include <iterator>
#include <numeric>

namespace velmora {

RecordModel::RecordModel(const QLocale& language, QObject* parent)
    : QAbstractTableModel(parent), m_language(language)
{
}

void RecordModel::reset(const QStringList& captions, const QList<bool>& keys)
{
    beginResetModel();
    m_captions = captions;
    m_keys = keys;
    m_records.clear();
    endResetModel();
}

void RecordModel::append(std::vector<QStringList> records)
{
    if (records.empty())
        return;
    beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(records.size()) - 1);
    std::move(records.begin(), records.end(), std::back_inserter(m_records));
    endInsertRows();
}

void RecordModel::update(int row, const QStringList& values)
{
    m_records[static_cast<size_t>(row)] = values;
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

QStringList RecordModel::keyOf(const QStringList& values) const
{
    QStringList key;
    for (qsizetype column = 0; column < m_keys.size(); ++column)
        if (m_keys[column])
            key << values[column];
    return key;
}

std::optional<int> RecordModel::find(const QStringList& values, int firstRow) const
{
    const QStringList key = keyOf(values);
    for (int row = firstRow; row < rowCount(); ++row)
        if (keyOf(record(row)) == key)
            return row;
    return std::nullopt;
}

int RecordModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
}

int RecordModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_captions.size());
}

QVariant RecordModel::data(const QModelIndex& index, int role) const
{
    return role == Qt::DisplayRole ? record(index.row())[index.column()] : QVariant();
}

QVariant RecordModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return m_captions.value(section);
    return {};
}

bool RecordModel::removeRows(int row, int count, const QModelIndex& parent)
{
    if (count <= 0)
        return false;
    beginRemoveRows(parent, row, row + count - 1);
    const auto first = m_records.begin() + row;
    m_records.erase(first, first + count);
    endRemoveRows();
    return true;
}

void RecordModel::sort(int column, Qt::SortOrder order)
{
    QCollator collator(m_language);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::vector<QCollatorSortKey> sortKeys;
    sortKeys.reserve(m_records.size());
    for (const QStringList& record : m_records)
        sortKeys.push_back(collator.sortKey(record[column]));

    std::vector<size_t> newOrder(m_records.size());
    std::iota(newOrder.begin(), newOrder.end(), size_t{0});
    std::stable_sort(newOrder.begin(), newOrder.end(), [&](size_t one, size_t other) {
        return order == Qt::AscendingOrder ? sortKeys[one] < sortKeys[other]
                                           : sortKeys[other] < sortKeys[one];
    });

    Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
    std::vector<QStringList> sorted;
    std::vector<int> newRow(m_records.size());
    sorted.reserve(m_records.size());
    for (const size_t old : newOrder) {
        newRow[old] = static_cast<int>(sorted.size());
        sorted.push_back(std::move(m_records[old]));
    }
    m_records = std::move(sorted);
    for (const QModelIndex& kept : persistentIndexList())
        changePersistentIndex(kept, index(newRow[static_cast<size_t>(kept.row())], kept.column()));
    Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

} // namespace velmora
