// The table editor.
#pragma once

#include "editor/windows/FilterPanel.h"
#include "editor/windows/RecordPanel.h"
#include "editor/windows/RecordView.h"
#include "editor/windows/editor_layout.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QTabBar>

#include <optional>

namespace velmora {

/// Lists, filters, sorts, creates, edits and deletes the records of every table that the user's rights name.
/// It knows no table: everything comes from the schema and the settings rows of the database.
class FParameters : public QWidget {
    Q_OBJECT

public:
    explicit FParameters(MMain& main, QWidget* parent = nullptr);

    /// Opens the first tab, unless it is open already or a record is being edited.
    void selectFirstTab();

    QSize sizeHint() const override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createActions();
    void createTabs();
    void translate();
    void connectControls();

    void chooseTab();
    void askPassword();
    /// `chosen` are the filters, where they are to stay.
    void FormList(const QList<KeyFilter>& chosen = {});
    void clearFilters();
    void RempList();

    void edit(RecordMode mode);
    RecordForm::Fill pickLists();
    void write();
    void finishWriting(const RecordForm& written, bool reload);
    void tellIfHidden(const QStringList& values);
    void closePanel();
    bool editing() const { return m_form.has_value(); }
    /// Whether a table's records may be seen and changed.
    bool isOpen() const { return m_access != Access::False && !m_table.columns.isEmpty(); }
    void enterPressed(bool atOnce);
    void refresh();
    void goToTab(int tab);
    bool stopLoading();
    bool mayDiscard();

    void arrange();
    void SortTabFields();
    void enableControls();
    void showCount();
    void showError(const QString& text);

    MMain& m_main;
    QWidget* m_topRow;
    QAction* m_new;
    QAction* m_edit;
    QAction* m_delete;
    /// `MnuRecord`: the actions, as the popup of a record.
    QMenu* m_record;
    QLabel* m_count;
    QTabBar* m_strip;
    QWidget* m_pane;
    RecordView* m_list;
    FilterPanel* m_filters;
    RecordPanel* m_panel;
    QPushButton* m_ok;
    QPushButton* m_cancel;
    QLabel* m_error;
    int m_rowHeight;

    /// Looked up beforehand: they are needed where no statement may fail. "$$" stands for a number.
    QString m_countText;
    QString m_loadingText;
    QString m_stoppedText;
    QString m_discardQuestion;

    QList<TableTab> m_tabs;
    /// The table of the chosen tab; without columns while none could be opened.
    TableDescription m_table;
    Access m_access = Access::False;
    std::optional<RecordForm> m_form;
    /// The row that is being changed or deleted; rows may come before it meanwhile.
    QPersistentModelIndex m_editedRow;
};

} // namespace velmora
