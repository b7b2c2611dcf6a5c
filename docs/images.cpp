// velmora-images PROGRAM_FOLDER IMAGE_FOLDER: takes the images of the windows, in English and French, over
// the demo database in the program folder.
#include "common/MMain.h"
#include "desktop/menu_actions.h"
#include "editor/transfer/window/FTableImport.h"
#include "editor/window/FParameters.h"
#include "files/whole_file.h"
#include "generation/FGenerate.h"
#include "mainwindow/FMain.h"
#include "mainwindow/frmAbout.h"
#include "phonebook/windows/FPBExp.h"
#include "phonebook/windows/FPBGen.h"
#include "phonebook/windows/FPBImp.h"
#include "ranges/FRgen.h"
#include "reboot/FReboot.h"
#include "startup/start_up.h"
#include "status/window/FStatus.h"
#include "support/device_double.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QIcon>
#include <QPushButton>
#include <QTest>
#include <QTextStream>

using namespace Qt::StringLiterals;
using namespace velmora;

namespace {

/// Chooses an entry the way a user does, so that the lists after it are refilled.
void choose(QWidget& window, const QString& list, const QString& code)
{
    auto* filter = window.findChild<QComboBox*>(list);
    filter->setCurrentIndex(filter->findText(code + u' ', Qt::MatchStartsWith));
    Q_EMIT filter->activated(filter->currentIndex());
}

void save(QWidget& window, const QString& path)
{
    QCoreApplication::processEvents();
    if (!window.grab().save(path))
        QTextStream(stderr) << "can't write " << path << '\n';
}

/// The table editor with the phones, with a new phone, and with a table that a password protects.
void takeEditorImages(MMain& main, const QString& folder, const QString& suffix)
{
    FParameters editor(main);
    editor.resize(editor.sizeHint());
    editor.show();
    auto* tabs = editor.findChild<QTabBar*>(u"TabStrip"_s);
    tabs->setCurrentIndex(2);
    auto* list = editor.findChild<RecordView*>(u"ListCom"_s);
    list->sortBy(3);
    list->selectRow(4);
    save(editor, folder + "/FParameters-list"_L1 + suffix);

    list->selectAll();
    editor.findChild<QAction*>(u"SetColumn"_s)->trigger();
    auto* many = editor.findChild<FManyRecords*>();
    many->findChild<QComboBox*>(u"Column"_s)->setCurrentIndex(1);
    Q_EMIT many->findChild<QComboBox*>(u"Column"_s)->activated(1);
    QTest::keyClicks(many->findChild<QLineEdit*>(u"Value"_s), u"Conference"_s);
    save(*many, folder + "/FManyRecords"_L1 + suffix);
    many->reject();

    list->selectRow(4);
    editor.findChild<QAction*>(u"New"_s)->trigger();
    choose(editor, u"Combo_1"_s, u"LUNA"_s);
    save(editor, folder + "/FParameters-new"_L1 + suffix);
    editor.findChild<QPushButton*>(u"Cancel"_s)->click();

    main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('LEVELS', '$$PWD', 'secret')"_s);
    main.connection.execute(u"INSERT INTO SYSTEM_PARAMETERS VALUES('$$LEVELS', '$$PWD2', 'secret too')"_s);
    tabs->setCurrentIndex(8);
    save(editor, folder + "/FParameters-refused"_L1 + suffix);
    main.connection.execute(u"DELETE FROM SYSTEM_PARAMETERS WHERE SY_SUBCODE LIKE '$$PWD%'"_s);
}

/// The import of phones, some of which are refused.
void takeImportImage(MMain& main, const QString& folder, const QString& suffix)
{
    const QByteArray phones = "PH_CODE;PH_DESC;PH_MAC;EQ_CODE;CO_CODE;Room\n"
                              "101;Front desk;02:00:A0:01:00:01;GXP2000;LUNA;1\n"
                              "102;Anna Albrecht;02:00:A0:01:00:02;GXP2000;LUNA;2\n"
                              "191;Oven hall 3;02:00:A0:01:00:2A;GXP2000;LUNA;3\n"
                              "192;Oven hall 4;02:00:A0:01:00:2;GXP2000;LUNA;3\n"
                              "193;Shop New Bridge;;GXP3000;LUNA;7\n"
                              "194;Shop Harbour 2;02-00-A0-02-00-0F;PAP2;LUNA;8\n";
    const OpenTable table{describeTable(main, u"PHONES"_s), Access::True};
    FTableImport* window = openImport(main, table, phones, u"/home/anna/lists/phones.csv"_s, nullptr);
    QCoreApplication::processEvents();
    window->findChild<QCheckBox*>(u"AddRanges"_s)->click();
    save(*window, folder + "/FTableImport"_L1 + suffix);
    window->reject();
}

/// The reboot window after it has visited four devices, one of them with another password.
void takeRebootImage(MMain& main, const QString& folder, const QString& suffix)
{
    main.connection.execute(
        u"UPDATE PHONES_PARAMETERS SET PA_VALUE = '127.20.0.' || PH_CODE WHERE PA_CODE = 'Static_IP'"_s);
    const DeviceDouble first(pap2Device("demo-luna"), u"127.20.0.113"_s);
    const DeviceDouble second(pap2Device("demo-luna"), u"127.20.0.114"_s, first.port());
    const DeviceDouble third(pap2Device("changed"), u"127.20.0.115"_s, first.port());
    const DeviceDouble fourth(pap2Device("demo-luna"), u"127.20.0.116"_s, first.port());
    FReboot reboot(main, first.port());
    reboot.show();
    choose(reboot, u"Filter_1"_s, u"LUNA"_s);
    choose(reboot, u"Filter_2"_s, u"PAP2"_s);
    choose(reboot, u"Filter_3"_s, u"113"_s);
    choose(reboot, u"Filter_4"_s, u"116"_s);
    reboot.findChild<QPushButton*>(u"Ok"_s)->click();
    save(reboot, folder + "/FReboot"_L1 + suffix);
}

/// The status of a company's phones after one of its values was changed: what differs, and all values.
void takeStatusImages(MMain& main, const QString& folder, const QString& suffix)
{
    const auto setServer = [&main](const QString& server) {
        main.connection.execute(
            u"UPDATE COMPANY_PARAMETERS SET PA_VALUE = ? WHERE CO_CODE = 'LUNA' AND EQ_CODE = "
            "'GXP2000' AND PA_CODE = '47'"_s,
            {server});
    };
    main.connection.execute(
        u"REPLACE INTO SYSTEM_PARAMETERS VALUES('$$RESTART', 'LUNA 101', '2026-11-20T09:30:00Z -')"_s);
    const QString before = main.connection
                               .select(u"SELECT PA_VALUE FROM COMPANY_PARAMETERS WHERE CO_CODE = 'LUNA' AND "
                                       "EQ_CODE = 'GXP2000' AND PA_CODE = '47'"_s)
                               .text(0);
    writeWholeFile(u"phone-files/LUNA/cfg0200A00100FF"_s, "another phone's");
    setServer(u"sip2.luna.example"_s);
    FStatus window(main);
    window.resize(window.sizeHint());
    window.show();
    choose(window, u"Filter_1"_s, u"LUNA"_s);
    window.findChild<QPushButton*>(u"Refresh"_s)->click();
    auto* phones = window.findChild<QTreeView*>(u"Phones"_s);
    phones->setCurrentIndex(phones->model()->index(5, 0));
    save(window, folder + "/FStatus"_L1 + suffix);
    window.findChild<QTabWidget*>(u"Pages"_s)->setCurrentIndex(1);
    save(window, folder + "/FStatus-values"_L1 + suffix);
    setServer(before);
}

/// A phone-book window after its run.
template <typename Window> void takePhoneBookImage(MMain& main, const QString& path)
{
    Window window(main);
    window.show();
    choose(window, u"Filter_1"_s, u"LUNA"_s);
    if (window.template findChild<QComboBox*>(u"Filter_2"_s))
        choose(window, u"Filter_2"_s, u"GXP2000"_s);
    window.template findChild<QPushButton*>(u"Ok"_s)->click();
    save(window, path);
}

void takePhoneBookImages(MMain& main, const QString& folder, const QString& suffix)
{
    for (const QString& row :
         {u"'LUNAGXP2000', '$$PBGEN'"_s, u"'LUNAGXP2000', '$$PBIMP'"_s, u"'LUNA', '$$PBExp'"_s})
        main.connection.execute(u"REPLACE INTO SYSTEM_PARAMETERS VALUES(%1, 'phone-files/LUNA')"_s.arg(row));
    QByteArray users = "[Users]\n";
    for (const char* user : {"Bruno\nSurname=Castel\nExtension=103", "Cleo\nSurname=Varga\nExtension=131",
                             "Dario\nSurname=Lund\nExtension=132", "Eva\nSurname=O'Neil\nExtension=106"})
        users += QByteArray("[User]\nName=") + user + '\n';
    writeWholeFile(u"phone-files/LUNA/confUsers.ini"_s, users + "\n");
    takePhoneBookImage<FPBGen>(main, folder + "/FPBGen"_L1 + suffix);
    takePhoneBookImage<FPBImp>(main, folder + "/FPBImp"_L1 + suffix);
    takePhoneBookImage<FPBExp>(main, folder + "/FPBExp"_L1 + suffix);
}

void takeRangesImage(MMain& main, const QString& folder, const QString& suffix)
{
    main.connection.execute(u"DELETE FROM RANGES WHERE CO_CODE = 'LUNA' AND PH_CODE > '120'"_s);
    FRgen ranges(main);
    ranges.show();
    choose(ranges, u"Filter"_s, u"LUNA"_s);
    ranges.findChild<QLineEdit*>(u"PFrom"_s)->setText(u"118"_s);
    ranges.findChild<QLineEdit*>(u"PTo"_s)->setText(u"124"_s);
    ranges.findChild<QPushButton*>(u"Generate"_s)->click();
    save(ranges, folder + "/FRgen"_L1 + suffix);
}

void takeImages(MMain& main, const QString& folder)
{
    const QString suffix = u'-' + main.language.toLower() + ".png"_L1;
    FMain frame(main);
    FGenerate* generate = nullptr;
    frame.setActions(menuActions(frame, main));
    offerLanguages(frame, main);
    frame.resize(780, 600); // the manual shows it, too
    frame.show();
    save(frame, folder + "/FMain"_L1 + suffix);
    frame.findChild<QAction*>(u"GenConf"_s)->trigger();
    generate = frame.findChild<FGenerate*>();

    choose(*generate, u"Filter_1"_s, u"LUNA"_s);
    choose(*generate, u"Filter_2"_s, u"GXP2000"_s);
    generate->findChild<QPushButton*>(u"Generate"_s)->click();
    save(*generate, folder + "/FGenerate"_L1 + suffix);
    takeEditorImages(main, folder, suffix);
    takeImportImage(main, folder, suffix);
    takeStatusImages(main, folder, suffix);
    takeRebootImage(main, folder, suffix);
    takePhoneBookImages(main, folder, suffix);
    takeRangesImage(main, folder, suffix);
    frmAbout about(main);
    about.show();
    save(about, folder + "/frmAbout"_L1 + suffix);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(VELMORA_ICON)));
    const QStringList arguments = QCoreApplication::arguments();
    const Prompts prompts = {
        [](const QString& text, const QString& details) {
            QTextStream(stderr) << text << '\n' << details << '\n';
        },
        [](const QString&, const QString&) { return true; },
        [](const QString&, const QString&) { return true; },
        [](const QString&, const QString&) { return std::optional<QString>(); },
        [](const QString&, const QString&) { return std::optional<QString>(); },
        [](const QString&) { return std::optional<QString>(); },
        [](const QString&, const QString&, const QStringList&) { return std::optional<ChosenFile>(); },
        [](const QString&, const QString&, const QStringList&) { return std::optional<ChosenFile>(); },
        [] { QCoreApplication::processEvents(); },
    };
    MMain mainModule(arguments.value(1), prompts);
    if (!StartUp(mainModule, u"installer"_s))
        return 3;
    for (const QString& language : {u"EN"_s, u"FR"_s}) {
        mainModule.language = language;
        takeImages(mainModule, arguments.value(2));
    }
    return 0;
}
