// Texts of the program's own messages.
#pragma once

#include <QString>

namespace velmora {

/// The text of a message from M200 on in `language`, else in English, for databases whose texts are older
/// than the message; empty for other codes.
QString builtInText(const QString& code, const QString& language);

} // namespace velmora
