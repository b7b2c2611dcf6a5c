#include "runs/SelectionPanel.h"

#include "common/MMain.h"
#include "windows/failure_report.h"
#include "windows/list_height.h"
#include "windows/wait_cursor.h"

#include <QCompleter>
#include <QFormLayout>
#include <QLineEdit>
#include <QListView>
#include <QStringListModel>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The entry of that code; -1 where it is not offered.
int entryOf(const QComboBox& list, const QString& code)
{
    return code.isEmpty()
               ? -1
               : list.findText(ListEntry{code, {}}.text(), Qt::MatchStartsWith | Qt::MatchCaseSensitive);
}

/// Entries in a list of that kind may be many thousands: they are one model, and neither the width nor the
/// height of each of them is asked for.
void prepareForMany(QComboBox& list)
{
    list.setModel(new QStringListModel(&list));
    list.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    for (QAbstractItemView* view : {list.view(), list.completer()->popup()})
        if (auto* entries = qobject_cast<QListView*>(view))
            entries->setUniformItemSizes(true);
}

} // namespace

void makeSearchable(QComboBox& list)
{
    list.setEditable(true);
    list.setInsertPolicy(QComboBox::NoInsert);
    list.completer()->setFilterMode(Qt::MatchContains);
    list.completer()->setCompletionMode(QCompleter::PopupCompletion);
    limitHeight(list);
    QObject::connect(list.lineEdit(), &QLineEdit::editingFinished, &list, [&list] {
        if (list.findText(list.currentText(), Qt::MatchFixedString) < 0)
            list.setEditText(list.itemText(list.currentIndex()));
    });
}

void chooseLastCompany(const MMain& main, QComboBox& companies)
{
    companies.setCurrentIndex(entryOf(companies, main.remembered.value(Remembered::lastCompany).toString()));
}

SelectionPanel::SelectionPanel(MMain& main, int lists, QWidget* parent) : QWidget(parent), m_main(main)
{
    auto* layout = new QFormLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    const QStringList captions = {u"Company"_s, u"Equipment"_s, u"Phone from"_s, u"Phone to"_s};
    for (int list = 1; list <= lists; ++list) {
        auto* filter = new QComboBox;
        filter->setObjectName(u"Filter_%1"_s.arg(list));
        filter->setEnabled(list == 1);
        filter->setMinimumContentsLength(30);
        makeSearchable(*filter);
        prepareForMany(*filter);
        auto* label = new QLabel(captions[list - 1]);
        label->setObjectName(u"FLab_%1"_s.arg(list));
        label->setBuddy(filter);
        layout->addRow(label, filter);
        m_filters << filter;
        connect(filter, &QComboBox::activated, this, [this, list] {
            reportFailures(m_main, [this, list] {
                const WaitCursor waiting;
                chosen(list);
            });
        });
    }
    fill(1, companies(m_main));
}

void SelectionPanel::chooseLast()
{
    const QString equipment = m_main.remembered.value(Remembered::lastEquipment).toString();
    reportFailures(m_main, [&] {
        if (choose(1, m_main.remembered.value(Remembered::lastCompany).toString()))
            choose(2, equipment);
    });
}

/// Chooses the entry of that code, if there is one, as a user would.
bool SelectionPanel::choose(int list, const QString& wanted)
{
    if (list > m_filters.size())
        return false;
    const int entry = entryOf(*m_filters[list - 1], wanted);
    if (entry < 0)
        return false;
    m_filters[list - 1]->setCurrentIndex(entry);
    chosen(list);
    return true;
}

void SelectionPanel::clearPhones()
{
    clear(3);
    clear(4);
}

void SelectionPanel::fillPhones(bool propose)
{
    // First of all: the query can fail, and then nothing of the model before may stay.
    clearPhones();
    fill(3, phonesOf(m_main, company(), equipment()));
    m_propose = propose;
    if (!propose)
        return;
    m_filters[2]->setCurrentIndex(0);
    fillPhoneTo();
}

int SelectionPanel::phoneCount() const
{
    return m_filters[3]->currentIndex() + 1;
}

QString SelectionPanel::code(int list) const
{
    return list > m_filters.size()
               ? QString()
               : codeOf(m_filters[list - 1]->itemText(m_filters[list - 1]->currentIndex()));
}

void SelectionPanel::chosen(int list)
{
    switch (list) {
    case 1:
        m_main.remembered.set(Remembered::lastCompany, company());
        for (int later = 2; later <= m_filters.size(); ++later)
            clear(later);
        Q_EMIT companyChosen();
        if (m_filters.size() > 1)
            fill(2, modelsOf(m_main, company()));
        break;
    case 2:
        m_main.remembered.set(Remembered::lastEquipment, equipment());
        Q_EMIT equipmentChosen();
        break;
    case 3:
        fillPhoneTo();
        Q_EMIT rangeChosen();
        break;
    default:
        Q_EMIT rangeChosen();
    }
}

void SelectionPanel::clear(int list)
{
    m_filters[list - 1]->clear();
    m_filters[list - 1]->setEnabled(false);
}

void SelectionPanel::fill(int list, const QList<ListEntry>& entries)
{
    QComboBox* filter = m_filters[list - 1];
    QStringList texts;
    for (const ListEntry& entry : entries)
        texts << entry.text();
    static_cast<QStringListModel*>(filter->model())->setStringList(texts);
    filter->setCurrentIndex(-1);
    filter->setEnabled(!entries.isEmpty());
}

void SelectionPanel::fillPhoneTo()
{
    const QString before = m_filters[3]->itemText(m_filters[3]->currentIndex());
    fill(4, phonesOf(m_main, company(), equipment(), phoneFrom()));
    const int kept = before.isEmpty() ? -1 : m_filters[3]->findText(before);
    const int proposed = m_propose ? m_filters[3]->count() - 1 : 0;
    m_filters[3]->setCurrentIndex(kept >= 0 ? kept : proposed);
}

} // namespace velmora
