#include "desktop/menu_actions.h"

#include "common/MMain.h"
#include "editor/language_setting.h"
#include "editor/window/FParameters.h"
#include "generation/FGenerate.h"
#include "mainwindow/frmAbout.h"
#include "mainwindow/frmBrowser.h"
#include "phonebook/windows/FPBExp.h"
#include "phonebook/windows/FPBGen.h"
#include "phonebook/windows/FPBImp.h"
#include "ranges/FRgen.h"
#include "reboot/FReboot.h"
#include "status/window/FStatus.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The chapter of the manual that tells about a window; empty for the others.
QString chapterOf(const QString& window)
{
    static const QHash<QString, QString> chapters = {
        {u"FParameters"_s, u"editor"_s}, {u"FGenerate"_s, u"generate"_s}, {u"FStatus"_s, u"status"_s},
        {u"FRgen"_s, u"ranges"_s},       {u"FReboot"_s, u"reboot"_s},     {u"FPBGen"_s, u"phonebook"_s},
        {u"FPBImp"_s, u"phonebook"_s},   {u"FPBExp"_s, u"phonebook"_s},
    };
    return chapters.value(window);
}

void showStatus(FMain& window, MMain& main, const std::function<void(FStatus&)>& prepare);

/// Opens the editor, from which a phone leads to its status.
void showEditor(FMain& window, MMain& main, const std::function<void(FParameters&)>& prepare)
{
    window.showChild(
        u"FParameters"_s,
        [&] {
            auto* editor = new FParameters(main);
            QObject::connect(editor, &FParameters::statusWanted, &window,
                             [&window, &main](const QString& company, const QString& phone) {
                                 showStatus(window, main,
                                            [&](FStatus& status) { status.showPhone(company, phone); });
                             });
            return editor;
        },
        [&prepare](QWidget* editor) { prepare(*static_cast<FParameters*>(editor)); });
}

/// Opens the status of phones, from which a value leads to the editor.
void showStatus(FMain& window, MMain& main, const std::function<void(FStatus&)>& prepare)
{
    window.showChild(
        u"FStatus"_s,
        [&] {
            auto* status = new FStatus(main);
            QObject::connect(status, &FStatus::recordWanted, &window,
                             [&window, &main](const QString& table, const QHash<QString, QString>& key) {
                                 showEditor(window, main,
                                            [&](FParameters& editor) { editor.showRecord(table, key); });
                             });
            return status;
        },
        [&prepare](QWidget* status) { prepare(*static_cast<FStatus*>(status)); });
}

} // namespace

FMain::Actions menuActions(FMain& window, MMain& main)
{
    const auto shows = [&window](const QString& name, const std::function<QWidget*()>& create) {
        return [&window, name, create] { window.showChild(name, create); };
    };
    return {
        {u"Config"_s,
         [&window, &main] {
             showEditor(window, main, [](FParameters& editor) { editor.selectFirstTab(); });
         }},
        {u"GenConf"_s, shows(u"FGenerate"_s, [&main] { return new FGenerate(main); })},
        {u"GenStatus"_s, [&window, &main] { showStatus(window, main, [](FStatus&) {}); }},
        {u"PbGen"_s, shows(u"FPBGen"_s, [&main] { return new FPBGen(main); })},
        {u"PbImp"_s, shows(u"FPBImp"_s, [&main] { return new FPBImp(main); })},
        {u"PbExp"_s, shows(u"FPBExp"_s, [&main] { return new FPBExp(main); })},
        {u"Ranges"_s, shows(u"FRgen"_s, [&main] { return new FRgen(main); })},
        {u"Reboot"_s, shows(u"FReboot"_s, [&main] { return new FReboot(main); })},
        {u"Help1"_s,
         [&window, &main] {
             const QString chapter = chapterOf(window.activeChild());
             window.showChild(
                 u"frmBrowser"_s, [&main] { return new frmBrowser(main); },
                 [&chapter](QWidget* browser) { static_cast<frmBrowser*>(browser)->showManual(chapter); });
         }},
        {u"About"_s, shows(u"frmAbout"_s, [&main] { return new frmAbout(main); })},
    };
}

void offerLanguages(FMain& window, MMain& main)
{
    if (mayChangeLanguage(main))
        window.offerLanguages(languagesWithTexts(main), main.language,
                              [&main](const QString& language) { changeLanguage(main, language); });
}

} // namespace velmora
