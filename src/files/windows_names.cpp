#include "files/windows_names.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

bool isForbidden(const QString& name)
{
    static const QRegularExpression forbidden(
        u"[\\x{0}-\\x{1f}<>:\"|?*]|[. ]$|^(?:con|prn|aux|nul|conin\\$|conout\\$|(?:com|lpt)[1-9¹²³]) *(?:\\.|$)"_s,
        QRegularExpression::CaseInsensitiveOption);
    return name != "."_L1 && name != ".."_L1 && forbidden.match(name).hasMatch();
}

} // namespace

QString nameForbiddenOnWindows(const QString& path)
{
    // A drive's colon, and what makes a path a literal one, are no parts of names.
    static const QRegularExpression beginning(u"^(?:\\\\\\\\\\?\\\\)?(?:[A-Za-z]:(?=[/\\\\]|$))?"_s);
    static const QRegularExpression separator(u"[/\\\\]"_s);
    const QStringList names = QString(path).remove(beginning).split(separator, Qt::SkipEmptyParts);
    const auto found = std::find_if(names.begin(), names.end(), isForbidden);
    return found == names.end() ? QString() : *found;
}

QString nameForbiddenHere(const QString& path)
{
#ifdef Q_OS_WIN
    return nameForbiddenOnWindows(path);
#else
    Q_UNUSED(path);
    return {};
#endif
}

} // namespace velmora
