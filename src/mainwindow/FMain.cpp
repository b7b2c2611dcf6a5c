#include "mainwindow/FMain.h"

#include "common/MMain.h"
#include "mainwindow/FStart.h"
#include "mainwindow/menu.h"
#include "schema/version.h"
#include "windows/captions.h"
#include "windows/failure_report.h"
#include "windows/wait_cursor.h"

#include <QAction>
#include <QActionGroup>
#include <QCloseEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool isSubmenu(const QString& control)
{
    return std::any_of(menuItems().begin(), menuItems().end(),
                       [&control](const MenuItem& item) { return item.parent == control; });
}

/// Makes a child as small, and moves it as far, as it takes to lie inside. The main window may have been
/// larger when its place was kept. A child whose parts need more place than there is keeps that: the area
/// scrolls, while what is cut off could not be reached.
void moveInside(QMdiSubWindow& child, const QRect& area)
{
    const QSize least = child.minimumSizeHint();
    const int bar = child.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    const QSize room(area.width() - (least.height() > area.height() ? bar : 0),
                     area.height() - (least.width() > area.width() ? bar : 0));
    child.resize(child.size().boundedTo(room).expandedTo(least));
    child.move(std::clamp(child.x(), 0, std::max(0, area.width() - child.width())),
               std::clamp(child.y(), 0, std::max(0, area.height() - child.height())));
}

/// Moves the focus to what Tab would visit first in a window.
void focusFirstInput(QWidget& window)
{
    for (QWidget* next = window.nextInFocusChain(); next != &window; next = next->nextInFocusChain())
        if (window.isAncestorOf(next) && next->isVisible() && next->isEnabled() &&
            next->focusPolicy() & Qt::TabFocus) {
            next->setFocus(Qt::TabFocusReason);
            return;
        }
}

} // namespace

FMain::FMain(MMain& main)
    : m_main(main), m_pages(new QStackedWidget), m_start(new FStart(main)), m_children(new QMdiArea)
{
    setObjectName(u"FMain"_s);
    setWindowTitle(u"Velmora"_s);
    m_children->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_children->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_pages->addWidget(m_start);
    m_pages->addWidget(m_children);
    setCentralWidget(m_pages);
    statusBar();
    translateTitle();
    createMenu();
    setActions({});
    resize(QSize(1100, 760).boundedTo(screen()->availableSize()));
    restoreGeometry(m_main.remembered.value(objectName()).toByteArray());
    connect(&m_main.batch, &Batch::runningChanged, this, [this](bool running) {
        if (!running && std::exchange(m_closeAfterRun, false))
            QMetaObject::invokeMethod(this, &FMain::close, Qt::QueuedConnection);
    });
}

void FMain::translateTitle()
{
    const QString text = m_main.GetDescription(u"FMAIN"_s);
    if (!text.isEmpty())
        setWindowTitle(text + u' ' + versionText() + " - "_L1 + m_main.userName);
}

void FMain::createMenu()
{
    QHash<QString, QMenu*> submenus;
    menuBar()->installEventFilter(this);
    for (const MenuItem& item : menuItems()) {
        const QString caption = m_main.textOr("FMAIN_"_L1 + item.control.toUpper(), item.caption);
        QMenu* parent = submenus.value(item.parent);
        if (isSubmenu(item.control)) {
            QMenu* menu = menuBar()->addMenu(caption);
            menu->installEventFilter(this);
            submenus.insert(item.control, menu);
            m_items.insert(item.control, menu->menuAction());
        } else {
            m_items.insert(item.control, parent ? parent->addAction(caption) : menuBar()->addAction(caption));
        }
        m_items[item.control]->setObjectName(item.control);
        m_rights.insert(item.control, hasMenuRight(m_main, item.control));
    }
    createWindowsMenu();
    m_items[u"Quit"_s]->setShortcut(Qt::CTRL | Qt::Key_Q); // QKeySequence::Quit is empty on some desktops
    m_items[u"Help1"_s]->setShortcut(QKeySequence::HelpContents);
}

/// Arranging the children is everybody's right.
void FMain::createWindowsMenu()
{
    auto* menu = new QMenu(m_main.textOr(u"WINDOWS"_s, u"Windows"_s), this);
    menuBar()->insertMenu(m_items[u"Help"_s], menu);
    const auto add = [&](const QString& code, const QString& caption, const QKeySequence& keys,
                         void (QMdiArea::*arrange)()) {
        menu->addAction(m_main.textOr(code, caption), keys, m_children, arrange);
    };
    add(u"WINDOWS_TILE"_s, u"Tile"_s, {}, &QMdiArea::tileSubWindows);
    add(u"WINDOWS_CASCADE"_s, u"Cascade"_s, {}, &QMdiArea::cascadeSubWindows);
    add(u"WINDOWS_NEXT"_s, u"Next"_s, Qt::Key_F6, &QMdiArea::activateNextSubWindow);
    add(u"WINDOWS_CLOSE"_s, u"Close"_s, Qt::CTRL | Qt::Key_W, &QMdiArea::closeActiveSubWindow);
    auto* windows = new QActionGroup(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu, windows] {
        qDeleteAll(windows->actions());
        if (!m_children->subWindowList().isEmpty())
            windows->addAction(menu->addSeparator());
        for (QMdiSubWindow* child : m_children->subWindowList()) {
            QAction* action = menu->addAction(child->windowTitle(), this,
                                              [this, child] { m_children->setActiveSubWindow(child); });
            action->setCheckable(true);
            action->setChecked(child == m_children->activeSubWindow());
            windows->addAction(action);
        }
    });
}

void FMain::restoreChild(QMdiSubWindow& child)
{
    const QRect kept = m_main.remembered.value(child.widget()->objectName()).toRect();
    if (kept.isValid())
        child.setGeometry(kept);
}

void FMain::keepChild(const QMdiSubWindow& child)
{
    if (child.widget() && !child.isMaximized() && !child.isMinimized())
        m_main.remembered.set(child.widget()->objectName(), child.geometry());
}

void FMain::setActions(const Actions& actions)
{
    Actions all = actions;
    all.insert(u"Quit"_s, [this] { close(); });
    for (const MenuItem& item : menuItems()) {
        QAction* action = m_items[item.control];
        const bool exists = all.contains(item.control) || isSubmenu(item.control);
        action->setEnabled(exists && m_rights[item.control]);
        action->setStatusTip(hint(item.control, exists));
        action->disconnect(this);
        if (all.contains(item.control))
            connect(action, &QAction::triggered, this, [this, open = all[item.control]] {
                reportFailures(m_main, [&open] {
                    const WaitCursor waiting;
                    open();
                });
            });
    }
    m_start->setItems(reachableItems());
}

/// The items that can be chosen in the menu, by control name.
QHash<QString, QAction*> FMain::reachableItems() const
{
    QHash<QString, QAction*> reachable;
    for (const MenuItem& item : menuItems())
        if (m_items[item.control]->isEnabled() && (item.parent.isEmpty() || reachable.contains(item.parent)))
            reachable.insert(item.control, m_items[item.control]);
    return reachable;
}

void FMain::offerLanguages(const QStringList& languages, const QString& stored,
                           const std::function<void(const QString&)>& store)
{
    m_start->offerLanguages(languages, stored, store);
}

/// Shows the start page in place of the last child.
void FMain::showStartPage()
{
    if (m_children->subWindowList().isEmpty())
        m_pages->setCurrentWidget(m_start);
}

QString FMain::hint(const QString& control, bool exists)
{
    if (!m_rights[control])
        return m_main.messageLine(u"M208"_s, m_main.userName);
    return exists ? QString() : m_main.messageLine(u"M207"_s);
}

void FMain::showChild(const QString& name, const std::function<QWidget*()>& create,
                      const std::function<void(QWidget*)>& prepare)
{
    const QList<QMdiSubWindow*> children = m_children->subWindowList();
    const auto existing = std::find_if(children.begin(), children.end(), [&name](QMdiSubWindow* child) {
        return child->widget() && child->widget()->objectName() == name;
    });
    const bool isNew = existing == children.end();
    QWidget* content = isNew ? create() : nullptr;
    m_pages->setCurrentWidget(m_children);
    QMdiSubWindow* child = isNew ? addChild(content) : *existing;
    if (child->isMinimized())
        child->showNormal();
    else
        child->show();
    m_children->setActiveSubWindow(child);
    if (isNew) {
        moveInside(*child, m_children->viewport()->rect());
        focusFirstInput(*child->widget());
    }
    if (prepare)
        prepare(child->widget());
}

QString FMain::activeChild() const
{
    const QMdiSubWindow* child = m_children->activeSubWindow();
    return child && child->widget() ? child->widget()->objectName() : QString();
}

QMdiSubWindow* FMain::addChild(QWidget* content)
{
    QMdiSubWindow* child = m_children->addSubWindow(content);
    child->setAttribute(Qt::WA_DeleteOnClose);
    child->installEventFilter(this);
    connect(child, &QObject::destroyed, this, &FMain::showStartPage, Qt::QueuedConnection);
    // The menu's Close has the same keys, and of two neither would work.
    for (QAction* action : child->systemMenu()->actions())
        action->setShortcut({});
    restoreChild(*child);
    return child;
}

void FMain::closeEvent(QCloseEvent* event)
{
    if (m_main.batch.running()) {
        m_closeAfterRun = true;
        m_main.batch.requestStop();
        event->ignore();
        return;
    }
    m_children->closeAllSubWindows();
    event->setAccepted(!m_children->currentSubWindow());
    if (event->isAccepted())
        m_main.remembered.set(objectName(), saveGeometry());
}

bool FMain::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Close)
        if (const auto* child = qobject_cast<QMdiSubWindow*>(watched))
            keepChild(*child);
    // Disabled items are never highlighted, so their hints are shown where the mouse passes over them.
    if (event->type() == QEvent::MouseMove) {
        const QPoint position = static_cast<QMouseEvent*>(event)->position().toPoint();
        auto* bar = qobject_cast<QMenuBar*>(watched);
        auto* menu = qobject_cast<QMenu*>(watched);
        const QAction* action = bar ? bar->actionAt(position) : menu ? menu->actionAt(position) : nullptr;
        if (action && !action->isEnabled())
            statusBar()->showMessage(action->statusTip());
        else
            statusBar()->clearMessage();
    }
    return QMainWindow::eventFilter(watched, event);
}

} // namespace velmora
