// Writing the open table to a file and taking one in: `Export` and `Import`.
#pragma once

#include <QPushButton>

namespace velmora {

class MMain;
class TablePane;

class TransferActions : public QWidget {
    Q_OBJECT

public:
    TransferActions(MMain& main, TablePane& pane, QWidget* parent = nullptr);

    void allow(bool any);
    /// Opens the import of the open table with a text that somebody has pasted: rows with tabs between the
    /// values, the names of the columns above them.
    void importPasted(const QString& text);

Q_SIGNALS:
    /// What has been done.
    void told(const QString& text);
    /// The table has other records now.
    void written();

private:
    QPushButton* add(const QString& name, const QString& caption);
    void exportTo();
    void importFrom();
    void import(const QByteArray& text, const QString& source);

    MMain& m_main;
    TablePane& m_pane;
    QPushButton* m_export;
    QPushButton* m_import;
    QString m_clipboard;
    /// Where the last file was.
    QString m_folder;
};

} // namespace velmora
