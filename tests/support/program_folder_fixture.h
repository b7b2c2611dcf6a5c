// A program folder of a test's own.
#pragma once

#include <QByteArray>
#include <QTemporaryDir>

namespace velmora {

/// Holds a ParamDB.txt that names "velmora.db" and "factory.db" in the folder, and a copy of the factory
/// database.
class ProgramFolderFixture {
public:
    /// `share` is the folder that holds the factory database.
    explicit ProgramFolderFixture(const QString& share);

    QString path() const { return m_folder.path(); }
    QString file(const QString& name) const { return m_folder.filePath(name); }
    void write(const QString& name, const QByteArray& content) const;

private:
    QTemporaryDir m_folder;
};

} // namespace velmora
