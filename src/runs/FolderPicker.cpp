#include "runs/FolderPicker.h"

#include "common/MMain.h"
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/windows_names.h"
#include "windows/failure_report.h"

#include <QDir>
#include <QHBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The folder of a path, up to a macro in it.
QString fixedPart(const QString& path)
{
    const QString folder = localFolder(path);
    const qsizetype macro = folder.indexOf("$$"_L1);
    if (macro < 0)
        return folder;
    return folder.first(std::max(folder.lastIndexOf(u'/', macro), folder.lastIndexOf(u'\\', macro)) + 1);
}

} // namespace

FolderPicker::FolderPicker(MMain& main, QWidget* parent)
    : QWidget(parent),
      m_main(main),
      m_folder(new QLabel),
      m_browse(new QPushButton(u"..."_s)),
      m_create(new QPushButton(main.textOr(u"BATCH_CREATE"_s, u"Create Folder"_s))),
      m_remember(new QPushButton(main.textOr(u"BATCH_REMEMBER"_s, u"Remember"_s)))
{
    auto* caption = new QLabel(u"Path"_s);
    caption->setObjectName(u"PLab"_s);
    m_folder->setObjectName(u"LPath"_s);
    m_folder->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    m_folder->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_folder->setTextFormat(Qt::PlainText);
    m_folder->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_folder->setAccessibleName(m_main.textOr(u"BATCH_FOLDER"_s, u"Folder"_s));
    m_browse->setObjectName(u"BtPath"_s);
    m_browse->setEnabled(false);
    m_browse->setAutoDefault(true);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(caption);
    layout->addWidget(m_folder, 1);
    layout->addWidget(m_browse);
    layout->addWidget(m_create);
    layout->addWidget(m_remember);
    m_remember->setAutoDefault(true);
    m_remember->setEnabled(false);
    connect(m_remember, &QPushButton::clicked, this, &FolderPicker::rememberWanted);
    m_create->setAutoDefault(true);
    m_create->hide();
    connect(m_create, &QPushButton::clicked, this, [this] { reportFailures(m_main, [this] { create(); }); });
    connect(m_browse, &QPushButton::clicked, this, [this] { reportFailures(m_main, [this] { browse(); }); });
}

void FolderPicker::setFolder(const QString& folder)
{
    m_folder->setText(folder);
    m_folder->setToolTip(folder);
    noteExistence();
    Q_EMIT folderChanged();
}

bool FolderPicker::folderExists() const
{
    const QString folder = fixedPart(m_folder->text());
    return !folder.isEmpty() && QDir(folder).exists();
}

void FolderPicker::browse()
{
    const QString before = fixedPart(m_folder->text());
    const QString chosen = m_main.BrowseFolder(before);
    if (chosen != before)
        setFolder(chosen);
    else if (folderExists() != m_existed)
        setFolder(m_folder->text()); // it was made or removed meanwhile
}

void FolderPicker::create()
{
    const QString folder = fixedPart(m_folder->text());
    if (const QString name = nameForbiddenHere(folder); !name.isEmpty())
        throw FileError(folder, m_main.messageLine(u"M367"_s, name));
    if (!QDir().mkpath(folder))
        throw FileError(folder, m_main.messageLine(u"M286"_s));
    setFolder(m_folder->text());
    m_browse->setFocus();
}

void FolderPicker::noteExistence()
{
    m_existed = folderExists();
    m_create->setVisible(!m_existed && !fixedPart(m_folder->text()).isEmpty());
    m_remember->setEnabled(m_existed);
}

} // namespace velmora
