// The lines of a run, as a list shows them.
#pragma once

#include "runs/run_report.h"

#include <QAbstractListModel>
#include <QIcon>

namespace velmora {

/// Lines are taken at once and shown later, many at a time. A list over them keeps nothing for a line: what
/// it looks like is made when it is painted.
class LogModel : public QAbstractListModel {
    Q_OBJECT

public:
    LogModel(const QIcon& mark, QObject* parent);

    void clear();
    void take(const RunLine& line);
    /// Shows the lines that were taken since. Returns whether there are any.
    bool showNew();
    /// Shows the remarks alone, or all lines.
    void showOnlyRemarks(bool only);
    bool onlyRemarks() const { return m_onlyRemarks; }
    bool isEmpty() const { return m_lines.isEmpty(); }
    qsizetype remarks() const { return m_remarks.size(); }
    /// What is shown, or would be with the next `showNew()`, each line with its end.
    QString text() const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

private:
    int shown() const { return static_cast<int>(m_onlyRemarks ? m_remarks.size() : m_lines.size()); }
    const RunLine& line(int row) const { return m_lines[m_onlyRemarks ? m_remarks[row] : row]; }

    const QIcon m_mark;
    QList<RunLine> m_lines;
    /// The places of the remarks among the lines.
    QList<int> m_remarks;
    int m_rows = 0;
    bool m_onlyRemarks = false;
};

} // namespace velmora
