#include "status/window/PhonePages.h"

#include "common/MMain.h"
#include "status/phone_status.h"
#include "windows/failure_report.h"
#include "windows/remark_colour.h"
#include "windows/wait_cursor.h"

#include <QHash>

#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// A list that is filled whole: at most as many rows as a phone has parameters.
QTreeWidget* createPage(const QString& name)
{
    auto* page = new QTreeWidget;
    page->setObjectName(name);
    page->setRootIsDecorated(false);
    page->setAlternatingRowColors(true);
    page->setUniformRowHeights(true);
    page->setSelectionMode(QAbstractItemView::ExtendedSelection);
    page->setTextElideMode(Qt::ElideRight);
    return page;
}

/// The table of the editor that holds the value, and where there.
std::pair<QString, QHash<QString, QString>> recordOf(const Phone& phone, const ExplainedParameter& parameter)
{
    const QString model = parameter.model.isEmpty() ? phone.equipment : parameter.model;
    switch (parameter.source) {
    case ValueSource::Company:
        return {u"COMPANY_PARAMETERS"_s,
                {{u"CO_CODE"_s, phone.company}, {u"EQ_CODE"_s, model}, {u"PA_CODE"_s, parameter.code}}};
    case ValueSource::Phone:
        return {u"PHONES_PARAMETERS"_s,
                {{u"CO_CODE"_s, phone.company},
                 {u"EQ_CODE"_s, model},
                 {u"PH_CODE"_s, phone.code},
                 {u"PA_CODE"_s, parameter.code}}};
    default:
        return {u"EQUIPMENT_PARAMETERS"_s, {{u"EQ_CODE"_s, model}, {u"PA_CODE"_s, parameter.code}}};
    }
}

} // namespace

PhonePages::PhonePages(MMain& main)
    : m_main(main), m_differences(createPage(u"PageDifferences"_s)), m_values(createPage(u"PageValues"_s))
{
    const auto text = [this](const QString& code, const QString& design) {
        return m_main.textOr(code, design);
    };
    const QString parameter = text(u"PA_CODE"_s, u"Parameter"_s);
    const QString description = text(u"PA_DESC"_s, u"Description"_s);
    m_differences->setHeaderLabels({parameter, description, text(u"FSTATUS_INFILE"_s, u"In the file"_s),
                                    text(u"FSTATUS_NOW"_s, u"Now"_s)});
    m_values->setHeaderLabels({parameter, description, text(u"FSTATUS_VALUE"_s, u"Value as written"_s),
                               text(u"LE_CODE"_s, u"Level"_s), text(u"FSTATUS_SOURCE"_s, u"From"_s),
                               text(u"FSTATUS_STORED"_s, u"As stored"_s),
                               text(u"FSTATUS_REMARK"_s, u"Remark"_s)});
    addTab(m_differences, text(u"FSTATUS_PAGEDIFF"_s, u"Differences"_s));
    addTab(m_values, text(u"FSTATUS_PAGEVALUES"_s, u"Values"_s));
    setObjectName(u"Pages"_s);
    connect(this, &QTabWidget::currentChanged, this,
            [this] { reportFailures(m_main, [this] { showPage(); }); });
    // Once the key has been dealt with: it must not get to another window, nor to the start button.
    connect(m_values, &QTreeWidget::itemActivated, this, &PhonePages::openInEditor, Qt::QueuedConnection);
}

void PhonePages::showPhone(const Phone& phone, const std::optional<GenerationRequest>& request)
{
    m_phone = phone;
    m_request = request;
    showPage();
}

void PhonePages::forgetPhone()
{
    m_phone.reset();
    showPage();
}

void PhonePages::showPage()
{
    m_differences->clear();
    m_values->clear();
    m_explained.clear();
    if (!m_phone)
        return;
    const WaitCursor waiting;
    m_explained = explain(m_main, *m_phone);
    if (currentWidget() == m_values)
        showValues();
    else if (m_request)
        showDifferences();
}

void PhonePages::showDifferences()
{
    QHash<QString, QString> descriptions;
    for (const ExplainedParameter& parameter : m_explained)
        descriptions.insert(parameter.code, parameter.description);
    const QString absent = m_main.textOr(u"FSTATUS_ABSENT"_s, u"(absent)"_s);
    for (const Difference& difference : differencesOf(m_main, *m_request))
        m_differences->addTopLevelItem(
            new QTreeWidgetItem({difference.parameter, descriptions.value(difference.parameter),
                                 difference.inFile.value_or(absent), difference.now.value_or(absent)}));
    for (int column = 0; column < m_differences->columnCount(); ++column)
        m_differences->resizeColumnToContents(column);
}

void PhonePages::showValues()
{
    const QHash<ValueSource, QString> sources = {
        {ValueSource::Default, m_main.textOr(u"STATUS_DEFAULT"_s, u"default"_s)},
        {ValueSource::Company, m_main.textOr(u"STATUS_COMPANY"_s, u"company"_s)},
        {ValueSource::Phone, m_main.textOr(u"STATUS_PHONE"_s, u"phone"_s)},
        {ValueSource::Absent, m_main.textOr(u"STATUS_ABSENT"_s, u"absent"_s)}};
    QList<QTreeWidgetItem*> items;
    for (const ExplainedParameter& each : m_explained) {
        auto* item =
            new QTreeWidgetItem({each.code, each.description, each.value.value_or(QString()), each.level,
                                 sources.value(each.source), each.stored, each.remarks.join("; "_L1)});
        if (!each.remarks.isEmpty())
            for (int column = 0; column < m_values->columnCount(); ++column)
                item->setForeground(column, remarkColour());
        items << item;
    }
    m_values->addTopLevelItems(items);
    for (int column = 0; column < m_values->columnCount(); ++column)
        m_values->resizeColumnToContents(column);
}

void PhonePages::openInEditor()
{
    const int row = m_values->indexOfTopLevelItem(m_values->currentItem());
    if (row < 0 || row >= m_explained.size())
        return;
    const auto [table, key] = recordOf(*m_phone, m_explained[row]);
    Q_EMIT recordWanted(table, key);
}

} // namespace velmora
