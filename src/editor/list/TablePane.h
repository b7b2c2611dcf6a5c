// The open table: its filters, and below them the list of its records.
#pragma once

#include "editor/list/FilterPanel.h"
#include "editor/list/RecordView.h"
#include "editor/record/record_form.h"
#include "editor/table_access.h"

namespace velmora {

struct EditorLayout;

/// Whatever of it fails, it never shows anything of another table than the one that was set last.
class TablePane : public QWidget {
    Q_OBJECT

public:
    explicit TablePane(MMain& main, QWidget* parent);

    /// Shows nothing, neither rows nor columns, of a table that is not open yet.
    void setTable(const QString& table);
    /// Asks for the password, if there is one, and says whether it was right.
    bool askPassword();
    /// Reads columns, filters and records of the table. `chosen` are the filters, where they are to stay.
    void FormList(const QList<KeyFilter>& chosen = {});
    /// Lists the records that the filters ask for.
    void RempList();
    /// Reads the table anew; filters, sorting, the selected record and the place in the list stay.
    void refresh();
    /// Lets the list show a record that has been written, which has the row unless it is new. `reload` has
    /// the whole list read anew.
    void showWritten(const RecordForm& written, int row, bool reload);
    void sortBy(int column);

    bool isOpen() const { return m_open.isOpen(); }
    const TableDescription& table() const { return m_open.description; }
    Access access() const { return m_open.access; }
    RecordView& list() const { return *m_list; }
    FilterPanel& filters() const { return *m_filters; }
    void place(const EditorLayout& at, int rowHeight);

Q_SIGNALS:
    /// There are other columns and filters.
    void tableChanged();

private:
    void clearFilters();

    MMain& m_main;
    RecordView* m_list;
    FilterPanel* m_filters;
    OpenTable m_open;
};

} // namespace velmora
