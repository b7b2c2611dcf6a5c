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

bool FPBGen::run()
{
    const bool written = generatePhoneBook(m_main, request(), report());
    if (written)
        showStatus(pathIn(localFolder(request().folder), addressBookName));
    return written;
}

} // namespace velmora
