// A folder with a button to browse for it.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QWidget>

namespace velmora {

class MMain;

/// `PLab`, `LPath` and `BtPath`.
class FolderPicker : public QWidget {
    Q_OBJECT

public:
    explicit FolderPicker(MMain& main, QWidget* parent = nullptr);

    QString folder() const { return m_folder->text(); }
    void setFolder(const QString& folder);
    /// Whether the folder exists. One that holds a macro differs from phone to phone: then whether the part
    /// before the macro does.
    bool folderExists() const;
    void setBrowsable(bool browsable) { m_browse->setEnabled(browsable); }

Q_SIGNALS:
    void folderChanged();
    /// The user wants this folder to be proposed from now on.
    void rememberWanted();

private:
    void browse();
    void create();
    void noteExistence();

    MMain& m_main;
    QLabel* m_folder;
    QPushButton* m_browse;
    /// Makes the folder; there only where it does not exist.
    QPushButton* m_create;
    QPushButton* m_remember;
    bool m_existed = false;
};

} // namespace velmora
