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
      m_stoppedText(main.messageLine(u"M211"_s, u"$$"_s))
{
    connect(&pane, &TablePane::tableChanged, this, &RecordCount::count);
    connect(&pane.list(), &RecordView::loaded, this, &RecordCount::count);
    connect(&pane.list().records(), &QAbstractItemModel::rowsRemoved, this, &RecordCount::count);
}

void RecordCount::count()
{
    if (!m_pane.isOpen()) {
        clear();
        return;
    }
    RecordView& list = m_pane.list();
    const QString number = QLocale(m_main.language.toLower()).toString(list.records().rowCount());
    const bool isOne = list.records().rowCount() == 1 && !list.isLoading() && !list.wasStopped();
    const QString& text = isOne               ? m_oneText
                          : list.isLoading()  ? m_loadingText
                          : list.wasStopped() ? m_stoppedText
                                              : m_readText;
    setText(QString(text).replace("$$"_L1, number));
}

} // namespace velmora
