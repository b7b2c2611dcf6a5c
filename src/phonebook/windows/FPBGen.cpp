#include "phonebook/windows/FPBGen.h"

#include "files/stored_path.h"
#include "phonebook/address_book.h"

using namespace Qt::StringLiterals;

namespace velmora {

FPBGen::FPBGen(MMain& main)
    : PhoneBookWindow(main, u"FPBGen"_s, u"PhoneBook Generation"_s, u"Generate"_s, 2, u"$$PBGEN"_s)
{
    complete();
}

void FPBGen::run()
{
    if (generatePhoneBook(m_main, request(), report()))
        showStatus(pathIn(localFolder(request().folder), addressBookName));
}

} // namespace velmora
