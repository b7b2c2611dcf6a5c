#include "mainwindow/FStart.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "mainwindow/company_overview.h"
#include "windows/failure_report.h"
#include "windows/wait_cursor.h"

#include <QAction>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QShowEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The first column of the companies that is a number of phones: of all, then of each model.
constexpr int firstCount = 2;

/// The items of the menu by which a company with phones is usually used next, and one that has none yet.
const QStringList nextWithPhones = {u"GenConf"_s, u"GenStatus"_s, u"Reboot"_s,
                                    u"PbGen"_s,   u"PbImp"_s,     u"PbExp"_s};
const QStringList nextWithoutPhones = {u"Ranges"_s, u"Config"_s};

/// An item of the menu, and the title of the window that it opens: the code of the text, and what stands for
/// it where the database holds none.
struct Step {
    QString control;
    QString title;
    QString design;
};

/// In the order in which the work is usually done.
const QList<Step>& steps()
{
    static const QList<Step> all = {
        {u"Config"_s, u"FPARAMETERS"_s, u"Configuration"_s},
        {u"Ranges"_s, u"FRGEN"_s, u"Generation of Ranges"_s},
        {u"GenConf"_s, u"FGENERATE"_s, u"Generation of Parameter Files"_s},
        {u"GenStatus"_s, u"FSTATUS"_s, u"Status of Phones"_s},
        {u"Reboot"_s, u"FREBOOT"_s, u"Reboot of Phones"_s},
        {u"PbGen"_s, u"FPBGEN"_s, u"Generation of the Phone Book"_s},
        {u"PbImp"_s, u"FPBIMP"_s, u"Import of the Phone Book"_s},
        {u"PbExp"_s, u"FPBEXP"_s, u"Export of the Phone Book"_s},
        {u"Help1"_s, u"FRMBROWSER"_s, u"Manual"_s},
    };
    return all;
}

/// A button that Return presses too.
QPushButton* button(const QString& name, const QString& text)
{
    auto* made = new QPushButton(text);
    made->setObjectName(name);
    made->setAutoDefault(true);
    return made;
}

QLabel* heading(const QString& text)
{
    auto* made = new QLabel(text);
    QFont font = made->font();
    font.setBold(true);
    made->setFont(font);
    made->setWordWrap(true);
    return made;
}

/// The codes of all models of which somebody has phones.
QStringList modelsOf(const QList<CompanyOverview>& companies)
{
    QStringList models;
    for (const CompanyOverview& company : companies)
        models << company.phones.keys();
    models.removeDuplicates();
    models.sort();
    return models;
}

QTreeWidgetItem* entryOf(const CompanyOverview& company, const QStringList& models)
{
    auto* entry = new QTreeWidgetItem({company.code, company.name, QString::number(company.allPhones())});
    for (const QString& model : models)
        entry->setText(entry->columnCount(),
                       company.phones.contains(model) ? QString::number(company.phones[model]) : QString());
    for (int column = firstCount; column < entry->columnCount(); ++column)
        entry->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    return entry;
}

} // namespace

FStart::FStart(MMain& main) : m_main(main)
{
    setObjectName(u"FStart"_s);
    auto* left = new QVBoxLayout;
    auto* columns = new QHBoxLayout(this);
    columns->addLayout(left);
    left->addWidget(createSteps(), 1);
    columns->addWidget(createCompanies(), 1);
    left->addWidget(createLanguages());
}

QWidget* FStart::createSteps()
{
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->addWidget(heading(m_main.messageLine(u"M301"_s)));
    for (const Step& step : steps()) {
        QPushButton* made = button("Step_"_L1 + step.control, m_main.textOr(step.title, step.design));
        layout->addWidget(made);
        m_steps.insert(step.control, made);
    }
    layout->addStretch(1);
    return column;
}

QWidget* FStart::createCompanies()
{
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    const QString caption = m_main.messageLine(u"M302"_s);
    m_companies = new QTreeWidget;
    m_companies->setObjectName(u"Companies"_s);
    m_companies->setAccessibleName(caption);
    m_companies->setRootIsDecorated(false);
    m_companies->setUniformRowHeights(true);
    m_companies->setAllColumnsShowFocus(true);
    m_companies->header()->setStretchLastSection(false);
    m_hint = new QLabel;
    m_hint->setObjectName(u"Hint"_s);
    m_hint->setWordWrap(true);
    m_hint->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_hint->setTextFormat(Qt::PlainText);
    layout->addWidget(heading(caption));
    layout->addWidget(m_companies, 1);
    m_next = new QLabel;
    m_next->setObjectName(u"Next"_s);
    m_next->setWordWrap(true);
    m_next->setTextFormat(Qt::PlainText);
    layout->addWidget(m_next);
    layout->addWidget(m_hint, 1);
    connect(m_companies, &QTreeWidget::itemSelectionChanged, this,
            [this] { choose(m_companies->selectedItems().value(0)); });
    connect(m_companies, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* company, int place) { open(*company, place); });
    return column;
}

QWidget* FStart::createLanguages()
{
    m_languageBox = new QWidget;
    auto* layout = new QVBoxLayout(m_languageBox);
    m_languageNote = new QLabel(m_main.messageLine(u"M303"_s));
    m_languageNote->setObjectName(u"LanguageNote"_s);
    m_languageNote->setWordWrap(true);
    m_languageRow = new QHBoxLayout;
    layout->addWidget(m_languageNote);
    layout->addLayout(m_languageRow);
    m_languageBox->hide();
    return m_languageBox;
}

void FStart::setItems(const QHash<QString, QAction*>& items)
{
    for (auto step = m_steps.begin(); step != m_steps.end(); ++step) {
        QAction* action = items.value(step.key());
        step.value()->setVisible(action);
        step.value()->disconnect(this);
        if (action)
            connect(step.value(), &QPushButton::clicked, this, [action] { action->trigger(); });
    }
}

void FStart::offerLanguages(const QStringList& languages, const QString& stored,
                            const std::function<void(const QString&)>& store)
{
    for (const QString& language : languages) {
        QPushButton* made = button("Language_"_L1 + language, language);
        made->setEnabled(language != stored);
        connect(made, &QPushButton::clicked, this,
                [this, language, store] { reportFailures(m_main, [&] { storeLanguage(language, store); }); });
        m_languageRow->addWidget(made);
        m_languages.insert(language, made);
    }
    m_languageBox->setVisible(m_languages.size() > 1);
}

void FStart::storeLanguage(const QString& language, const std::function<void(const QString&)>& store)
{
    store(language);
    for (auto each = m_languages.begin(); each != m_languages.end(); ++each)
        each.value()->setEnabled(each.key() != language);
    m_languageNote->setText(m_main.messageLine(u"M304"_s, language));
}

void FStart::focusFirst()
{
    QWidget* first = m_companies;
    for (qsizetype step = steps().size(); step > 0; --step)
        if (QPushButton* made = m_steps[steps()[step - 1].control]; made->isVisibleTo(this))
            first = made;
    first->setFocus(Qt::TabFocusReason);
}

void FStart::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    // What can't be read stands on the page: no box is due, since nobody has asked for anything.
    try {
        readCompanies();
    } catch (const DatabaseError& error) {
        const QString reason = unreachableReason(m_main, error);
        showHint(reason.isEmpty() ? error.description() : reason);
    }
    if (!event->spontaneous())
        focusFirst();
}

void FStart::readCompanies()
{
    const WaitCursor waiting;
    const QSignalBlocker quiet(m_companies);
    fillCompanies();
    const QString last = m_main.remembered.value(Remembered::lastCompany).toString();
    for (int row = 0; row < m_companies->topLevelItemCount(); ++row)
        if (QTreeWidgetItem* company = m_companies->topLevelItem(row); company->text(0) == last)
            m_companies->setCurrentItem(company);
    choose(m_companies->currentItem());
}

void FStart::fillCompanies()
{
    const QList<CompanyOverview> companies = companyOverview(m_main);
    const QStringList models = modelsOf(companies);
    QStringList captions = {m_main.textOr(u"CO_CODE"_s, u"Company"_s),
                            m_main.textOr(u"CO_DESC"_s, u"Name of the company"_s),
                            m_main.textOr(u"FPARAMETERS_PHONES"_s, u"Phones"_s)};
    for (const QString& model : models)
        captions << (model.isEmpty() ? u"\u2013"_s : model);
    QList<QTreeWidgetItem*> entries;
    for (const CompanyOverview& company : companies)
        entries << entryOf(company, models);
    m_companies->clear();
    m_companies->setColumnCount(static_cast<int>(captions.size()));
    m_companies->setHeaderLabels(captions);
    m_companies->addTopLevelItems(entries);
    for (int column = firstCount; column < captions.size(); ++column)
        m_companies->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    for (int column = 0; column < captions.size(); ++column)
        m_companies->resizeColumnToContents(column);
    showHint(companies.isEmpty() ? m_main.messageLine(u"M300"_s, m_steps[u"Config"_s]->text()) : QString());
}

/// What is usually done next with the company, of what the user can get at; null where that is nothing.
QPushButton* FStart::nextStep(const QTreeWidgetItem& company) const
{
    for (const QString& step : company.text(firstCount) == "0"_L1 ? nextWithoutPhones : nextWithPhones)
        if (m_steps[step]->isVisibleTo(this))
            return m_steps[step];
    return nullptr;
}

/// The windows that are opened next propose it.
void FStart::choose(const QTreeWidgetItem* company)
{
    const QPushButton* next = company ? nextStep(*company) : nullptr;
    m_next->setText(next ? m_main.messageLine(u"M236"_s).arg(next->text(), company->text(0)) : QString());
    if (company)
        m_main.remembered.set(Remembered::lastCompany, company->text(0));
}

void FStart::open(const QTreeWidgetItem& company, int column)
{
    choose(&company); // the keyboard may be on one that is not selected
    const bool ofModel = column > firstCount && !company.text(column).isEmpty();
    if (ofModel)
        m_main.remembered.set(Remembered::lastEquipment, m_companies->headerItem()->text(column));
    if (QPushButton* next = nextStep(company))
        next->click();
}

/// Shows the text in place of the companies; the companies where it is empty.
void FStart::showHint(const QString& text)
{
    m_hint->setText(text);
    m_hint->setVisible(!text.isEmpty());
    m_companies->setVisible(text.isEmpty());
    m_next->setVisible(text.isEmpty());
}

} // namespace velmora
