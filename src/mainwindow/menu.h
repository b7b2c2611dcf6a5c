// The menu of the main window, and who may use it.
#pragma once

#include <QList>
#include <QString>

namespace velmora {

class MMain;

/// An item of the menu, or a submenu: one that others name as their parent.
struct MenuItem {
    QString control;
    /// Used where the database holds no caption.
    QString caption;
    /// The control of the submenu that holds it; empty on the menu bar.
    QString parent;
};

/// Every item, in the order of the menu; a submenu stands before what it holds.
const QList<MenuItem>& menuItems();

/// Whether the current user may use the item of that name, by the "AUTHM" rows alone.
bool hasMenuRight(MMain& main, const QString& control);

/// Whether the current user can get at the item: a right on it and on every submenu around it.
bool canReachMenuItem(MMain& main, const QString& control);

} // namespace velmora
