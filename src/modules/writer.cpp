#include "modules/writer.h"

#include "files/ansi.h"
#include "modules/F1000.h"
#include "modules/GXP2000.h"
#include "modules/PAP2.h"

using namespace Qt::StringLiterals;

namespace velmora {

const Writer* writerOf(const QString& module)
{
    if (module == "GRANDSTREAM"_L1)
        return &GXP2000;
    if (module == "PAP2"_L1)
        return &PAP2;
    if (module == "F1000"_L1)
        return &F1000;
    return nullptr;
}

QString templateBaseName(const Phone& phone, const Levels& levels)
{
    return levels.company ? phone.equipment + " - "_L1 + phone.company : phone.equipment;
}

QString sourceCopyName(const Phone& phone)
{
    return phone.code + " - "_L1 + phone.mac + ".TXT"_L1;
}

void appendPiece(DeviceFile& file, const QString& code, QStringView text)
{
    if (!appendAnsi(file.bytes, text) && !file.lossyCodes.contains(code))
        file.lossyCodes << code;
}

} // namespace velmora
