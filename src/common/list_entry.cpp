#include "common/list_entry.h"

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

constexpr auto separator = " \\\\ "_L1;

} // namespace

QString ListEntry::text() const
{
    return code + separator + description;
}

QString codeOf(const QString& entryText)
{
    const qsizetype end = entryText.indexOf(separator);
    return end < 0 ? entryText : entryText.first(end);
}

} // namespace velmora
