#include "editor/list/RecordCount.h"

#include "common/MMain.h"
#include "editor/list/TablePane.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace velmora {

RecordCount::RecordCount(MMain& main, const TablePane& pane, QWidget* parent)
    : QLabel(parent),
      m_main(main),
      m_pane(pane),
      m_oneText(main.messageLine(u"M316"_s)),
      m_readText(main.messageLine(u"M209"_s, u"$$"_s)),
      m_loadingText(main.messageLine(u"M210"_s, u"$$"_s)),
      m_stoppedText(main.messageLine(u"M211"_s, u"$$"_s)),
      m_foundText(main.messageLine(u"M340"_s)),
      m_foundSoFarText(main.messageLine(u"M341"_s)),
      m_foundStoppedText(main.messageLine(u"M342"_s))
{
    connect(&pane, &TablePane::tableChanged, this, &RecordCount::count);
    connect(&pane.list(), &RecordView::loaded, this, &RecordCount::count);
    connect(&pane.list().records(), &QAbstractItemModel::rowsRemoved, this, &RecordCount::count);
}

const QString& RecordCount::pattern() const
{
    const RecordView& list = m_pane.list();
    if (list.records().isSearching())
        return list.isLoading() ? m_foundSoFarText : list.wasStopped() ? m_foundStoppedText : m_foundText;
    if (list.isLoading())
        return m_loadingText;
    if (list.wasStopped())
        return m_stoppedText;
    return list.records().rowCount() == 1 ? m_oneText : m_readText;
}

void RecordCount::count()
{
    if (!m_pane.isOpen()) {
        clear();
        return;
    }
    const QLocale language(m_main.language.toLower());
    const QString all = language.toString(m_pane.list().records().recordCount());
    const QString shown = language.toString(m_pane.list().records().rowCount());
    setText(QString(pattern()).replace("$$"_L1, all).replace("%1"_L1, shown).replace("%2"_L1, all));
}

} // namespace velmora
