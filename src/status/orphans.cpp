#include "status/orphans.h"

#include "common/MMain.h"
#include "generation/destination.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// The files in `folder` whose names are those of device files.
QStringList deviceFilesIn(const QString& folder)
{
    static const QRegularExpression pattern(u"^(cfg[0-9a-f]{12}|[0-9a-f]{12}\\.txt|ut[0-9a-f]{12}\\.ini)$"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return QDir(folder).entryList(QDir::Files | QDir::Hidden).filter(pattern);
}

/// Where the files of the phones of a model go.
struct Target {
    const Writer* writer = nullptr;
    Destination destination;
};

Target targetOf(MMain& main, const QList<GenerationRequest>& requests, const Phone& phone)
{
    const Writer* writer = writerOf(main, phone.equipment);
    for (const GenerationRequest& request : requests)
        if (request.company == phone.company && request.equipment == phone.equipment)
            return {writer, {request.folder, request.levels}};
    return {writer, rememberedDestination(main, phone.company, phone.equipment)};
}

} // namespace

QString Orphans::canonical(const QString& folder)
{
    const auto known = m_folders.constFind(folder);
    return known != m_folders.cend() ? *known
                                     : *m_folders.insert(folder, QFileInfo(folder).canonicalFilePath());
}

void Orphans::notePhone(const QString& folder, const QString& name)
{
    m_owned << canonical(folder) + u'/' + name;
}

QList<Orphan> Orphans::find(MMain& main, const QList<GenerationRequest>& requests)
{
    const QList<QString> folders = m_folders.values();
    QSet<QString> paths;
    for (const QString& folder : QSet<QString>(folders.begin(), folders.end()))
        for (const QString& name : deviceFilesIn(folder))
            if (const QString path = folder + u'/' + name; !m_owned.contains(path))
                paths << path;
    if (!paths.isEmpty())
        dropOwned(main, requests, paths);
    QStringList sorted(paths.begin(), paths.end());
    sorted.sort();
    QList<Orphan> orphans;
    for (const QString& path : sorted)
        orphans << Orphan{path.section(u'/', 0, -2), path.section(u'/', -1)};
    return orphans;
}

/// Takes the files of all phones of the database out of `paths`.
void Orphans::dropOwned(MMain& main, const QList<GenerationRequest>& requests, QSet<QString>& paths)
{
    QHash<std::pair<QString, QString>, Target> targets;
    for (Recordset rows = main.connection.select(u"SELECT * FROM PHONES"_s); !rows.eof(); rows.moveNext()) {
        const Phone phone = phoneOf(rows);
        const auto key = std::pair(phone.company, phone.equipment);
        auto target = targets.find(key);
        if (target == targets.end())
            target = targets.insert(key, targetOf(main, requests, phone));
        const std::optional<QString> folder =
            target->writer ? folderFor(target->destination, phone) : std::nullopt;
        if (folder)
            paths.remove(canonical(*folder) + u'/' +
                         target->writer->names(phone, target->destination.levels).device);
    }
}

} // namespace velmora
