// The window that shows what a file would do to a table, and takes it in.
#pragma once

#include "editor/transfer/table_import.h"
#include "editor/transfer/window/verdict_model.h"

#include <QCheckBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTreeView>

namespace velmora {

/// The verdicts on all lines, `Verdicts`, with their counts; `OnlyRefused` shows the refused ones alone,
/// `SkipRefused` leaves them out, `AddRanges` has missing codes of phones added. `Write` writes what it shows
/// or nothing; `Cancel` closes the window, or stops what goes on in it.
class FTableImport : public QDialog {
    Q_OBJECT

public:
    /// `source` is where the file comes from, for its reader.
    FTableImport(MMain& main, OpenTable table, TableFile file, const QString& source, QWidget* parent);

    /// Finds out the verdicts; window events run meanwhile.
    void check();
    void reject() override;

    QSize sizeHint() const override { return QDialog::sizeHint().expandedTo({860, 460}); }

Q_SIGNALS:
    /// The table has other records now.
    void written();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void createControls(const QString& source);
    void placeControls();
    QTreeView* createList();
    void write();
    void run(const std::function<void(const TransferProgress& progress)>& work);
    void show(CheckedLines lines);
    void showEnd(const std::optional<TableImport>& end);
    void askForSkipping();
    void enableControls();
    void copyLines() const;

    MMain& m_main;
    const OpenTable m_table;
    const TableFile m_file;
    VerdictTexts m_texts;
    VerdictModel* m_lines;
    QLabel* m_source;
    QLabel* m_further;
    QTreeView* m_list;
    QCheckBox* m_onlyRefused;
    QCheckBox* m_skipRefused;
    QCheckBox* m_addRanges;
    QLabel* m_counts;
    QLabel* m_status;
    QProgressBar* m_progress;
    QPushButton* m_write;
    QPushButton* m_cancel;
    /// What Cancel says while something goes on, otherwise, and when nothing is left to cancel. Looked up
    /// beforehand: what goes on can end with its database.
    QString m_stopCaption;
    QString m_cancelCaption;
    QString m_closeCaption;
    QString m_nothingText;
    bool m_running = false;
    bool m_stopped = false;
    bool m_written = false;
};

/// Opens that window over `parent` for the text of a file or of the clipboard. What can't be taken at all is
/// told instead, and nothing returned. The window goes when it is closed.
FTableImport* openImport(MMain& main, const OpenTable& table, const QByteArray& text, const QString& source,
                         QWidget* parent);

} // namespace velmora
