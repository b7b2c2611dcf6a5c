#include "support/program_folder_fixture.h"

#include "files/whole_file.h"

using namespace Qt::StringLiterals;

namespace velmora {

ProgramFolderFixture::ProgramFolderFixture(const QString& share)
{
    write(u"ParamDB.txt"_s, "Provider=SQLite;Data Source=$$APPPATH$$/velmora.db\r\n"
                            "Provider=SQLite;Data Source=$$APPPATH$$/factory.db\r\n");
    write(u"factory.db"_s, readWholeFile(share + "/factory.db"_L1));
}

void ProgramFolderFixture::write(const QString& name, const QByteArray& content) const
{
    writeWholeFile(file(name), content);
}

} // namespace velmora
