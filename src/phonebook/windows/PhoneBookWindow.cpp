#include "phonebook/windows/PhoneBookWindow.h"

#include "common/MMain.h"
#include "windows/failure_report.h"

using namespace Qt::StringLiterals;

namespace velmora {

PhoneBookWindow::PhoneBookWindow(MMain& main, const QString& name, const QString& title,
                                 const QString& startCaption, int lists, const QString& folderCode)
    : BatchWindow(main, name, title, {u"List1"_s, u"Ok"_s, startCaption}),
      m_lists(lists),
      m_folderCode(folderCode),
      m_selection(new SelectionPanel(main, lists)),
      m_folder(new FolderPicker(main))
{
    addInput(m_selection);
    addInput(m_folder);
    connect(m_selection, &SelectionPanel::companyChosen, this, [this] {
        m_chosen = false;
        m_folder->setFolder({});
        m_folder->setBrowsable(false);
        if (m_lists == 1)
            choose();
        enableStart();
    });
    connect(m_selection, &SelectionPanel::equipmentChosen, this, &PhoneBookWindow::choose);
    connect(m_folder, &FolderPicker::rememberWanted, this, [this] {
        reportFailures(m_main, [this] {
            remember(m_main, m_selection->company() + m_selection->equipment(), m_folderCode,
                     m_folder->folder());
            showStatus(m_main.messageLine(u"M315"_s));
        });
    });
}

void PhoneBookWindow::choose()
{
    reportFailures(m_main, [this] {
        m_chosen = false;
        m_folder->setFolder({});
        const QString company = m_selection->company();
        const QString equipment = m_selection->equipment();
        m_chosen = hasPhones(m_main, company, equipment);
        m_folder->setBrowsable(m_chosen);
        m_folder->setFolder(rememberedFolder(m_main, company + equipment, m_folderCode));
    });
    enableStart();
}

PhoneBookRequest PhoneBookWindow::request() const
{
    return {m_selection->company(), m_selection->equipment(), m_folder->folder()};
}

void PhoneBookWindow::stop()
{
    m_main.stopFlag = true;
}

} // namespace velmora
