#include "editor/list/TablePane.h"

#include "common/MMain.h"
#include "editor/record/record_writing.h"
#include "editor/window/editor_layout.h"
#include "windows/failure_report.h"
#include "windows/wait_cursor.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The widest that a filter grows, in twips.
constexpr int filterWidth = 6000;

} // namespace

TablePane::TablePane(MMain& main, QWidget* parent)
    : QWidget(parent),
      m_main(main),
      m_list(new RecordView(main, this)),
      m_filters(new FilterPanel(main.textOr(u"ALL"_s, u"All"_s), this))
{
    m_list->setObjectName(u"ListCom"_s);
    connect(m_filters, &FilterPanel::chosen, this, [this] {
        reportFailures(m_main, [this] {
            const WaitCursor waiting;
            const RecordView::Place place = m_list->place();
            RempList();
            m_list->goTo(place);
        });
    });
}

void TablePane::setTable(const QString& table)
{
    m_open = {{table, {}, {}}, Access::False};
    m_list->setTable(m_open.description);
    clearFilters();
    Q_EMIT tableChanged();
}

bool TablePane::askPassword()
{
    m_open.access = askForAccess(m_main, table().name);
    return m_open.access != Access::False;
}

void TablePane::FormList(const QList<KeyFilter>& chosen)
{
    // Everything that can fail, before anything changes.
    const TableDescription found = describeTable(m_main, table().name);
    QList<QStringList> values;
    for (const QString& key : found.keys)
        values << distinctValues(m_main, found.name, key);

    m_open.description = found;
    m_list->setTable(found);
    clearFilters();
    m_filters->show(found, values, chosen);
    Q_EMIT tableChanged();
    RempList();
}

void TablePane::refresh()
{
    const RecordView::Place place = m_list->place();
    FormList(m_filters->filters());
    m_list->goTo(place);
}

void TablePane::clearFilters()
{
    // The focus would go with them.
    if (m_filters->isAncestorOf(parentWidget()->focusWidget()))
        m_list->setFocus();
    m_filters->clear();
}

void TablePane::RempList()
{
    if (access() == Access::False)
        return;
    const QList<KeyFilter> filters = m_filters->filters();
    const QString statement = listStatement(table(), filters, access());
    const std::optional<KeyFilter> broken = brokenFilter(filters);
    if (!broken) {
        m_list->load(statement);
        return;
    }
    m_list->clear();
    m_main.sqlText = statement;
    m_main.showMessage(u"M234"_s, m_filters->caption(broken->column));
}

void TablePane::showWritten(const RecordForm& written, int row, bool reload)
{
    const QStringList values = written.values();
    if (written.mode() == RecordMode::Insert)
        m_filters->offer(values);
    if (written.mode() == RecordMode::Insert || reload) {
        const RecordView::Place place = m_list->place();
        RempList();
        m_list->goTo({values, place.firstRow, place.sortedBy, place.order});
    } else if (written.mode() == RecordMode::Delete) {
        m_list->records().removeRows(row, 1);
        if (const int last = m_list->records().rowCount() - 1; last >= 0)
            m_list->selectRow(std::min(row, last));
    } else if (written.changed()) {
        m_list->updateRecord(row, storedRecord(m_main, written).value_or(values));
    }
}

void TablePane::sortBy(int column)
{
    if (column < table().columns.size())
        m_list->sortBy(column);
}

void TablePane::place(const EditorLayout& at, int rowHeight)
{
    setGeometry(at.frame);
    m_list->setGeometry(at.list.translated(-at.frame.topLeft()));
    m_filters->setGeometry(0, 0, at.frame.width(), m_filters->count() * at.fieldStep);
    m_filters->setRowHeights(at.fieldStep, rowHeight, fromTwips(filterWidth, logicalDpiX()));
}

} // namespace velmora
