#include "status/window/phone_table.h"

#include "common/MMain.h"
#include "common/texts/folded_text.h"
#include "windows/remark_colour.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool isInOrder(FileState state)
{
    return state == FileState::Current || state == FileState::NoFile;
}

} // namespace

PhoneTable::PhoneTable(MMain& main, QObject* parent)
    : QAbstractTableModel(parent),
      m_captions({main.textOr(u"PH_CODE"_s, u"Phone"_s), main.textOr(u"FSTATUS_NAME"_s, u"Name"_s),
                  main.textOr(u"EQ_CODE"_s, u"Model"_s), main.textOr(u"FSTATUS_STATE"_s, u"State"_s),
                  main.textOr(u"FSTATUS_DIFFERENCES"_s, u"Differences"_s),
                  main.textOr(u"FSTATUS_RESTART"_s, u"Last restart"_s),
                  main.textOr(u"FSTATUS_ADDRESS"_s, u"Address"_s), main.textOr(u"FSTATUS_FILE"_s, u"File"_s),
                  main.textOr(u"FSTATUS_REMARK"_s, u"Remark"_s)}),
      m_states(
          {main.textOr(u"STATUS_CURRENT"_s, u"current"_s), main.textOr(u"STATUS_DIFFERENT"_s, u"different"_s),
           main.textOr(u"STATUS_MISSING"_s, u"missing"_s),
           main.textOr(u"STATUS_UNREADABLE"_s, u"unreadable"_s),
           main.textOr(u"STATUS_NOFILE"_s, u"no file"_s), main.textOr(u"STATUS_NOFOLDER"_s, u"no folder"_s),
           main.textOr(u"STATUS_ORPHAN"_s, u"without a phone"_s)})
{
}

void PhoneTable::reset(const QList<PhoneStatus>& statuses)
{
    beginResetModel();
    m_statuses = statuses;
    endResetModel();
}

void PhoneTable::update(const QList<PhoneStatus>& statuses)
{
    QHash<QString, const PhoneStatus*> known;
    QList<PhoneStatus> orphans;
    for (const PhoneStatus& status : statuses) {
        if (status.phone)
            known.insert(status.phone->code, &status);
        else
            orphans << status;
    }
    const qsizetype phones =
        std::count_if(m_statuses.begin(), m_statuses.end(),
                      [](const PhoneStatus& status) { return status.phone.has_value(); });
    for (qsizetype row = 0; row < phones; ++row)
        if (const PhoneStatus* found = known.value(m_statuses[row].phone->code))
            m_statuses[row] = *found;
    const int last = columnCount() - 1;
    if (phones > 0)
        Q_EMIT dataChanged(index(0, 0), index(static_cast<int>(phones) - 1, last));
    if (m_statuses.size() > phones) {
        beginRemoveRows({}, static_cast<int>(phones), static_cast<int>(m_statuses.size()) - 1);
        m_statuses.resize(phones);
        endRemoveRows();
    }
    if (!orphans.isEmpty()) {
        beginInsertRows({}, static_cast<int>(phones), static_cast<int>(phones + orphans.size()) - 1);
        m_statuses << orphans;
        endInsertRows();
    }
}

int PhoneTable::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_statuses.size());
}

int PhoneTable::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_captions.size());
}

QString PhoneTable::text(const PhoneStatus& status, int column) const
{
    switch (column) {
    case Code:
        return status.phone ? status.phone->code : u"-"_s;
    case Name:
        return status.phone ? status.phone->description : QString();
    case Model:
        return status.phone ? status.phone->equipment : QString();
    case File:
        return status.file;
    case State:
        return caption(status.state);
    case Differences:
        return status.differences > 0 ? QString::number(status.differences) : QString();
    case LastRestart: {
        const QDateTime time = QDateTime::fromString(status.lastRestart, Qt::ISODate);
        return time.isValid() ? QLocale().toString(time.toLocalTime(), u"yyyy-MM-dd HH:mm"_s)
                              : status.lastRestart;
    }
    case Address:
        return status.address;
    default:
        return status.remark;
    }
}

QVariant PhoneTable::data(const QModelIndex& index, int role) const
{
    const PhoneStatus& status = m_statuses[index.row()];
    if (role == Qt::DisplayRole || (role == Qt::ToolTipRole && index.column() == Remark))
        return text(status, index.column());
    if (role == Qt::TextAlignmentRole && index.column() == Differences)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ForegroundRole && !isInOrder(status.state))
        return remarkColour();
    return {};
}

QVariant PhoneTable::headerData(int section, Qt::Orientation orientation, int role) const
{
    const bool isCaption = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return isCaption ? m_captions[section] : QAbstractTableModel::headerData(section, orientation, role);
}

ChosenRows::ChosenRows(PhoneTable& table, QObject* parent) : QSortFilterProxyModel(parent), m_table(table)
{
    setSourceModel(&table);
}

void ChosenRows::setState(std::optional<FileState> state)
{
    m_state = state;
    invalidateFilter();
}

void ChosenRows::find(const QString& words)
{
    m_words = foldedWords(words);
    invalidateFilter();
}

bool ChosenRows::filterAcceptsRow(int row, const QModelIndex& parent) const
{
    if (m_state && m_table.at(row).state != *m_state)
        return false;
    if (m_words.isEmpty())
        return true;
    QString texts;
    for (int column = 0; column < m_table.columnCount(parent); ++column)
        appendFolded(texts, m_table.index(row, column).data().toString() + u'\n');
    return std::all_of(m_words.begin(), m_words.end(),
                       [&texts](const QString& word) { return texts.contains(word); });
}

bool ChosenRows::lessThan(const QModelIndex& left, const QModelIndex& right) const
{
    const PhoneStatus& one = m_table.at(left.row());
    const PhoneStatus& other = m_table.at(right.row());
    if (left.column() == PhoneTable::Differences)
        return one.differences < other.differences;
    if (left.column() == PhoneTable::LastRestart)
        return one.lastRestart < other.lastRestart;
    return QSortFilterProxyModel::lessThan(left, right);
}

} // namespace velmora
