// Phone macros inside values: "$$P" is the phone's code, "$$N" its description.
#pragma once

#include "common/phone.h"

#include <QString>

#include <optional>

namespace velmora {

/// How a replacement is written into the text around it.
enum class MacroContext {
    /// As it is.
    Value,
    /// Inside a quoted literal of an SQL statement: every "'" doubled.
    Statement,
};

struct MacroExpansion {
    /// The text, as far as it could be expanded.
    QString text;
    /// The macro that was refused; empty when none was.
    QString refusedToken;
    /// Whether it was refused for its name, rather than for its arguments.
    bool unknownName = false;
};

/// What stands for a macro on one phone.
struct MacroReplacement {
    /// Nothing where the macro is refused.
    std::optional<QString> text;
    /// Whether it is refused for its name, rather than for its arguments.
    bool unknownName = false;
};

/// The token of the one macro that `value` may hold: from the first "$$" to the first "'" after it, or else
/// to the first blank, or else to the end. An empty text where there is none.
QString macroToken(const QString& value);

/// A token may carry a 1-based start position and a length, in characters: "$$P,2,2" on phone 1234 gives 23.
MacroReplacement macroReplacement(const QString& token, const Phone& phone);

/// Replaces the macro in `value`, every time that it occurs.
///
/// One pass is enough, and always ends: what is left with a "$$" afterwards is another macro, which is not
/// looked at, or came out of the phone's own texts, which are not expanded.
MacroExpansion expandMacros(const QString& value, const Phone& phone, MacroContext context);

} // namespace velmora
