#include "editor/list/RecordView.h"

#include "common/MMain.h"
#include "editor/window/editor_layout.h"
#include "windows/failure_report.h"

#include <QElapsedTimer>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// How long rows are read before window events run again, in milliseconds.
constexpr qint64 eventInterval = 15;
/// The rows that are read before the first events: some more than a window shows.
constexpr size_t firstRows = 200;
/// What a column is wider than its text, in twips.
constexpr int columnMargin = 300;

} // namespace

RecordView::RecordView(MMain& main, QWidget* parent)
    : QTreeView(parent), m_main(main), m_records(new RecordModel(QLocale(main.language.toLower()), this))
{
    setModel(m_records);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setAlternatingRowColors(true);
    setEditTriggers(NoEditTriggers);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    header()->setSectionsClickable(true);
    header()->setSectionsMovable(false);
    header()->setStretchLastSection(true);
    connect(header(), &QHeaderView::sectionClicked, this, &RecordView::sortBy);
    connect(header(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        // The last column follows the window.
        if (m_settingWidth || column >= m_records->columnCount() - 1)
            return;
        m_userWidths.insert(column, width);
        m_newWidths.insert(column);
    });
    connect(&m_reading, &QTimer::timeout, this, [this] { reportFailures(m_main, [this] { readSome(); }); });
    for (ushort character = 0; character < 256; ++character)
        m_advances.push_back(QFontMetricsF(font()).horizontalAdvance(QChar(character)));
}

RecordView::~RecordView()
{
    keepWidths();
}

void RecordView::setTable(const TableDescription& table)
{
    stopLoading();
    m_stopped = false;
    m_lastSortColumn.reset();
    m_wanted.reset();
    keepWidths();
    findWidths(table);
    header()->setSortIndicatorShown(false);
    QStringList captions;
    QList<bool> keys;
    for (const TableColumn& column : table.columns) {
        captions << column.caption;
        keys << column.key;
    }
    m_settingWidth = true;
    m_records->reset(captions, keys);
    m_settingWidth = false;
}

void RecordView::clear()
{
    stopLoading();
    m_stopped = false;
    m_wanted.reset();
    m_wantedRow.reset();
    m_sorted = false;
    header()->setSortIndicatorShown(false);
    m_records->removeRows(0, m_records->rowCount());
    m_widths.clear();
    for (int column = 0; column < m_records->columnCount(); ++column) {
        const QString caption = m_records->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        m_widths.push_back(fontMetrics().horizontalAdvance(caption) + fromTwips(columnMargin, logicalDpiX()));
        setWidth(column, m_widths.back());
    }
    Q_EMIT loaded();
}

void RecordView::load(const QString& statement)
{
    clear(); // whether or not the statement fails
    m_main.sqlText = statement;
    m_cursor = std::make_unique<Cursor>(m_main.connection.cursor(statement));
    readSome();
    if (isLoading())
        m_reading.start(0);
}

bool RecordView::stopLoading()
{
    if (!isLoading())
        return false;
    m_stopped = true;
    endReading();
    Q_EMIT loaded();
    return true;
}

void RecordView::readSome()
{
    const int before = m_records->rowCount();
    std::vector<QStringList> records;
    try {
        records = nextRecords(eventInterval, before == 0 ? firstRows : SIZE_MAX);
    } catch (...) {
        stopLoading();
        throw;
    }
    growColumns(records);
    const bool atEnd = !m_cursor;
    m_records->append(std::move(records));
    if (atEnd) {
        endReading();
        if (m_sorted)
            m_records->sort(*m_lastSortColumn, m_sortOrder);
    }
    selectWanted(m_sorted ? 0 : before);
    if (atEnd)
        showPlace();
    Q_EMIT loaded();
}

RecordView::Place RecordView::place() const
{
    return {selectedRecord(), verticalScrollBar()->value(), m_sorted ? m_lastSortColumn : std::nullopt,
            m_sortOrder};
}

void RecordView::goTo(const Place& place)
{
    if (place.sortedBy && *place.sortedBy < m_records->columnCount()) {
        m_lastSortColumn = place.sortedBy;
        m_sortOrder = place.order;
        m_sorted = true;
        header()->setSortIndicator(*place.sortedBy, place.order);
        header()->setSortIndicatorShown(true);
        if (!isLoading())
            m_records->sort(*place.sortedBy, place.order);
    }
    m_wantedRow = place.firstRow;
    if (!place.selected.isEmpty())
        selectRecord(place.selected);
    if (!isLoading())
        showPlace();
}

void RecordView::showPlace()
{
    if (!m_wantedRow)
        return;
    verticalScrollBar()->setValue(*m_wantedRow);
    m_wantedRow.reset();
    if (currentIndex().isValid())
        scrollTo(currentIndex());
}

/// Finds the widths that the user has given to the table's columns, in whatever session.
void RecordView::findWidths(const TableDescription& table)
{
    m_widthNames.clear();
    m_userWidths.clear();
    for (int column = 0; column < table.columns.size(); ++column) {
        m_widthNames << "Width/"_L1 + table.name + u'.' + table.columns[column].name;
        const int width = m_main.remembered.value(m_widthNames.last()).toInt();
        if (width > 0)
            m_userWidths.insert(column, std::max(width, header()->minimumSectionSize()));
    }
}

/// Not at every step of the mouse: each is written to a file.
void RecordView::keepWidths()
{
    for (const int column : std::as_const(m_newWidths))
        m_main.remembered.set(m_widthNames[column], m_userWidths[column]);
    m_newWidths.clear();
}

/// Gives a column a width, unless the user has given it one.
void RecordView::setWidth(int column, int width)
{
    m_settingWidth = true;
    header()->resizeSection(column, m_userWidths.value(column, width));
    m_settingWidth = false;
}

/// The next records of the result; at its end the cursor is gone.
std::vector<QStringList> RecordView::nextRecords(qint64 milliseconds, size_t atMost)
{
    QElapsedTimer time;
    time.start();
    std::vector<QStringList> records;
    while (records.size() < atMost && time.elapsed() < milliseconds) {
        if (!m_cursor->next()) {
            m_cursor.reset();
            break;
        }
        QStringList values;
        values.reserve(m_cursor->fieldCount());
        for (int field = 0; field < m_cursor->fieldCount(); ++field)
            values << m_cursor->text(field);
        records.push_back(std::move(values));
    }
    return records;
}

void RecordView::endReading()
{
    m_reading.stop();
    m_cursor.reset();
}

int RecordView::selectedRow() const
{
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

QStringList RecordView::selectedRecord() const
{
    return selectedRow() < 0 ? QStringList() : m_records->record(selectedRow());
}

void RecordView::selectRow(int row)
{
    setCurrentIndex(m_records->index(row, 0));
}

void RecordView::selectRecord(const QStringList& values)
{
    m_wanted = values;
    selectWanted(0);
}

void RecordView::selectWanted(int firstRow)
{
    if (!m_wanted)
        return;
    if (const std::optional<int> row = m_records->find(*m_wanted, firstRow)) {
        m_wanted.reset();
        selectRow(*row);
    }
}

void RecordView::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    // Whoever has moved on is not fetched back.
    selectNothingLater();
    QTreeView::currentChanged(current, previous);
}

void RecordView::updateRecord(int row, const QStringList& values)
{
    growColumns({values});
    m_records->update(row, values);
}

void RecordView::sortBy(int column)
{
    const bool again = m_lastSortColumn == column;
    m_sortOrder = again && m_sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_lastSortColumn = column;
    m_sorted = true;
    header()->setSortIndicator(column, m_sortOrder);
    header()->setSortIndicatorShown(true);
    m_records->sort(column, m_sortOrder);
    scrollTo(currentIndex());
}

/// Widens the columns for those texts. Only a text that may be too wide for its column is measured.
void RecordView::growColumns(const std::vector<QStringList>& records)
{
    const int margin = fromTwips(columnMargin, logicalDpiX());
    std::vector<int> widths = m_widths;
    for (const QStringList& values : records)
        for (size_t column = 0; column < widths.size(); ++column) {
            const QString& text = values[static_cast<qsizetype>(column)];
            if (widthBound(text) + margin > widths[column])
                widths[column] = std::max(widths[column], fontMetrics().horizontalAdvance(text) + margin);
        }
    for (size_t column = 0; column < widths.size(); ++column)
        if (widths[column] > m_widths[column])
            setWidth(static_cast<int>(column), widths[column]);
    m_widths = std::move(widths);
}

/// An upper bound of the text's width: kerning can only make it narrower.
double RecordView::widthBound(const QString& text) const
{
    double width = 0;
    for (const QChar character : text) {
        if (character.unicode() >= m_advances.size())
            return std::numeric_limits<double>::infinity();
        width += m_advances[character.unicode()];
    }
    return width;
}

} // namespace velmora
