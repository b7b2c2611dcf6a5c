#include "phonebook/address_book.h"

#include "common/MMain.h"
#include "files/ansi.h"
#include "files/stored_path.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"

using namespace Qt::StringLiterals;

namespace velmora {

QByteArray addressBook(const QList<AddressBookEntry>& entries)
{
    QByteArray file = "<?xml version=\"1.0\"?>\r\n<AddressBook>\r\n";
    for (qsizetype index = 0; index < entries.size(); ++index) {
        file += "<Contact>\r\n<LastName>";
        appendAnsi(file, entries[index].name);
        file += "</LastName>\r\n<FirstName></FirstName>\r\n<Phone>\r\n<phonenumber>";
        appendAnsi(file, entries[index].number);
        file += "</phonenumber>\r\n<accountindex>" + QByteArray::number(index) +
                "</accountindex>\r\n</Phone>\r\n</Contact>\r\n";
    }
    return file + "</AddressBook>\r\n";
}

bool generatePhoneBook(MMain& main, const PhoneBookRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    if (!openPhones(main, request) || !loadsPhoneBooks(main))
        return false;
    QList<AddressBookEntry> entries;
    Recordset rows = main.query("SELECT * FROM PHONE_BOOK WHERE CO_CODE = '"_L1 + request.company +
                                "' AND BK_FLAG <> 'H' ORDER BY BK_NAME"_L1);
    for (; !rows.eof(); rows.moveNext()) {
        report.progress(rows.absolutePosition() - 1, rows.recordCount());
        if (main.stopFlag) {
            report.line(main.messageLine(u"M219"_s));
            return false;
        }
        entries << AddressBookEntry{rows.text("BK_NUM"_L1), rows.text("BK_NAME"_L1)};
        report.line(entries.last().number + " - "_L1 + entries.last().name);
        if (!fitsAnsi(entries.last().number) || !fitsAnsi(entries.last().name))
            report.tell({main.messageLine(u"M218"_s), true});
    }
    removeLeftovers(localFolder(request.folder));
    writeWholeFile(pathIn(localFolder(request.folder), addressBookName), addressBook(entries));
    report.progress(rows.recordCount(), rows.recordCount());
    return true;
}

} // namespace velmora
