#include "phonebook/windows/FPBExp.h"

#include "phonebook/phone_book_export.h"

#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velmora {

FPBExp::FPBExp(MMain& main)
    : PhoneBookWindow(main, u"FPBExp"_s, u"PhoneBook Exportation"_s, u"Export"_s, 1, u"$$PBExp"_s),
      m_csv(new QRadioButton(u"CSV"_s)),
      m_workbook(new QRadioButton(u"Excel"_s))
{
    m_csv->setObjectName(u"Csv"_s);
    m_csv->setChecked(true);
    m_workbook->setObjectName(u"Workbook"_s);
    auto* format = new QWidget;
    auto* layout = new QHBoxLayout(format);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_csv);
    layout->addWidget(m_workbook);
    layout->addStretch();
    addInput(format);
    complete();
}

bool FPBExp::run()
{
    if (m_csv->isChecked()) {
        const bool written = exportToCsv(m_main, request(), report());
        if (written)
            showStatus(QDir::toNativeSeparators(csvPath(request())));
        return written;
    }
    const auto path = exportToWorkbook(m_main, request(), report());
    if (path) {
        showStatus(QDir::toNativeSeparators(*path));
        QDesktopServices::openUrl(QUrl::fromLocalFile(*path));
    }
    return path.has_value();
}

} // namespace velmora
