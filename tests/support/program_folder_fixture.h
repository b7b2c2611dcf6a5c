// A program folder of a test's own, and starts of the program in it.
#pragma once

#include "common/MMain.h"
#include "support/recorded_prompts.h"
#include "support/test_engine.h"

#include <QByteArray>
#include <QTemporaryDir>

namespace velmora {

/// Holds a ParamDB.txt that names an empty working database ("velmora.db" in the folder for the embedded
/// engine) and "factory.db" in the folder, and a copy of the factory database.
class ProgramFolderFixture {
public:
    /// `share` is the folder that holds the factory database.
    explicit ProgramFolderFixture(const QString& share);

    QString path() const { return m_folder.path(); }
    QString file(const QString& name) const { return m_folder.filePath(name); }
    void write(const QString& name, const QByteArray& content) const;
    /// Makes ParamDB.txt name these two databases.
    void writeParamDB(const QString& working, const QString& original) const;
    /// The working database.
    QString working() const { return m_working.connectionString(); }
    /// The database in a file of the folder.
    QString embedded(const QString& name) const
    {
        return QLatin1String("Provider=SQLite;Data Source=") + file(name);
    }

private:
    QTemporaryDir m_folder;
    EmptyDatabase m_working;
};

/// One start of the program in the folder, by the user "jdoe".
struct Start {
    /// `answer` is what the user answers; `onEvents` runs whenever window events may run.
    explicit Start(const ProgramFolderFixture& folder, const std::optional<QString>& answer = {},
                   const std::function<void()>& onEvents = {});

    RecordedPrompts user;
    MMain main;
    bool ready = false;
};

} // namespace velmora
