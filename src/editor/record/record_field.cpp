#include "editor/record/record_field.h"

#include "common/list_entry.h"

namespace velmora {

QString RecordField::value() const
{
    return dropDown ? codeOf(text) : text;
}

} // namespace velmora
