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

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    QList<TableTab> m_tabs;
};

} // namespace velmora
