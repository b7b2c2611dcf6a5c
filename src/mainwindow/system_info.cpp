#include "mainwindow/system_info.h"

#include "common/MMain.h"
#include "platform/registry.h"

#include <QFile>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace velmora {

QString systemInfoTool(const ReadRegistry& read)
{
    QString value;
    if (read(u"SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"_s, u"PATH"_s, value))
        return value;
    if (!read(u"SOFTWARE\\Microsoft\\Shared Tools Location"_s, u"MSINFO"_s, value))
        return {};
    const QString tool = value + "\\MSINFO32.EXE"_L1;
    return QFile::exists(tool) ? tool : QString();
}

void StartSysInfo(MMain& main)
{
    const QString tool = systemInfoTool([](const QString& key, const QString& name, QString& value) {
        return GetKeyValue(RegistryRoot::LocalMachine, key, name, value);
    });
    if (tool.isEmpty() || !QProcess::startDetached(tool, {}))
        main.prompts.show(u"Les informations système ne sont pas disponibles actuellement"_s, {});
}

} // namespace velmora
