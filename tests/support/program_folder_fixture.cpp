#include "support/program_folder_fixture.h"

#include "files/whole_file.h"
#include "startup/start_up.h"

using namespace Qt::StringLiterals;

namespace velmora {

ProgramFolderFixture::ProgramFolderFixture(const QString& share)
    : m_working(m_folder.filePath(u"velmora.db"_s))
{
    writeParamDB(working().replace(m_folder.path(), "$$APPPATH$$"_L1),
                 u"Provider=SQLite;Data Source=$$APPPATH$$/factory.db"_s);
    write(u"factory.db"_s, readWholeFile(share + "/factory.db"_L1));
}

void ProgramFolderFixture::write(const QString& name, const QByteArray& content) const
{
    writeWholeFile(file(name), content);
}

void ProgramFolderFixture::writeParamDB(const QString& working, const QString& original) const
{
    write(u"ParamDB.txt"_s, (working + "\r\n"_L1 + original + "\r\n"_L1).toUtf8());
}

Start::Start(const ProgramFolderFixture& folder, const std::optional<QString>& answer,
             const std::function<void()>& onEvents)
    : main(folder.path(), user.prompts())
{
    user.textAnswer = answer;
    user.onEvents = onEvents;
    ready = StartUp(main, u"jdoe"_s);
}

} // namespace velmora
