#include "status/orphans.h"

#include "common/MMain.h"
#include "files/stored_path.h"
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

QString Orphans::keyOf(const QString& folder, const QString& name)
{
    return comparable(canonical(folder) + u'/' + name);
}

void Orphans::notePhone(const QString& folder, const QString& name)
{
    m_owned << keyOf(folder, name);
}

QList<Orphan> Orphans::find(MMain& main, const QList<GenerationRequest>& requests)
{
    const QList<QString> folders = m_folders.values();
    QHash<QString, Orphan> found;
    for (const QString& folder : QSet<QString>(folders.begin(), folders.end()))
        for (const QString& name : deviceFilesIn(folder))
            if (const QString key = comparable(folder + u'/' + name); !m_owned.contains(key))
                found.insert(key, {folder, name});
    if (!found.isEmpty())
        dropOwned(main, requests, found);
    QList<Orphan> orphans = found.values();
    std::sort(orphans.begin(), orphans.end(), [](const Orphan& one, const Orphan& other) {
        return one.folder + u'/' + one.name < other.folder + u'/' + other.name;
    });
    return orphans;
}

/// Takes the files of all phones of the database out of `found`.
void Orphans::dropOwned(MMain& main, const QList<GenerationRequest>& requests, QHash<QString, Orphan>& found)
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
            found.remove(keyOf(*folder, target->writer->names(phone, target->destination.levels).device));
    }
}

} // namespace velmora
