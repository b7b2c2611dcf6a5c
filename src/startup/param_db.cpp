#include "startup/param_db.h"

#include "files/ansi.h"
#include "files/stored_path.h"
#include "files/whole_file.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace velmora {

ParamDB parseParamDB(const QString& text, const QString& programFolder)
{
    QStringList lines = QString(text).remove(u'\r').split(u'\n');
    lines.resize(2);
    lines.replaceInStrings(u"$$APPPATH$$"_s, programFolder);
    return {lines[0], lines[1]};
}

ParamDB readParamDB(const QString& programFolder)
{
    return parseParamDB(decodeText(readWholeFile(pathIn(programFolder, u"ParamDB.txt"_s))), programFolder);
}

} // namespace velmora
