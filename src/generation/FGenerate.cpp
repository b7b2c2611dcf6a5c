#include "generation/FGenerate.h"

#include "common/MMain.h"
#include "generation/generate.h"
#include "generation/remembered_levels.h"
#include "windows/failure_report.h"

#include <QHBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

FGenerate::FGenerate(MMain& main)
    : BatchWindow(main, u"FGenerate"_s, u"Velmora Generation"_s, {u"List1"_s, u"Generate"_s, u"Generate"_s}),
      m_selection(new SelectionPanel(main, 4)),
      m_folder(new FolderPicker(main))
{
    addInput(m_selection);
    addInput(createLevels());
    addInput(m_folder);
    connectControls();
    complete();
}

QWidget* FGenerate::createLevels()
{
    auto* box = new QWidget;
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    const QStringList captions = {u"Level                                       Phone"_s, u"Company"_s,
                                  u"Equipment"_s};
    for (int level = 0; level < 3; ++level) {
        auto* check = new QCheckBox(captions[level]);
        check->setObjectName(u"CLev_%1"_s.arg(level));
        check->setChecked(true);
        layout->addWidget(check);
        m_levels << check;
    }
    m_withSource = new QCheckBox(u"Generate Source"_s);
    m_withSource->setObjectName(u"GenSrc"_s);
    layout->addStretch();
    layout->addWidget(m_withSource);
    return box;
}

void FGenerate::connectControls()
{
    const auto guarded = [this](void (FGenerate::*handler)()) {
        return [this, handler] { reportFailures(m_main, [this, handler] { (this->*handler)(); }); };
    };
    connect(m_selection, &SelectionPanel::companyChosen, this, guarded(&FGenerate::clearPath));
    connect(m_selection, &SelectionPanel::equipmentChosen, this, guarded(&FGenerate::chooseEquipment));
    connect(m_selection, &SelectionPanel::rangeChosen, this, &FGenerate::enableStart);
    for (int level = 0; level < m_levels.size(); ++level)
        connect(m_levels[level], &QCheckBox::clicked, this,
                [this, level] { reportFailures(m_main, [this, level] { levelClicked(level); }); });
    connect(m_folder, &FolderPicker::folderChanged, this, guarded(&FGenerate::pathChanged));
    connect(m_folder, &FolderPicker::rememberWanted, this, guarded(&FGenerate::rememberChoice));
}

void FGenerate::clearPath()
{
    m_folder->setBrowsable(false);
    m_folder->setFolder({});
}

void FGenerate::chooseEquipment()
{
    // First of all: what is looked up next can fail, and then nothing of the model before may stay.
    clearPath();
    const Levels remembered =
        rememberedLevels(m_main, m_selection->company(), m_selection->equipment(), levels());
    m_levels[0]->setChecked(remembered.phone);
    m_levels[1]->setChecked(remembered.company);
    m_levels[2]->setChecked(remembered.equipment);
    m_folder->setBrowsable(true);
    m_folder->setFolder(
        rememberedFolder(m_main, m_selection->company() + m_selection->equipment(), u"$$GENPATH"_s));
}

void FGenerate::rememberChoice()
{
    const QString owner = m_selection->company() + m_selection->equipment();
    remember(m_main, owner, u"$$GENPATH"_s, m_folder->folder());
    remember(m_main, owner, u"$$DEFGEN"_s, textOf(levels()));
    showStatus(m_main.messageLine(u"M314"_s));
}

void FGenerate::levelClicked(int level)
{
    const bool noneLeft =
        std::none_of(m_levels.begin(), m_levels.end(), [](QCheckBox* box) { return box->isChecked(); });
    if (noneLeft)
        m_levels[level]->setChecked(true);
    else if (level == 0)
        pathChanged();
}

void FGenerate::pathChanged()
{
    m_selection->clearPhones();
    m_folderExists = m_folder->folderExists() && !m_selection->equipment().isEmpty();
    if (m_folderExists && levels().phone)
        m_selection->fillPhones();
    enableStart();
}

bool FGenerate::run()
{
    return Generate(m_main,
                    {m_selection->company(), m_selection->equipment(), m_selection->phoneFrom(),
                     m_selection->phoneTo(), levels(), m_withSource->isChecked(), m_folder->folder()},
                    report())
        .has_value();
}

QString FGenerate::missing() const
{
    if (m_selection->equipment().isEmpty())
        return u"M282"_s;
    return m_folderExists ? QString() : u"M283"_s;
}

void FGenerate::stop()
{
    m_main.stopFlag = true;
}

Levels FGenerate::levels() const
{
    return {m_levels[0]->isChecked(), m_levels[1]->isChecked(), m_levels[2]->isChecked()};
}

} // namespace velmora
