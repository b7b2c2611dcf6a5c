#include "runs/log_model.h"

#include "windows/remark_colour.h"

namespace velmora {

LogModel::LogModel(const QIcon& mark, QObject* parent) : QAbstractListModel(parent), m_mark(mark) {}

void LogModel::clear()
{
    beginResetModel();
    m_lines.clear();
    m_remarks.clear();
    m_rows = 0;
    endResetModel();
}

void LogModel::take(const RunLine& line)
{
    if (line.isRemark)
        m_remarks << static_cast<int>(m_lines.size());
    m_lines << line;
}

bool LogModel::showNew()
{
    if (m_rows == shown())
        return false;
    beginInsertRows({}, m_rows, shown() - 1);
    m_rows = shown();
    endInsertRows();
    return true;
}

void LogModel::showOnlyRemarks(bool only)
{
    beginResetModel();
    m_onlyRemarks = only;
    m_rows = shown();
    endResetModel();
}

QString LogModel::text() const
{
    QString all;
    for (int row = 0; row < shown(); ++row)
        all += line(row).text + u'\n';
    return all;
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    const RunLine& shownLine = line(index.row());
    if (role == Qt::DisplayRole)
        return shownLine.text;
    if (role == Qt::DecorationRole && shownLine.isRemark)
        return m_mark;
    if (role == Qt::ForegroundRole && shownLine.isRemark)
        return remarkColour();
    return {};
}

} // namespace velmora
