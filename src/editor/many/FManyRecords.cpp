#include "editor/many/FManyRecords.h"

#include "common/MMain.h"
#include "common/list_entry.h"
#include "common/texts/schema_captions.h"
#include "editor/record/pick_list.h"
#include "windows/SearchableList.h"
#include "windows/captions.h"
#include "windows/failure_report.h"
#include "windows/wait_cursor.h"

#include <QGridLayout>
#include <QHeaderView>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Rows that are measured for the widths of columns.
constexpr int measuredRows = 200;

ManyRecordsModel::Captions captions(MMain& main, FManyRecords::Kind kind)
{
    return {main.textOr(u"MANY_BEFORE"_s, u"Old"_s), main.textOr(u"MANY_AFTER"_s, u"New"_s),
            main.textOr(u"MANY_RESULT"_s, u"Result"_s),
            kind == FManyRecords::Kind::Delete ? main.textOr(u"MANY_DELETED"_s, u"deleted"_s)
                                               : main.textOr(u"MANY_CHANGED"_s, u"changed"_s)};
}

QLabel* labelFor(const QString& name, const QString& caption, QWidget* field)
{
    auto* label = new QLabel(caption);
    label->setObjectName(name);
    label->setBuddy(field);
    return label;
}

} // namespace

bool mayBeSet(const QString& table)
{
    return QStringList{u"COMPANY_PARAMETERS"_s, u"PHONES_PARAMETERS"_s, u"EQUIPMENT_PARAMETERS"_s,
                       u"PHONES"_s}
        .contains(table);
}

FManyRecords::FManyRecords(MMain& main, const TableDescription& table, const QList<QStringList>& records,
                           Kind kind, qsizetype column, QWidget* parent)
    : QDialog(parent),
      m_main(main),
      m_table(table),
      m_records(records),
      m_kind(kind),
      m_model(new ManyRecordsModel(table, records, captions(main, kind), this)),
      m_list(new QTreeView),
      m_status(new QLabel),
      m_write(new QPushButton(main.messageLine(kind == Kind::Delete ? u"OK_DEL"_s : u"OK_UPD"_s))),
      m_cancel(new QPushButton(u"Cancel"_s)),
      m_othersCaption(main.textOr(u"MANY_OTHERS"_s, u"Go On with the Others"_s)),
      m_closeCaption(main.textOr(u"CANCEL_END"_s, u"Close"_s))
{
    setObjectName(u"FManyRecords"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    m_list->setObjectName(u"Records"_s);
    m_list->setModel(m_model);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setAlternatingRowColors(true);
    m_list->setAccessibleName(main.textOr(u"FPARAMETERS_MNURECORD"_s, u"Record"_s));
    m_list->header()->setResizeContentsPrecision(measuredRows);
    m_status->setObjectName(u"Status"_s);
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    m_write->setObjectName(u"Write"_s);
    m_write->setDefault(true);
    m_cancel->setObjectName(u"Cancel"_s);
    if (kind == Kind::SetColumn)
        createInputs(column);
    placeControls();
    translateCaptions(main, *this);
    setWindowTitle((kind == Kind::Delete ? main.textOr(u"MANY_DELETE"_s, u"Delete Records"_s)
                                         : main.textOr(u"MANY_SET"_s, u"Set Column"_s)) +
                   " - "_L1 + tableCaption(main, table.name));
    connect(m_write, &QPushButton::clicked, this, [this] { reportFailures(m_main, [this] { write(); }); });
    connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
    if (kind == Kind::SetColumn) {
        chooseColumn();
        (m_entry->isHidden() ? static_cast<QWidget*>(m_text) : m_entry)->setFocus();
    } else {
        tell(u"M343"_s, {QString::number(records.size())});
        m_cancel->setFocus(); // as every question proposes what loses nothing
    }
    enableControls();
    resize(sizeHint());
    showWidths();
}

/// Columns are as wide as their texts, those of old and new values at least a quarter of the window.
void FManyRecords::showWidths()
{
    for (int shown = 0; shown < m_model->columnCount(); ++shown)
        m_list->resizeColumnToContents(shown);
    if (m_kind == Kind::Delete)
        return;
    for (const int place : {m_model->columnCount() - 3, m_model->columnCount() - 2})
        m_list->setColumnWidth(place, std::max(m_list->columnWidth(place), width() / 4));
}

void FManyRecords::createInputs(qsizetype column)
{
    m_column = new QComboBox;
    m_column->setObjectName(u"Column"_s);
    for (qsizetype place = 0; place < m_table.columns.size(); ++place)
        if (!m_table.columns[place].key)
            m_column->addItem(m_table.columns[place].caption, QVariant::fromValue(place));
    m_column->setCurrentIndex(std::max(0, m_column->findData(QVariant::fromValue(column))));
    m_text = new QLineEdit;
    m_text->setObjectName(u"Value"_s);
    m_entry = new SearchableList;
    m_entry->setObjectName(u"Entry"_s);
    m_entry->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    connect(m_column, &QComboBox::activated, this,
            [this] { reportFailures(m_main, [this] { chooseColumn(); }); });
    const auto enter = [this] {
        m_entered = true;
        showChange();
    };
    connect(m_text, &QLineEdit::textEdited, this, enter);
    connect(m_entry, &QComboBox::activated, this, enter);
}

void FManyRecords::placeControls()
{
    auto* inputs = new QGridLayout;
    if (m_column) {
        inputs->addWidget(labelFor(u"ColumnLabel"_s, u"Column"_s, m_column), 0, 0);
        inputs->addWidget(m_column, 0, 1);
        inputs->addWidget(labelFor(u"ValueLabel"_s, u"Value for all"_s, m_text), 1, 0);
        inputs->addWidget(m_text, 1, 1);
        inputs->addWidget(m_entry, 1, 1);
        inputs->setColumnStretch(1, 1);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_status, 1);
    buttons->addWidget(m_write);
    buttons->addWidget(m_cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(inputs);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
}

/// Offers what the column's pick list offers to every record alike, else any text.
void FManyRecords::chooseColumn()
{
    const qsizetype column = m_column->currentData().value<qsizetype>();
    const QString statement =
        m_main.setting("$$"_L1 + m_table.name, "L_"_L1 + m_table.columns[column].name).value_or(QString());
    m_entry->clear();
    if (placeholderColumns(statement).isEmpty() && !statement.isEmpty())
        m_entry->addItems(pickListEntries(m_main, statement));
    const bool listed = m_entry->count() > 0;
    m_entry->setVisible(listed);
    m_text->setVisible(!listed);
    m_entered = false;
    m_entry->setCurrentIndex(-1);
    m_text->clear();
    auto* input = listed ? static_cast<QWidget*>(m_entry) : m_text;
    input->setAccessibleName(m_table.columns[column].caption);
    if (auto* label = findChild<QLabel*>(u"ValueLabel"_s))
        label->setBuddy(input);
    showChange();
    showWidths();
}

QString FManyRecords::value() const
{
    return m_entry->isVisibleTo(this) ? codeOf(m_entry->currentText()) : m_text->text();
}

void FManyRecords::showChange()
{
    m_model->setChange(m_column->currentData().value<qsizetype>(), value());
    m_write->setText(m_main.messageLine(u"OK_UPD"_s));
    const int changed = m_entered ? m_model->pending() : 0;
    tell(u"M344"_s, {QString::number(changed), QString::number(m_records.size())});
    enableControls();
}

void FManyRecords::write()
{
    const WaitCursor waiting;
    Q_EMIT writing();
    const RecordBatch result = writeRecords(m_main, m_model->forms());
    const qsizetype count = result.refusals.size();
    m_model->setResult(result);
    m_list->resizeColumnToContents(m_model->columnCount() - 1);
    const QString refused = QString::number(m_model->refused());
    m_written = result.written;
    if (m_written)
        tell(m_kind == Kind::Delete ? u"M346"_s : u"M347"_s, {QString::number(count), refused});
    else
        tell(u"M345"_s, {refused, QString::number(m_records.size())});
    m_write->setText(m_othersCaption);
    if (m_written)
        m_cancel->setText(m_closeCaption);
    enableControls();
    m_cancel->setFocus();
    if (m_written)
        Q_EMIT written(m_status->text());
}

void FManyRecords::tell(const QString& message, const QStringList& about)
{
    QString text = m_main.messageLine(message);
    for (qsizetype place = 0; place < about.size(); ++place)
        text.replace(u'%' + QString::number(place + 1), about[place]);
    m_status->setText(text);
}

void FManyRecords::enableControls()
{
    m_write->setEnabled(!m_written && m_model->pending() > 0 && (m_kind == Kind::Delete || m_entered));
    m_write->setVisible(!m_written);
    if (!m_column)
        return;
    for (QWidget* input :
         {static_cast<QWidget*>(m_column), static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_entry)})
        input->setEnabled(!m_written);
}

} // namespace velmora
