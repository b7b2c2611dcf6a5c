// velmora: the desktop program. Runs the start-up and joins the menu items to their windows.
#include "common/MMain.h"
#include "desktop/desktop_prompts.h"
#include "desktop/menu_actions.h"
#include "mainwindow/FMain.h"
#include "platform/user_name.h"
#include "schema/version.h"
#include "startup/first_start.h"
#include "startup/program_folder.h"
#include "startup/start_up.h"
#include "windows/failure_report.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QStandardPaths>
#include <QTranslator>

#include <cstdio>
#include <cstdlib>
#include <memory>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// What the command line may hold.
struct CommandLine {
    QCommandLineParser parser;
    QCommandLineOption folder{u"program-dir"_s, u"The folder of ParamDB.txt and the seed file."_s, u"DIR"_s};
    QCommandLineOption help = parser.addHelpOption();
    QCommandLineOption version = parser.addVersionOption();

    CommandLine() { parser.addOption(folder); }
};

/// Answers --help and --version where there is no display to open a window on, and ends all else there.
void answerWithoutDisplay(int& argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    CommandLine line;
    // The toolkit's own options are words after one dash. They are not known here, and no reason to end.
    line.parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    line.parser.parse(QCoreApplication::arguments());
    if (line.parser.isSet(line.help))
        line.parser.showHelp();
    if (line.parser.isSet(line.version))
        line.parser.showVersion();
#ifdef Q_OS_LINUX
    const auto isSet = [](const char* variable) { return !qEnvironmentVariableIsEmpty(variable); };
    if (isSet("DISPLAY") || isSet("WAYLAND_DISPLAY") || isSet("QT_QPA_PLATFORM") ||
        QCoreApplication::arguments().contains("-platform"_L1))
        return;
    // The toolkit would abort, and advise to install the program again.
    std::fputs("velmora: there is no display. velmora-cli does the same work in a terminal.\n", stderr);
    std::exit(1);
#endif
}

/// The program folder that the command line chose, or an empty text.
QString chosenFolder(const QApplication& application)
{
    CommandLine line;
    line.parser.process(application);
    return line.parser.value(line.folder);
}

/// The program's icon in every size.
QIcon programIcon()
{
    QIcon icon;
    for (const QString& image : QDir(u":/icons"_s).entryList())
        icon.addFile(":/icons/"_L1 + image);
    return icon;
}

/// Makes Qt's own buttons and dialogs speak that language; where its texts are missing they stay English.
void translateDialogs(QApplication& application, const QString& language)
{
    auto* translator = new QTranslator(&application);
    if (translator->load(QLocale(language.toLower()), u"qtbase"_s, u"_"_s,
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication::setApplicationName(u"velmora"_s);
    QCoreApplication::setApplicationVersion(versionText());
    answerWithoutDisplay(argc, argv);
    QApplication application(argc, argv);
    QApplication::setWindowIcon(programIcon());
    QApplication::setDesktopFileName(u"velmora"_s); // by which some desktops find the icon

    const QString chosen = chosenFolder(application);
    MMain mainModule(programFolder(chosen), desktopPrompts());
    if (!fillProgramFolder(mainModule, chosen) || !StartUp(mainModule, systemUserName()))
        return 3;
    translateDialogs(application, mainModule.language);

    mainModule.remembered.keepIn(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                                 "/velmora/windows.ini"_L1);
    std::unique_ptr<FMain> window;
    const bool made = reportFailures(mainModule, [&] {
        window = std::make_unique<FMain>(mainModule);
        window->setActions(menuActions(*window, mainModule));
        offerLanguages(*window, mainModule);
    });
    if (!made)
        return 3;
    window->show();
    return QApplication::exec();
}
