// The table editor.
#pragma once

#include "editor/many/FManyRecords.h"
#include "editor/window/EditorControls.h"

namespace velmora {

/// Lists, filters, sorts, creates, edits and deletes the records of every table that the user's rights name.
/// It knows no table: everything comes from the schema and the settings rows of the database.
class FParameters : public QWidget {
    Q_OBJECT

public:
    explicit FParameters(MMain& main, QWidget* parent = nullptr);

    /// Opens the first tab, unless it is open already or a record is being edited.
    void selectFirstTab();
    /// Opens the table with filters that leave the record, and selects it; `key` has the values of its key
    /// columns. Does nothing while a record is being edited, or where the user has no such tab.
    void showRecord(const QString& table, const QHash<QString, QString>& key);

    QSize sizeHint() const override;

Q_SIGNALS:
    /// The user wants to know how that phone's file stands.
    void statusWanted(const QString& company, const QString& phone);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void translate();
    void connectTable();
    void connectRecord();
    void connectTransfer();
    void connectKeys();

    void chooseTab();
    void refresh();
    void askForStatus();
    void goToTab(int tab);

    void carryOut(RecordAction action);
    void edit(RecordMode mode);
    void enter(const QStringList& record, bool all);
    void openPanel(RecordForm form, int field);
    void changeMany(FManyRecords::Kind kind);
    void copy() const;
    void write(bool goOn);
    void finishWriting(const RecordForm& written, bool reload);
    void tellIfHidden(const QStringList& values);
    void closePanel();
    bool editing() const { return m_ui.panel->form().has_value(); }
    void enterPressed(const QKeyEvent& event);
    void giveUp();
    bool mayDiscard();

    void arrange();
    void enableControls();

    MMain& m_main;
    const EditorControls m_ui;
    /// Looked up beforehand: no statement may fail when the window closes.
    QString m_discardQuestion;
    QAction* m_showStatus;
    /// The row that is being changed or deleted; rows may come before it meanwhile.
    QPersistentModelIndex m_editedRow;
    /// Whether the new record has begun with all values of another one, or with its key.
    bool m_duplicating = false;
};

} // namespace velmora
