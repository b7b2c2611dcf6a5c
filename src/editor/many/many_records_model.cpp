#include "editor/many/many_records_model.h"

#include <algorithm>

namespace velmora {

ManyRecordsModel::ManyRecordsModel(TableDescription table, QList<QStringList> records, Captions captions,
                                   QObject* parent)
    : QAbstractTableModel(parent),
      m_table(std::move(table)),
      m_records(std::move(records)),
      m_captions(std::move(captions)),
      m_results(m_records.size(), QString()),
      m_refused(m_records.size(), false)
{
    for (qsizetype place = 0; place < m_table.columns.size(); ++place)
        m_shown << place;
    findPending();
}

void ManyRecordsModel::setChange(qsizetype column, const QString& value)
{
    beginResetModel();
    m_change = column;
    m_value = value;
    m_results.fill({});
    m_refused.fill(false);
    m_shown.clear();
    for (qsizetype place = 0; place < m_table.columns.size(); ++place)
        if (m_table.columns[place].key)
            m_shown << place;
    findPending();
    endResetModel();
}

void ManyRecordsModel::findPending()
{
    m_pending.clear();
    for (int row = 0; row < rowCount(); ++row)
        if (!m_refused[row] && (!isChange() || m_records[row][m_change] != m_value))
            m_pending << row;
}

std::vector<RecordForm> ManyRecordsModel::forms() const
{
    std::vector<RecordForm> forms;
    for (const int row : m_pending)
        forms.push_back(isChange() ? changeOf(m_table, m_records[row], m_change, m_value)
                                   : deletionOf(m_table, m_records[row]));
    return forms;
}

void ManyRecordsModel::setResult(const RecordBatch& result)
{
    for (qsizetype place = 0; place < m_pending.size(); ++place) {
        const int row = m_pending[place];
        m_refused[row] = !result.refusals[place].isEmpty();
        m_results[row] = result.written ? m_captions.written : result.refusals[place];
    }
    findPending();
    if (result.written)
        m_pending.clear();
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, columnCount() - 1), index(rowCount() - 1, columnCount() - 1));
}

int ManyRecordsModel::refused() const
{
    return static_cast<int>(std::count(m_refused.begin(), m_refused.end(), true));
}

int ManyRecordsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_records.size());
}

int ManyRecordsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size()) + (isChange() ? 3 : 1);
}

QString ManyRecordsModel::cell(int row, int column) const
{
    const auto shown = static_cast<int>(m_shown.size());
    if (column < shown)
        return m_records[row][m_shown[column]];
    if (column == columnCount() - 1)
        return m_results[row];
    return column == shown ? m_records[row][m_change] : m_value;
}

QVariant ManyRecordsModel::data(const QModelIndex& index, int role) const
{
    const bool isResult = index.column() == columnCount() - 1;
    if (role == Qt::DisplayRole || (role == Qt::ToolTipRole && isResult))
        return cell(index.row(), index.column());
    return {};
}

QVariant ManyRecordsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const auto shown = static_cast<int>(m_shown.size());
    if (section < shown)
        return m_table.columns[m_shown[section]].caption;
    if (section == columnCount() - 1)
        return m_captions.result;
    return section == shown ? m_captions.before : m_captions.after;
}

} // namespace velmora
