#include "mainwindow/frmAbout.h"

#include "common/MMain.h"
#include "mainwindow/system_info.h"
#include "schema/version.h"
#include "windows/captions.h"
#include "windows/failure_report.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace velmora {

frmAbout::frmAbout(MMain& main)
{
    setObjectName(u"frmAbout"_s);
    auto* title = new QLabel(u"Velmora"_s);
    title->setObjectName(u"lblTitle"_s);
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    title->setFont(large);
    auto* version = new QLabel("Version "_L1 + versionText());
    version->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* description = new QLabel(u"Configuration files, phone books and restarts of IP phones"_s);
    description->setObjectName(u"lblDescription"_s);
    description->setWordWrap(true);
    auto* ok = new QPushButton(u"OK"_s);
    ok->setObjectName(u"cmdOK"_s);
    ok->setDefault(true);
    ok->setAutoDefault(true);
    auto* systemInfo = new QPushButton(u"System Info..."_s);
    systemInfo->setObjectName(u"cmdSysInfo"_s);
    systemInfo->setAutoDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(systemInfo);
    buttons->addWidget(ok);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 16);
    layout->addWidget(title);
    layout->addWidget(version);
    layout->addSpacing(8);
    layout->addWidget(description);
    layout->addStretch();
    layout->addLayout(buttons);
    setMinimumSize(380, 200);
    // Return closes the window that has just been opened.
    setTabOrder(ok, systemInfo);

    translateCaptions(main, *this);
    setWindowTitle(u"À propos de Velmora"_s);
    connect(ok, &QPushButton::clicked, this, &frmAbout::closeWindow);
    connect(systemInfo, &QPushButton::clicked, this,
            [&main] { reportFailures(main, [&main] { StartSysInfo(main); }); });
}

void frmAbout::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        closeWindow();
    else
        QWidget::keyPressEvent(event);
}

void frmAbout::closeWindow()
{
    (parentWidget() ? parentWidget() : this)->close();
}

} // namespace velmora
