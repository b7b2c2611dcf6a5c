#include "startup/built_in_texts.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace velmora {

QString builtInText(const QString& code)
{
    static const QHash<QString, QString> texts = {
        {u"M200"_s, u"   Parameter $$ is staged already: its first value is kept"_s},
        {u"M201"_s, u"   Parameter left out: $$"_s},
        {u"M202"_s, u"   Characters outside Windows-1252 written as ? in parameter $$"_s},
        {u"M203"_s,
         u"The configuration of phone $$ is larger than 32,768 bytes. No file was written for it."_s},
        {u"M204"_s, u"The file could not be written. Phone $$"_s},
        {u"M205"_s, u"Stopped. Phones done: $$"_s},
        {u"M206"_s, u"   The MAC address is not 12 hexadecimal digits: $$"_s},
        {u"M207"_s, u"Not available in this version yet"_s},
        {u"M208"_s, u"User $$ has no right to this"_s},
        {u"M209"_s, u"$$ records"_s},
        {u"M210"_s, u"Loading: $$ records (Esc stops)"_s},
        {u"M211"_s, u"Stopped: the first $$ records (F5 reads all)"_s},
        {u"M212"_s, u"What is being entered is not saved yet. Discard it?"_s},
        {u"M213"_s, u"   The phone's answer can't be understood: $$"_s},
        {u"M214"_s, u"$$ restarted"_s},
        {u"M215"_s, u"$$ refused"_s},
        {u"M216"_s, u"$$ unreachable"_s},
        {u"M217"_s, u"Another user has deleted it meanwhile, or changed its key."_s},
        {u"M218"_s, u"   Characters outside Windows-1252 written as ?"_s},
        {u"M219"_s, u"Stopped: nothing was changed"_s},
        {u"M220"_s, u"Line $$"_s},
        {u"M221"_s, u"Stopped. Codes done: $$"_s},
    };
    return texts.value(code);
}

} // namespace velmora
