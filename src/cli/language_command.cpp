#include "cli/command.h"
#include "common/MMain.h"
#include "editor/language_setting.h"

#include <QTextStream>

#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// Prints the languages, a star before the current one.
ExitStatus print(const QString& current, const QStringList& languages)
{
    QTextStream out(stdout);
    for (const QString& each : languages)
        out << (each == current ? "* " : "  ") << each << '\n';
    return Done;
}

ExitStatus change(MMain& main, const QString& language, const QStringList& languages)
{
    if (!mayChangeLanguage(main)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    if (!languages.contains(language)) {
        main.showMessage(u"M305"_s, languages.join(", "_L1));
        return EndedWithMessage;
    }
    changeLanguage(main, language);
    QTextStream(stdout) << main.messageLine(u"M304"_s, language) << '\n';
    return Done;
}

} // namespace

Command languageCommand(Parser application)
{
    Parser parser = application.addCommand("language", "List the languages, or change the language");
    const auto language = std::make_shared<QString>();
    parser.addOption("language", *language, "The code of the language to change to");
    return {parser, [language](MMain& main) {
                const QStringList languages = languagesWithTexts(main);
                const QString chosen = language->toUpper();
                return chosen.isEmpty() ? print(main.language, languages) : change(main, chosen, languages);
            }};
}

} // namespace velmora
