#include "runs/RunLog.h"

#include "common/MMain.h"
#include "files/stored_path.h"
#include "files/whole_file.h"
#include "runs/log_model.h"
#include "windows/failure_report.h"

#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QStyle>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// What lies beside the text of an item: its mark, and the margins.
constexpr int besideText = 40;
/// How many lines a line may have that is shown whole; more of them scroll.
constexpr int wholeLines = 3;
/// How long new lines wait after others were shown, in milliseconds: the list goes through all of its lines
/// then.
constexpr int showingPause = 50;

} // namespace

/// Makes all lines as wide as the widest, so that the list asks only one of them for its size. To measure
/// each would take longer than all the rest: only those of more characters than any before are, and those
/// painted.
class LineDelegate : public QStyledItemDelegate {
public:
    explicit LineDelegate(QWidget* list) : QStyledItemDelegate(list), m_list(list) {}

    void reset()
    {
        m_widest = 0;
        m_longest = 0;
    }

    void take(const QString& text)
    {
        if (text.size() <= m_longest)
            return;
        m_longest = text.size();
        growTo(widthOf(text));
    }

    int widthOf(const QString& text) const
    {
        return m_list->fontMetrics().horizontalAdvance(text) + besideText;
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        growTo(widthOf(index.data().toString()));
        QStyledItemDelegate::paint(painter, option, index);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override
    {
        return {m_widest, option.fontMetrics.height() + 2};
    }

private:
    /// The list hears of it with the next window events, so that this may happen while it is painted.
    void growTo(int width) const
    {
        if (width <= m_widest)
            return;
        m_widest = width;
        Q_EMIT const_cast<LineDelegate*>(this)->sizeHintChanged({});
    }

    QWidget* m_list;
    mutable int m_widest = 0;
    qsizetype m_longest = 0;
};

RunLog::RunLog(MMain& main, const QString& listName)
    : m_main(main),
      m_lines(new LogModel(style()->standardIcon(QStyle::SP_MessageBoxWarning), this)),
      m_list(new QListView),
      m_delegate(new LineDelegate(m_list)),
      m_whole(new QPlainTextEdit),
      m_onlyRemarks(new QCheckBox(main.textOr(u"BATCH_ONLY"_s, u"Only Remarks"_s))),
      m_copy(new QPushButton(main.textOr(u"BATCH_COPY"_s, u"Copy"_s))),
      m_save(new QPushButton(main.textOr(u"BATCH_SAVE"_s, u"Save..."_s)))
{
    m_list->setObjectName(listName);
    m_list->setModel(m_lines);
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
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this, &RunLog::showWhole);
    // What makes the list smaller, such as the summary of a run, must not hide the line that was its last.
    QScrollBar* bar = m_list->verticalScrollBar();
    connect(bar, &QScrollBar::rangeChanged, this, [this, bar](int, int lowest) {
        if (bar->value() >= m_lowest && m_list->currentIndex().row() == m_lines->rowCount() - 1)
            bar->setValue(lowest);
        m_lowest = lowest;
    });
    connect(m_onlyRemarks, &QCheckBox::toggled, m_lines, &LogModel::showOnlyRemarks);
    connect(m_copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_lines->text()); });
    connect(m_save, &QPushButton::clicked, this, [this] { reportFailures(m_main, [this] { save(); }); });
    clear();
}

void RunLog::clear()
{
    m_lines->clear();
    m_showing.stop();
    m_showing.setInterval(0);
    m_delegate->reset();
    m_whole->hide();
    enableControls();
}

void RunLog::append(const RunLine& line)
{
    m_lines->take(line);
    m_delegate->take(line.text);
    if (!m_showing.isActive())
        m_showing.start();
}

void RunLog::showNewLines()
{
    m_showing.stop();
    m_showing.setInterval(showingPause);
    enableControls();
    if (m_lines->showNew())
        m_list->setCurrentIndex(m_lines->index(m_lines->rowCount() - 1));
}

qsizetype RunLog::remarks() const
{
    return m_lines->remarks();
}

void RunLog::enableControls()
{
    for (QPushButton* button : {m_copy, m_save})
        button->setEnabled(!m_lines->isEmpty());
    m_onlyRemarks->setEnabled(m_lines->remarks() > 0 || m_lines->onlyRemarks());
}

/// Once a line has needed the place for it, that stays: the list would jump with every line.
void RunLog::showWhole(const QModelIndex& line)
{
    const QString text = line.data().toString();
    m_whole->setPlainText(text);
    if (line.isValid() && m_delegate->widthOf(text) > m_list->viewport()->width())
        m_whole->show();
}

void RunLog::save()
{
    const QString folder = m_main.prompts.chooseFolder(QDir::homePath()).value_or(QString());
    if (folder.isEmpty())
        return;
    const QString name = window()->objectName() + u' ' +
                         QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH-mm-ss"_s) + ".txt"_L1;
    const QString path = pathIn(folder, name);
    writeWholeFile(path, m_lines->text().toUtf8());
    Q_EMIT saved(QDir::toNativeSeparators(path));
}

} // namespace velmora
