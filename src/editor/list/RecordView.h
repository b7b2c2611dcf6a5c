// The list of records: `ListCom`.
#pragma once

#include "editor/list/record_model.h"
#include "editor/record_list.h"

#include <QTimer>
#include <QTreeView>

#include <memory>
#include <optional>

namespace velmora {

class Cursor;
class MMain;

/// Reads its rows bit by bit while window events run, so that the first ones are there at once and the others
/// can be waited for or not. Columns grow with their texts.
class RecordView : public QTreeView {
    Q_OBJECT

public:
    explicit RecordView(MMain& main, QWidget* parent = nullptr);
    ~RecordView() override;

    /// Shows the headers of that table, without records, unsorted.
    void setTable(const TableDescription& table);
    /// Shows no records, unsorted.
    void clear();
    /// Reads the records anew, in the order that the statement gives.
    void load(const QString& statement);
    /// Reads no further. Says whether something was still being read.
    bool stopLoading();
    bool isLoading() const { return m_cursor != nullptr; }
    bool wasStopped() const { return m_stopped; }

    /// Shows only the records in which each word of the text is found.
    void search(const QString& text);

    RecordModel& records() const { return *m_records; }
    /// The first selected row; -1 when there is none.
    int selectedRow() const;
    /// The values of that row.
    QStringList selectedRecord() const;
    /// How many rows are selected, and the values of them all, from top to bottom.
    qsizetype selectedCount() const;
    QList<QStringList> selectedRecords() const;
    void selectRow(int row);
    /// Takes the keyboard, on the first record where none is selected.
    void takeFocus();
    /// Selects the record with the key of `values`, as soon as it has been read.
    void selectRecord(const QStringList& values);
    /// Gives up selecting a record that has not been read yet.
    void selectNothingLater() { m_wanted.reset(); }
    /// What a user finds again when the same table is read anew.
    struct Place {
        QStringList selected;
        int firstRow = 0;
        std::optional<int> sortedBy;
        Qt::SortOrder order = Qt::AscendingOrder;
    };
    Place place() const;
    /// Sorts, scrolls and selects as in that place, as soon as the rows have been read.
    void goTo(const Place& place);
    /// Replaces the values of a record in its place.
    void updateRecord(int row, const QStringList& values);
    /// Sorts by a column: ascending, or the other way round when it was the last one sorted by.
    void sortBy(int column);

Q_SIGNALS:
    /// Rows have come, or the reading has ended.
    void loaded();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

private:
    void goOn();
    void readSome();
    void describeFirst();
    std::vector<QStringList> nextRecords(qint64 milliseconds, size_t atMost);
    void endReading();
    void showPlace();
    void setWidth(int column, int width);
    void findWidths(const TableDescription& table);
    void keepWidths();
    void selectWanted(int firstRow);
    struct Width {
        int needed = 0;
        /// The texts that have been measured for it.
        QSet<QString> measured;
    };

    bool grow(Width& width, const QString& text, int margin) const;
    void growColumns(const std::vector<QStringList>& records);
    void showWidths();
    double widthBound(const QString& text) const;

    MMain& m_main;
    RecordModel* m_records;
    std::unique_ptr<Cursor> m_cursor;
    QTimer m_reading;
    bool m_stopped = false;
    /// Whether the rows that have been shown first still lack their descriptions.
    bool m_undescribed = false;
    std::optional<QStringList> m_wanted;
    /// The first row to be shown once all are read.
    std::optional<int> m_wantedRow;
    std::optional<int> m_lastSortColumn;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    bool m_sorted = false;
    /// The width that each column needs for its texts, and for what stands beside them.
    std::vector<Width> m_widths;
    std::vector<Width> m_besideWidths;
    /// Where the width is kept that the user has given to each column.
    QStringList m_widthNames;
    /// The widths that the user has given to columns, and those of them that are not kept yet.
    QHash<int, int> m_userWidths;
    QSet<int> m_newWidths;
    bool m_settingWidth = false;
    /// The width of each character of Latin-1, for a bound that costs next to nothing.
    std::vector<double> m_advances;
};

} // namespace velmora
