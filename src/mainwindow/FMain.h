// The main window: a frame whose menu opens every other window as a child.
#pragma once

#include <QHash>
#include <QMainWindow>
#include <QMdiArea>
#include <QStackedWidget>

#include <functional>

namespace velmora {

class FStart;
class MMain;

/// The frame is given what its menu items do, so that it knows no other window. An item without an action is
/// disabled and says so in the status bar; so is one that the user has no right to. While no child is open it
/// shows the start page, which has the keyboard then.
class FMain : public QMainWindow {
    Q_OBJECT

public:
    using Actions = QHash<QString, std::function<void()>>;

    explicit FMain(MMain& main);

    /// Sets what each menu item does, by control name, and enables what the user may use.
    void setActions(const Actions& actions);

    /// Offers the languages on the start page; `stored` is the one that is stored now, `store` stores
    /// another.
    void offerLanguages(const QStringList& languages, const QString& stored,
                        const std::function<void(const QString&)>& store);

    /// Shows the child window of that name, made by `create` unless it exists already, and calls `prepare`
    /// with it. A new one has the focus in its first input.
    void showChild(const QString& name, const std::function<QWidget*()>& create,
                   const std::function<void(QWidget*)>& prepare = {});

    /// The name of the child that the user works in; empty where there is none.
    QString activeChild() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createMenu();
    void createWindowsMenu();
    void restoreChild(QMdiSubWindow& child);
    void keepChild(const QMdiSubWindow& child);
    void translateTitle();
    QMdiSubWindow* addChild(QWidget* content);
    QString hint(const QString& control, bool exists);
    QHash<QString, QAction*> reachableItems() const;
    void showStartPage();

    MMain& m_main;
    /// Of the start page and the children, one is shown.
    QStackedWidget* m_pages;
    FStart* m_start;
    QMdiArea* m_children;
    QHash<QString, QAction*> m_items;
    QHash<QString, bool> m_rights;
    bool m_closeAfterRun = false;
};

} // namespace velmora
