#include "modules/F1000.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

DeviceFileNames names(const Phone& phone, const Levels& levels)
{
    if (levels.phone)
        return {"ut"_L1 + phone.mac + ".ini"_L1, sourceCopyName(phone)};
    const QString name = templateBaseName(phone, levels);
    return {name + ".ini"_L1, name + ".txt"_L1};
}

DeviceFile keyValueLines(const QList<Parameter>& parameters, bool withComments)
{
    DeviceFile file;
    for (const Parameter& parameter : parameters) {
        const auto append = [&](QStringView text) { appendPiece(file, parameter.code, text); };
        if (withComments)
            append(QString("<!-- "_L1 + parameter.description + " -->\r\n"_L1));
        append(QString(parameter.code + u'=' + parameter.value + "\r\n"_L1));
    }
    return file;
}

DeviceFile device(const Phone&, const QList<Parameter>& parameters)
{
    return keyValueLines(parameters, false);
}

DeviceFile source(const QList<Parameter>& parameters)
{
    return keyValueLines(parameters, true);
}

} // namespace

const Writer F1000 = {names, device, source};

} // namespace velmora
