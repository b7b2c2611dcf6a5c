#include "phonebook/windows/FPBImp.h"

#include "phonebook/phone_book_import.h"

using namespace Qt::StringLiterals;

namespace velmora {

FPBImp::FPBImp(MMain& main)
    : PhoneBookWindow(main, u"FPBImp"_s, u"PhoneBook Importation"_s, u"Import"_s, 2, u"$$PBIMP"_s)
{
    complete();
}

bool FPBImp::run()
{
    return importPhoneBook(m_main, request(), report()).has_value();
}

} // namespace velmora
