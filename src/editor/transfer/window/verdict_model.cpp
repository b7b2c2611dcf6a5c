#include "editor/transfer/window/verdict_model.h"

#include "common/MMain.h"
#include "windows/remark_colour.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

enum Columns : int { NumberColumn, VerdictColumn, KeyColumn, DetailsColumn };

QStringList captionsOf(const TableDescription& table)
{
    QStringList captions;
    for (const TableColumn& column : table.columns)
        captions << column.caption;
    return captions;
}

} // namespace

VerdictModel::VerdictModel(MMain& main, const TableDescription& table, QObject* parent)
    : QAbstractTableModel(parent),
      m_table(table),
      m_texts(main, captionsOf(table)),
      m_captions({main.textOr(u"IMPORT_LINE"_s, u"Line"_s), main.textOr(u"IMPORT_VERDICT"_s, u"Verdict"_s),
                  main.textOr(u"IMPORT_KEY"_s, u"Key"_s), main.textOr(u"IMPORT_DETAILS"_s, u"Details"_s)}),
      m_verdicts({main.textOr(u"IMPORT_NEW"_s, u"new"_s), main.textOr(u"IMPORT_CHANGED"_s, u"changed"_s),
                  main.textOr(u"IMPORT_SAME"_s, u"same"_s), main.textOr(u"IMPORT_REFUSED"_s, u"refused"_s)})
{
}

void VerdictModel::reset(CheckedLines lines)
{
    beginResetModel();
    m_lines = std::move(lines);
    choose();
    endResetModel();
}

void VerdictModel::showOnlyRefused(bool only)
{
    beginResetModel();
    m_onlyRefused = only;
    choose();
    endResetModel();
}

void VerdictModel::choose()
{
    m_shown.clear();
    for (size_t line = 0; line < m_lines.size(); ++line)
        if (!m_onlyRefused || m_lines[line].verdict == Verdict::Refused)
            m_shown.push_back(line);
}

int VerdictModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int VerdictModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_captions.size());
}

QString VerdictModel::text(const CheckedLine& line, int column) const
{
    switch (column) {
    case NumberColumn:
        return QString::number(line.number);
    case VerdictColumn:
        return m_verdicts[static_cast<qsizetype>(line.verdict)];
    case KeyColumn:
        return onOneLine(keyText(m_table, line));
    default:
        return onOneLine(m_texts.details(line));
    }
}

QVariant VerdictModel::data(const QModelIndex& index, int role) const
{
    const CheckedLine& line = m_lines[m_shown[static_cast<size_t>(index.row())]];
    const bool refused = line.verdict == Verdict::Refused;
    if (role == Qt::DisplayRole || (role == Qt::ToolTipRole && index.column() == DetailsColumn))
        return text(line, index.column());
    if (role == Qt::TextAlignmentRole && index.column() == NumberColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ForegroundRole && refused)
        return remarkColour();
    if (role == Qt::DecorationRole && refused && index.column() == VerdictColumn)
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    return {};
}

QVariant VerdictModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isCaption = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isCaption ? m_captions[section] : QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace velmora
