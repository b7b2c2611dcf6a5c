#include "modules/PAP2.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

DeviceFileNames names(const Phone& phone, const Levels& levels)
{
    if (levels.phone)
        return {phone.mac + ".txt"_L1, sourceCopyName(phone)};
    const QString name = templateBaseName(phone, levels) + ".txt"_L1;
    return {name, name};
}

DeviceFile profile(const QList<Parameter>& parameters, bool withComments)
{
    DeviceFile file;
    file.bytes = "<flat-profile>\r\n";
    for (const Parameter& parameter : parameters) {
        const auto append = [&](QStringView text) { appendPiece(file, parameter.code, text); };
        if (withComments)
            append(QString("<!-- "_L1 + parameter.description + " -->\r\n"_L1));
        append(
            QString(u'<' + parameter.code + u'>' + parameter.value + "</"_L1 + parameter.code + ">\r\n"_L1));
    }
    file.bytes += "</flat-profile>\r\n";
    return file;
}

DeviceFile device(const Phone&, const QList<Parameter>& parameters)
{
    return profile(parameters, false);
}

DeviceFile source(const QList<Parameter>& parameters)
{
    return profile(parameters, true);
}

} // namespace

const Writer PAP2 = {names, device, source};

} // namespace velmora
