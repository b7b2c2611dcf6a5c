#include "startup/program_folder.h"

#include "files/stored_path.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace velmora {

bool isChosen(const QString& chosen)
{
    return !chosen.isEmpty() || !qEnvironmentVariableIsEmpty("VELMORA_HOME");
}

QString programFolder(const QString& chosen)
{
    const auto native = [](const QString& folder) {
        return QDir::toNativeSeparators(QDir(folder).absolutePath());
    };
    if (!chosen.isEmpty())
        return native(chosen);
    const QString variable = qEnvironmentVariable("VELMORA_HOME");
    if (!variable.isEmpty())
        return native(variable);
    const QString beside = QCoreApplication::applicationDirPath();
    if (QFile::exists(pathIn(beside, u"ParamDB.txt"_s)))
        return native(beside);
    return native(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velmora"_s);
}

} // namespace velmora
