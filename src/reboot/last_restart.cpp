#include "reboot/last_restart.h"

#include "common/MMain.h"
#include "files/file_error.h"
#include "files/whole_file.h"
#include "runs/phone_selection.h"

#include <QCryptographicHash>
#include <QDateTime>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

const QString code = u"$$RESTART"_s;

} // namespace

QHash<QString, LastRestart> lastRestarts(MMain& main, const QString& company)
{
    // What begins with the company and a blank: "!" is the next character, and the engines compare codes.
    const QString first = company + u' ';
    Recordset rows =
        main.connection.select(u"SELECT SY_SUBCODE, SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = ? AND "
                               "SY_SUBCODE >= ? AND SY_SUBCODE < ?"_s,
                               {code, first, company + u'!'});
    QHash<QString, LastRestart> found;
    for (; !rows.eof(); rows.moveNext()) {
        const QString value = rows.text(1);
        found.insert(rows.text(0).sliced(first.size()), {value.section(u' ', 0, 0), value.section(u' ', 1)});
    }
    return found;
}

void recordRestart(MMain& main, const Phone& phone, const QString& fingerprint)
{
    const QString now = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    remember(main, code, phone.company + u' ' + phone.code, now + u' ' + fingerprint);
}

QString fingerprintOf(const std::optional<QString>& file)
{
    if (!file)
        return u"-"_s;
    try {
        return QString::fromLatin1(
            QCryptographicHash::hash(readWholeFile(*file), QCryptographicHash::Sha256).toHex());
    } catch (const FileError&) {
        return u"-"_s;
    }
}

std::optional<QString> DeviceFiles::pathOf(const Phone& phone)
{
    const Model& model = modelOf(phone);
    return model.writer ? deviceFilePath(model.destination, *model.writer, phone) : std::nullopt;
}

const DeviceFiles::Model& DeviceFiles::modelOf(const Phone& phone)
{
    const auto key = std::pair(phone.company, phone.equipment);
    const auto known = m_models.constFind(key);
    if (known != m_models.cend())
        return *known;
    Model model{writerOf(m_main, phone.equipment), {}};
    if (model.writer)
        model.destination = rememberedDestination(m_main, phone.company, phone.equipment);
    return *m_models.insert(key, model);
}

} // namespace velmora
