// The phones and the state of their files, as a list shows them.
#pragma once

#include "status/phone_status.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

namespace velmora {

/// A row for each phone and each file without one.
class PhoneTable : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column : int { Code, Name, Model, State, Differences, LastRestart, Address, File, Remark };

    PhoneTable(MMain& main, QObject* parent);

    void reset(const QList<PhoneStatus>& statuses);
    /// Takes over what is known anew of some phones, and all files without one.
    void update(const QList<PhoneStatus>& statuses);
    const PhoneStatus& at(int row) const { return m_statuses[row]; }
    const QList<PhoneStatus>& all() const { return m_statuses; }
    /// The state as the user reads it.
    QString caption(FileState state) const { return m_states[static_cast<qsizetype>(state)]; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString text(const PhoneStatus& status, int column) const;

    QList<PhoneStatus> m_statuses;
    QStringList m_captions;
    QStringList m_states;
};

/// The phones of one state or all, in which what is looked for occurs.
class ChosenRows : public QSortFilterProxyModel {
public:
    explicit ChosenRows(PhoneTable& table, QObject* parent);

    /// Nothing: all states.
    void setState(std::optional<FileState> state);
    /// Every word must occur in the row.
    void find(const QString& words);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    PhoneTable& m_table;
    std::optional<FileState> m_state;
    QStringList m_words;
};

} // namespace velmora
