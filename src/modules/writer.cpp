#include "modules/writer.h"

#include "files/ansi.h"

using namespace Qt::StringLiterals;

namespace velmora {

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
