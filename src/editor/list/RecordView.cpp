#include "editor/list/RecordView.h"

#include "common/MMain.h"
#include "common/texts/folded_text.h"
#include "editor/list/DescriptionDelegate.h"
#include "editor/window/editor_layout.h"
#include "windows/failure_report.h"

#include <QElapsedTimer>
#include <QFocusEvent>
#include <QHeaderView>
#include <QScrollBar>

#include <algorithm>
#include <limits>
#include <numeric>
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
/// How much of the descriptions stays in sight in a table that is too wide anyway.
constexpr double leastDescriptionShare = 0.3;

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
    setSelectionMode(ExtendedSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    setItemDelegate(new DescriptionDelegate(this));
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
    connect(&m_reading, &QTimer::timeout, this, [this] { reportFailures(m_main, [this] { goOn(); }); });
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
    m_undescribed = false;
    m_lastSortColumn.reset();
    m_wanted.reset();
    m_widths.clear();
    m_besideWidths.clear();
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
    m_records->reset(captions, keys, RecordDescriptions(table));
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
    m_records->clear();
    m_widths.clear();
    m_besideWidths.assign(static_cast<size_t>(m_records->columnCount()), {});
    for (int column = 0; column < m_records->columnCount(); ++column) {
        const QString caption = m_records->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        m_widths.push_back(
            {fontMetrics().horizontalAdvance(caption) + fromTwips(columnMargin, logicalDpiX()), {}});
        setWidth(column, m_widths.back().needed);
    }
    Q_EMIT loaded();
}

void RecordView::load(const QString& statement)
{
    clear(); // whether or not the statement fails
    m_main.sqlText = statement;
    m_cursor = std::make_unique<Cursor>(m_main.connection.cursor(statement));
    m_undescribed = true;
    readSome();
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

void RecordView::goOn()
{
    if (m_undescribed)
        describeFirst();
    else if (isLoading())
        readSome();
    if (!isLoading())
        m_reading.stop();
}

/// What codes stand for is read after the first rows have been painted, which are there the sooner for it.
void RecordView::describeFirst()
{
    m_undescribed = false;
    m_records->learnDescriptions(m_main);
    std::vector<QStringList> records;
    for (int row = 0; row < m_records->rowCount(); ++row)
        records.push_back(m_records->record(row));
    growColumns(records);
    if (m_sorted && !isLoading())
        m_records->sort(*m_lastSortColumn, m_sortOrder);
}

void RecordView::readSome()
{
    const int before = m_records->rowCount();
    const bool isFirst = m_records->recordCount() == 0;
    std::vector<QStringList> records;
    try {
        records = nextRecords(eventInterval, isFirst ? firstRows : SIZE_MAX);
        if (!isFirst)
            for (const QStringList& record : records)
                m_records->descriptions().learn(m_main, record);
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
    m_cursor.reset();
}

void RecordView::search(const QString& text)
{
    // What is deleted together must have been seen together.
    if (selectedCount() > 1)
        selectRow(std::max(currentIndex().row(), 0));
    m_records->search(foldedWords(text));
    scrollTo(currentIndex());
    Q_EMIT loaded();
}

int RecordView::selectedRow() const
{
    int first = -1;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        if (first < 0 || range.top() < first)
            first = range.top();
    return first;
}

qsizetype RecordView::selectedCount() const
{
    qsizetype count = 0;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        count += range.height();
    return count;
}

QList<QStringList> RecordView::selectedRecords() const
{
    QItemSelection ranges = selectionModel()->selection();
    std::sort(ranges.begin(), ranges.end(),
              [](const QItemSelectionRange& one, const QItemSelectionRange& other) {
                  return one.top() < other.top();
              });
    QList<QStringList> records;
    for (const QItemSelectionRange& range : ranges)
        for (int row = range.top(); row <= range.bottom(); ++row)
            records << m_records->record(row);
    return records;
}

QStringList RecordView::selectedRecord() const
{
    return selectedRow() < 0 ? QStringList() : m_records->record(selectedRow());
}

void RecordView::selectRow(int row)
{
    setCurrentIndex(m_records->index(row, 0));
}

void RecordView::takeFocus()
{
    setFocus();
    if (selectedRow() < 0 && m_records->rowCount() > 0)
        selectRow(0);
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
    m_records->descriptions().learn(m_main, values);
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

/// Widens the columns for those records.
void RecordView::growColumns(const std::vector<QStringList>& records)
{
    const int margin = fromTwips(columnMargin, logicalDpiX());
    const RecordDescriptions& descriptions = m_records->descriptions();
    bool wider = false;
    for (const QStringList& values : records)
        for (size_t column = 0; column < m_widths.size(); ++column) {
            const int place = static_cast<int>(column);
            wider |= grow(m_widths[column], values[place], margin);
            if (descriptions.describes(place))
                wider |= grow(m_besideWidths[column], descriptions.description(values, place).text,
                              DescriptionDelegate::gap);
        }
    if (wider)
        showWidths();
}

/// Makes the width great enough for a text, and says whether it was not. Only a text that may be too wide is
/// measured, and only once.
bool RecordView::grow(Width& width, const QString& text, int margin) const
{
    if (qRound(widthBound(text)) + margin <= width.needed || width.measured.contains(text))
        return false;
    const int before = width.needed;
    width.needed = std::max(before, fontMetrics().horizontalAdvance(text) + margin);
    width.measured.insert(text);
    return width.needed > before;
}

/// Gives the columns their widths. Where descriptions would drive other columns out of sight, they are cut.
void RecordView::showWidths()
{
    const auto sum = [](const std::vector<Width>& widths) {
        return std::accumulate(widths.begin(), widths.end(), 0,
                               [](int before, const Width& width) { return before + width.needed; });
    };
    const int codes = sum(m_widths);
    const int beside = sum(m_besideWidths);
    const double share =
        std::clamp(double(viewport()->width() - codes) / std::max(beside, 1), leastDescriptionShare, 1.0);
    for (size_t column = 0; column < m_widths.size(); ++column)
        setWidth(static_cast<int>(column),
                 m_widths[column].needed + static_cast<int>(m_besideWidths[column].needed * share));
}

void RecordView::focusInEvent(QFocusEvent* event)
{
    QTreeView::focusInEvent(event);
    // Or the first record, having the focus already, could not be reached with the arrow keys.
    const bool byKey = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (byKey && selectedRow() < 0 && m_records->rowCount() > 0)
        selectRow(0);
}

void RecordView::resizeEvent(QResizeEvent* event)
{
    QTreeView::resizeEvent(event);
    showWidths();
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
