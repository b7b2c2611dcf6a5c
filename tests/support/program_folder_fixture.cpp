#include "support/program_folder_fixture.h"

#include "files/whole_file.h"

using namespace Qt::StringLiterals;

namespace velmora {

ProgramFolderFixture::ProgramFolderFixture(const QString& share)
    : m_working(m_folder.filePath(u"velmora.db"_s))
{
    write(u"ParamDB.txt"_s, working().replace(m_folder.path(), "$$APPPATH$$"_L1).toUtf8() +
                                "\r\nProvider=SQLite;Data Source=$$APPPATH$$/factory.db\r\n");
    write(u"factory.db"_s, readWholeFile(share + "/factory.db"_L1));
}

void ProgramFolderFixture::write(const QString& name, const QByteArray& content) const
{
    writeWholeFile(file(name), content);
}

} // namespace velmora
