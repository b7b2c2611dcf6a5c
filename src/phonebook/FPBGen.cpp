#include "phonebook/FPBGen.h"

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
    generatePhoneBook(m_main, request(), report());
}

} // namespace velmora
