// Files that look like those of phones, and belong to none.
#pragma once

#include "generation/generate.h"

namespace velmora {

/// A file that belongs to no phone.
struct Orphan {
    QString folder;
    QString name;
};

/// Looks for orphans in the folders in which the files of phones were looked for.
class Orphans {
public:
    /// Notes that the phone's file is looked for in `folder` under `name`.
    void notePhone(const QString& folder, const QString& name);

    /// The files in the noted folders whose names follow the pattern of a module's device files, by folder
    /// and name, but for those of noted phones and of any phone whose remembered folder, or that of one of
    /// the requests, leads there. Throws DatabaseError.
    QList<Orphan> find(MMain& main, const QList<GenerationRequest>& requests);

private:
    QString canonical(const QString& folder);
    void dropOwned(MMain& main, const QList<GenerationRequest>& requests, QHash<QString, Orphan>& found);
    QString keyOf(const QString& folder, const QString& name);

    /// The folders as the file system knows them, by the names that lead there.
    QHash<QString, QString> m_folders;
    QSet<QString> m_owned;
};

} // namespace velmora
