#include "ranges/FRgen.h"

#include "common/MMain.h"
#include "ranges/ranges.h"
#include "runs/SelectionPanel.h"

#include <QFormLayout>
#include <QRegularExpressionValidator>

using namespace Qt::StringLiterals;

namespace velmora {

FRgen::FRgen(MMain& main)
    : BatchWindow(main, u"FRgen"_s, u"Ranges Generation"_s, {u"List1"_s, u"Generate"_s, u"Generate"_s}),
      m_company(new QComboBox),
      m_from(new QLineEdit),
      m_to(new QLineEdit),
      m_remove(new QCheckBox(u"Delete"_s)),
      m_addCaption(main.textOr(u"FRGEN_GENERATE"_s, u"Generate"_s)),
      m_removeCaption(main.textOr(u"FRGEN_REMOVE"_s, m_addCaption))
{
    addInput(createForm());
    makeSearchable(*m_company);
    for (const ListEntry& company : companies(m_main))
        m_company->addItem(company.text());
    chooseLastCompany(m_main, *m_company);
    connect(m_company, &QComboBox::activated, this, &FRgen::chooseCompany);
    connect(m_from, &QLineEdit::textChanged, this, &FRgen::enableStart);
    connect(m_to, &QLineEdit::textChanged, this, &FRgen::enableStart);
    connect(m_remove, &QCheckBox::toggled, this, &FRgen::nameStart);
    complete();
    nameStart();
}

QWidget* FRgen::createForm()
{
    auto* form = new QWidget;
    auto* layout = new QFormLayout(form);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    const auto add = [layout](const QString& name, const QString& caption, QWidget* field,
                              const QString& fieldName) {
        field->setObjectName(fieldName);
        auto* label = new QLabel(caption);
        label->setObjectName(name);
        label->setBuddy(field);
        layout->addRow(label, field);
    };
    add(u"CLab"_s, u"Company"_s, m_company, u"Filter"_s);
    add(u"PFLab"_s, u"Phone from"_s, m_from, u"PFrom"_s);
    add(u"PTLab"_s, u"Phone to"_s, m_to, u"PTo"_s);
    const QRegularExpression digits(u"[0-9]{0,9}"_s);
    for (QLineEdit* box : {m_from, m_to})
        box->setValidator(new QRegularExpressionValidator(digits, box));
    m_remove->setObjectName(u"DelAll"_s);
    layout->addRow(m_remove);
    return form;
}

void FRgen::chooseCompany()
{
    m_main.remembered.set(Remembered::lastCompany, company());
    enableStart();
}

QString FRgen::company() const
{
    // Not what is being typed.
    return codeOf(m_company->itemText(m_company->currentIndex()));
}

QString FRgen::missing() const
{
    const bool complete =
        m_company->currentIndex() >= 0 && !m_from->text().isEmpty() && !m_to->text().isEmpty();
    return complete ? QString() : u"M284"_s;
}

/// Says on the start button what becomes of the codes.
void FRgen::nameStart()
{
    setStartCaption(m_remove->isChecked() ? m_removeCaption : m_addCaption);
}

bool FRgen::run()
{
    return generateRanges(m_main, {company(), m_from->text(), m_to->text(), m_remove->isChecked()}, report());
}

void FRgen::stop()
{
    m_main.stopFlag = true;
}

} // namespace velmora
