#include "editor/list/FilterPanel.h"

#include "windows/SearchableList.h"
#include "windows/list_height.h"

#include <QEvent>
#include <QStringListModel>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Between a label and its filter, in pixels.
constexpr int labelGap = 8;
/// The column whose filter goes along from table to table.
constexpr QLatin1StringView companyColumn{"CO_CODE"};

} // namespace

FilterPanel::FilterPanel(const QString& allText, QWidget* parent) : QWidget(parent), m_allText(allText) {}

void FilterPanel::clear()
{
    for (const Row& row : m_rows)
        for (QWidget* control : {static_cast<QWidget*>(row.label), static_cast<QWidget*>(row.filter)}) {
            control->hide();
            control->setObjectName(QString());
            control->deleteLater(); // it may be the one whose signal led here
        }
    m_rows.clear();
}

void FilterPanel::show(const TableDescription& table, const QList<QStringList>& values,
                       const QList<KeyFilter>& chosen)
{
    clear();
    m_table = table;
    for (qsizetype key = 0; key < table.keys.size(); ++key) {
        const auto column = std::find_if(table.columns.begin(), table.columns.end(),
                                         [&](const TableColumn& one) { return one.name == table.keys[key]; });
        m_rows << addRow(column->caption, values[key]);
        const KeyFilter company{table.keys[key], m_company.isEmpty() ? 0 : -1, m_company};
        const bool isNew = chosen.isEmpty() && table.keys[key] == companyColumn;
        if (const KeyFilter before = isNew ? company : chosen.value(key); before.index != 0)
            m_rows.last().filter->setCurrentIndex(static_cast<int>(values[key].indexOf(before.text)) + 1);
    }
}

FilterPanel::Row FilterPanel::addRow(const QString& caption, const QStringList& values)
{
    const Row row{new QLabel(caption, this), new SearchableList(this)};
    const QString number = u"_%1"_s.arg(m_rows.size() + 1);
    row.label->setObjectName("FLab"_L1 + number);
    row.label->setTextFormat(Qt::PlainText);
    row.filter->setObjectName("Filter"_L1 + number);
    row.filter->setAccessibleName(caption);
    row.filter->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    limitHeight(*row.filter);
    row.filter->setFocusPolicy(Qt::StrongFocus);
    row.filter->installEventFilter(this);
    row.filter->setModel(new QStringListModel(QStringList(m_allText) + values, row.filter));
    row.label->show();
    row.filter->show();
    connect(row.filter, &QComboBox::activated, this,
            [this, filter = row.filter, column = m_table.keys[m_rows.size()]](int entry) {
                if (column == companyColumn)
                    m_company = entry == 0 ? QString() : filter->currentText();
                Q_EMIT chosen();
            });
    return row;
}

void FilterPanel::offer(const QStringList& record)
{
    for (qsizetype column = 0; column < record.size(); ++column) {
        const qsizetype key = m_table.keys.indexOf(m_table.columns[column].name);
        if (key < 0)
            continue;
        QComboBox* filter = m_rows[key].filter;
        if (filter->currentIndex() != 0 && filter->currentText() != record[column]) {
            filter->setCurrentIndex(0);
            if (m_table.keys[key] == companyColumn)
                m_company.clear();
        }
        auto* entries = static_cast<QStringListModel*>(filter->model());
        const QStringList texts = entries->stringList();
        const auto place = std::lower_bound(texts.begin() + 1, texts.end(), record[column]);
        if (place != texts.end() && *place == record[column])
            continue;
        const int row = static_cast<int>(place - texts.begin());
        entries->insertRows(row, 1);
        entries->setData(entries->index(row), record[column]);
    }
}

QString FilterPanel::caption(const QString& column) const
{
    return m_rows[m_table.keys.indexOf(column)].label->text();
}

QList<KeyFilter> FilterPanel::filters() const
{
    QList<KeyFilter> filters;
    for (qsizetype key = 0; key < m_rows.size(); ++key)
        filters << KeyFilter{m_table.keys[key], m_rows[key].filter->currentIndex(),
                             m_rows[key].filter->currentText()};
    return filters;
}

void FilterPanel::setRowHeights(int step, int height, int fieldWidth)
{
    int labelWidth = 0;
    for (const Row& row : m_rows)
        labelWidth = std::max(labelWidth, row.label->sizeHint().width());
    const int left = labelWidth + labelGap;
    int top = 0;
    for (const Row& row : m_rows) {
        row.label->setGeometry(0, top, labelWidth, height);
        row.filter->setGeometry(left, top, std::min(fieldWidth, width() - left), height);
        top += step;
    }
}

bool FilterPanel::eventFilter(QObject* watched, QEvent* event)
{
    // Turning the wheel over a filter must not choose another one by accident.
    if (event->type() == QEvent::Wheel && !static_cast<QWidget*>(watched)->hasFocus())
        return true;
    return QWidget::eventFilter(watched, event);
}

} // namespace velmora
