// The list of what a run has told.
#pragma once

#include "runs/run_report.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>

namespace velmora {

class LineDelegate;
class MMain;

/// Remarks stand out by colour and mark, and can be shown alone. All of it can be copied and saved. Below the
/// list: `WholeLine`, which shows a current line that is wider than the list, `OnlyRemarks`, `CopyLog` and
/// `SaveLog`.
class RunLog : public QWidget {
    Q_OBJECT

public:
    RunLog(MMain& main, const QString& listName);

    void clear();
    /// Adds a line. It gets into the list with the next window events: one by one, a hundred thousand would
    /// take minutes.
    void append(const RunLine& line);
    /// Shows what is not in the list yet.
    void showNewLines();
    qsizetype remarks() const { return m_remarks; }

Q_SIGNALS:
    /// All lines have been written into this file.
    void saved(const QString& path);

private:
    void addItems(qsizetype from);
    void refill();
    int widthOf(const QString& text) const;
    void showWhole(const QListWidgetItem* line);
    QString text() const;
    void save();

    MMain& m_main;
    QListWidget* m_list;
    LineDelegate* m_delegate;
    QPlainTextEdit* m_whole;
    QCheckBox* m_onlyRemarks;
    QPushButton* m_copy;
    QPushButton* m_save;
    QList<RunLine> m_lines;
    qsizetype m_listed = 0;
    qsizetype m_remarks = 0;
    /// How far the list could be scrolled down before it got its present size.
    int m_lowest = 0;
    QTimer m_showing;
};

} // namespace velmora
