#include "runs/RunLog.h"

#include "common/MMain.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "windows/failure_report.h"

#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// What lies beside the text of an item: its mark, and the margins.
constexpr int besideText = 40;
/// How many lines a line may have that is shown whole; more of them scroll.
constexpr int wholeLines = 3;

} // namespace

/// Makes all lines as wide as the widest: the list asks only one of them for its size, and scrolls as far.
class LineDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void reset() { m_widest = 0; }

    void growTo(int width)
    {
        if (width <= m_widest)
            return;
        m_widest = width;
        Q_EMIT sizeHintChanged({});
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {m_widest, option.fontMetrics.height() + 2};
    }

private:
    int m_widest = 0;
};

RunLog::RunLog(MMain& main, const QString& listName)
    : m_main(main),
      m_list(new QListWidget),
      m_delegate(new LineDelegate(m_list)),
      m_whole(new QPlainTextEdit),
      m_onlyRemarks(new QCheckBox(main.textOr(u"BATCH_ONLY"_s, u"Only Remarks"_s))),
      m_copy(new QPushButton(main.textOr(u"BATCH_COPY"_s, u"Copy"_s))),
      m_save(new QPushButton(main.textOr(u"BATCH_SAVE"_s, u"Save..."_s)))
{
    m_list->setObjectName(listName);
    m_list->setUniformItemSizes(true);
    m_list->setItemDelegate(m_delegate);
    m_list->setIconSize({fontMetrics().height(), fontMetrics().height()});
    m_list->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_list->setAccessibleName(main.textOr(u"BATCH_LOG"_s, u"Log"_s));
    m_whole->setObjectName(u"WholeLine"_s);
    m_whole->setAccessibleName(m_list->accessibleName());
    m_whole->setReadOnly(true);
    m_whole->setFocusPolicy(Qt::ClickFocus);
    m_whole->setFixedHeight(wholeLines * m_whole->fontMetrics().lineSpacing() + 12);
    m_onlyRemarks->setObjectName(u"OnlyRemarks"_s);
    m_copy->setObjectName(u"CopyLog"_s);
    m_save->setObjectName(u"SaveLog"_s);
    auto* below = new QHBoxLayout;
    below->addWidget(m_onlyRemarks);
    below->addStretch();
    for (QPushButton* button : {m_copy, m_save}) {
        button->setAutoDefault(true);
        below->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_whole);
    layout->addLayout(below);
    m_showing.setSingleShot(true);
    connect(&m_showing, &QTimer::timeout, this, &RunLog::showNewLines);
    connect(m_list, &QListWidget::currentItemChanged, this, &RunLog::showWhole);
    // What makes the list smaller, such as the summary of a run, must not hide the line that was its last.
    QScrollBar* bar = m_list->verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int lowest) {
        if (bar->value() >= m_lowest && m_list->currentRow() == m_list->count() - 1)
            bar->setValue(lowest);
        m_lowest = lowest;
    });
    connect(m_onlyRemarks, &QCheckBox::toggled, this, &RunLog::refill);
    connect(m_copy, &QPushButton::clicked, this, [this] { QGuiApplication::clipboard()->setText(text()); });
    connect(m_save, &QPushButton::clicked, this, [this] { reportFailures(m_main, [this] { save(); }); });
    clear();
}

void RunLog::clear()
{
    m_lines.clear();
    m_remarks = 0;
    m_delegate->reset();
    m_whole->hide();
    refill();
}

void RunLog::append(const RunLine& line)
{
    m_lines << line;
    m_remarks += line.isRemark ? 1 : 0;
    if (!m_showing.isActive())
        m_showing.start();
}

void RunLog::showNewLines()
{
    m_showing.stop();
    if (m_listed == m_lines.size())
        return;
    addItems(m_listed);
    m_list->setCurrentRow(m_list->count() - 1);
}

void RunLog::refill()
{
    m_list->clear();
    addItems(0);
}

void RunLog::addItems(qsizetype from)
{
    const QIcon mark = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    const bool dark = palette().color(QPalette::Base).lightness() < 128;
    const QColor colour = dark ? QColor(255, 170, 90) : QColor(165, 60, 0);
    int widest = 0;
    for (const RunLine& line : m_lines.sliced(from)) {
        if (!line.isRemark && m_onlyRemarks->isChecked())
            continue;
        auto* item = new QListWidgetItem(line.text, m_list);
        if (line.isRemark) {
            item->setIcon(mark);
            item->setForeground(colour);
        }
        widest = std::max(widest, widthOf(line.text));
    }
    m_delegate->growTo(widest);
    m_listed = m_lines.size();
    for (QWidget* control : {static_cast<QWidget*>(m_copy), static_cast<QWidget*>(m_save)})
        control->setEnabled(!m_lines.isEmpty());
    m_onlyRemarks->setEnabled(m_remarks > 0 || m_onlyRemarks->isChecked());
}

int RunLog::widthOf(const QString& text) const
{
    return m_list->fontMetrics().horizontalAdvance(text) + besideText;
}

/// Once a line has needed the place for it, that stays: the list would jump with every line.
void RunLog::showWhole(const QListWidgetItem* line)
{
    m_whole->setPlainText(line ? line->text() : QString());
    if (line && widthOf(line->text()) > m_list->viewport()->width())
        m_whole->show();
}

QString RunLog::text() const
{
    QString all;
    for (const RunLine& line : m_lines)
        if (line.isRemark || !m_onlyRemarks->isChecked())
            all += line.text + u'\n';
    return all;
}

void RunLog::save()
{
    const QString folder = m_main.prompts.chooseFolder(QDir::homePath()).value_or(QString());
    if (folder.isEmpty())
        return;
    const QString name = window()->objectName() + u' ' +
                         QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH-mm-ss"_s) + ".txt"_L1;
    const QString path = pathIn(folder, name);
    writeWholeFile(path, text().toUtf8());
    Q_EMIT saved(QDir::toNativeSeparators(path));
}

} // namespace velmora
