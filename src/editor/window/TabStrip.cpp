#include "editor/window/TabStrip.h"

#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

TabStrip::TabStrip(MMain& main, QWidget* parent) : QTabBar(parent), m_tabs(tableTabs(main))
{
    setObjectName(u"TabStrip"_s);
    setExpanding(false);
    setDocumentMode(true);
    setElideMode(Qt::ElideNone);
    for (const TableTab& tab : m_tabs)
        setTabToolTip(addTab(tab.caption), tab.table);
    // The arrow keys scroll the tabs too: two stops less on the way through the window.
    for (QToolButton* scroll : findChildren<QToolButton*>())
        scroll->setFocusPolicy(Qt::NoFocus);
}

int TabStrip::tabOf(const QString& table) const
{
    const auto found = std::find_if(m_tabs.begin(), m_tabs.end(),
                                    [&table](const TableTab& tab) { return tab.table == table; });
    return found == m_tabs.end() ? -1 : static_cast<int>(found - m_tabs.begin());
}

/// Turning the wheel over the tabs must not choose another table by accident.
void TabStrip::wheelEvent(QWheelEvent* event)
{
    event->accept();
}

} // namespace velmora
