// The MD5 message digest.
#pragma once

#include <QString>

namespace velmora {

/// MD5 as RFC 1321 has it. Good for nothing but what devices ask for: it is no longer secure.
class CMD5 {
public:
    /// The digest of the low 8 bits of each UTF-16 code unit of `text`, as 32 lowercase hexadecimal digits.
    QString MD5(const QString& text) const;
};

} // namespace velmora
