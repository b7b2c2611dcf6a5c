// The filters of the record list: a drop-down for each key column.
#pragma once

#include "editor/record_list.h"

#include <QComboBox>
#include <QLabel>

namespace velmora {

/// Shows `FLab` and `Filter` 1 to the number of key columns. The first entry of each filter is "All".
class FilterPanel : public QWidget {
    Q_OBJECT

public:
    explicit FilterPanel(const QString& allText, QWidget* parent = nullptr);

    void clear();
    /// Makes the filters of a table, for which `values` has the values of each key column. Of `chosen`, what
    /// was chosen before, that is chosen again which is still there; of a table that was not shown before,
    /// the company that the user has chosen last.
    void show(const TableDescription& table, const QList<QStringList>& values,
              const QList<KeyFilter>& chosen);
    /// Adds the key of a new record, by its values in table order, to the entries, and gives up what would
    /// hide it.
    void offer(const QStringList& record);

    int count() const { return static_cast<int>(m_rows.size()); }
    /// What the filter of that column is called.
    QString caption(const QString& column) const;
    /// What the list is to be filtered by.
    QList<KeyFilter> filters() const;
    /// From the top of one filter to that of the next, the height of a filter, and the greatest width of its
    /// field.
    void setRowHeights(int step, int height, int fieldWidth);

Q_SIGNALS:
    /// The user has chosen something.
    void chosen();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Row {
        QLabel* label;
        QComboBox* filter;
    };

    Row addRow(const QString& caption, const QStringList& values);

    const QString m_allText;
    TableDescription m_table;
    /// The company that the user has chosen; an empty text for all.
    QString m_company;
    QList<Row> m_rows;
};

} // namespace velmora
