#include "generation/destination.h"

#include "common/MMain.h"
#include "files/stored_path.h"
#include "files/windows_names.h"
#include "generation/remembered_levels.h"
#include "runs/phone_selection.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace velmora {

const Module* moduleOfModel(MMain& main, const QString& model)
{
    const Recordset rows =
        main.connection.select(u"SELECT EQ_MODULE FROM EQUIPMENT WHERE EQ_CODE = ?"_s, {model});
    return rows.eof() ? nullptr : moduleOf(rows.text(0));
}

const Writer* writerOf(MMain& main, const QString& model)
{
    const Module* module = moduleOfModel(main, model);
    return module ? module->writer : nullptr;
}

Destination rememberedDestination(MMain& main, const QString& company, const QString& model)
{
    return {rememberedFolder(main, company + model, u"$$GENPATH"_s), rememberedLevels(main, company, model)};
}

QString refusalOfFileName(const QString& name)
{
    if (name.contains(u'/') || name.contains(u'\\'))
        return u"M268"_s;
    return nameForbiddenHere(name).isEmpty() ? QString() : u"M365"_s;
}

bool followsPattern(const QString& folder, const QString& pattern)
{
    if (folder == pattern)
        return true;
    static const QRegularExpression separator(u"[/\\\\]"_s);
    const QStringList names = folder.split(separator);
    const QStringList patternNames = pattern.split(separator);
    if (names.size() != patternNames.size())
        return false;
    for (qsizetype place = 0; place < names.size(); ++place)
        if (names[place] == ".."_L1 && patternNames[place] != names[place])
            return false;
    return true;
}

std::optional<QString> folderFor(const Destination& destination, const Phone& phone)
{
    const MacroExpansion expansion = expandMacros(destination.folder, phone, MacroContext::Value);
    const QString folder = localFolder(expansion.text);
    if (folder.isEmpty() || !expansion.refusedToken.isEmpty() ||
        !followsPattern(folder, localFolder(destination.folder)) || !nameForbiddenHere(folder).isEmpty())
        return std::nullopt;
    return folder;
}

std::optional<QString> deviceFilePath(const Destination& destination, const Writer& writer,
                                      const Phone& phone)
{
    const std::optional<QString> folder = folderFor(destination, phone);
    const QString name = writer.names(phone, destination.levels).device;
    if (!folder || !refusalOfFileName(name).isEmpty())
        return std::nullopt;
    return pathIn(*folder, name);
}

} // namespace velmora
