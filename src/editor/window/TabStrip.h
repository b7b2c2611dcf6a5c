// The tabs of the table editor: `TabStrip`.
#pragma once

#include "editor/table_catalogue.h"

#include <QTabBar>

namespace velmora {

/// One tab for each table that the user's rights name.
class TabStrip : public QTabBar {
    Q_OBJECT

public:
    explicit TabStrip(MMain& main, QWidget* parent = nullptr);

    const TableTab& currentTab() const { return m_tabs[currentIndex()]; }
    /// The tab of the table; -1 where the user has none.
    int tabOf(const QString& table) const;

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    QList<TableTab> m_tabs;
};

} // namespace velmora
