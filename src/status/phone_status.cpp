#include "status/phone_status.h"

#include "common/MMain.h"
#include "files/ansi.h"
#include "files/stored_path.h"
#include "generation/destination.h"
#include "generation/phone_files.h"
#include "modules/GXP2000.h"
#include "reboot/last_restart.h"
#include "status/device_files.h"
#include "status/orphans.h"

#include <QDir>
#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// What is lacking for the bytes of a phone's file, or those bytes.
struct Now {
    std::optional<QByteArray> bytes;
    /// Why there are none; empty where the phone just has no parameters.
    QString remark;
};

/// By their codes, the last of each.
QList<FileParameter> sorted(QList<FileParameter> parameters)
{
    const auto comesBefore = [](const FileParameter& one, const FileParameter& other) {
        return one.code.compare(other.code) < 0;
    };
    // From the end: of equal ones, that which was last comes first and stays.
    std::reverse(parameters.begin(), parameters.end());
    std::stable_sort(parameters.begin(), parameters.end(), comesBefore);
    parameters.erase(std::unique(parameters.begin(), parameters.end(),
                                 [](const FileParameter& one, const FileParameter& other) {
                                     return one.code == other.code;
                                 }),
                     parameters.end());
    return parameters;
}

QString decoded(QByteArrayView text)
{
    return decodeAnsi(text.toByteArray());
}

/// Only what differs is decoded: of most phones, most is equal.
QList<Difference> differencesOf(const FileContents& inFile, const FileContents& now)
{
    const QList<FileParameter> olds = sorted(inFile.parameters);
    const QList<FileParameter> news = sorted(now.parameters);
    QList<Difference> differences;
    auto old = olds.begin();
    auto current = news.begin();
    while (old != olds.end() || current != news.end()) {
        const int order = old == olds.end()       ? 1
                          : current == news.end() ? -1
                                                  : old->code.compare(current->code);
        if (order < 0)
            differences << Difference{decoded(old->code), decoded(old->value), std::nullopt};
        else if (order > 0)
            differences << Difference{decoded(current->code), std::nullopt, decoded(current->value)};
        else if (old->value != current->value)
            differences << Difference{decoded(old->code), decoded(old->value), decoded(current->value)};
        old += order <= 0 ? 1 : 0;
        current += order >= 0 ? 1 : 0;
    }
    return differences;
}

/// The comparison of the phones of one request.
class Comparison {
public:
    /// REQUIRES: the main module has a current phone.
    Comparison(MMain& main, const GenerationRequest& request, Orphans& orphans)
        : m_main(main),
          m_destination{request.folder, request.levels},
          m_module(moduleOfModel(main, request.equipment)),
          m_files(main, request.levels),
          m_orphans(orphans)
    {
        if (m_module && m_module->restart)
            for (const QString& key : m_module->restart->addressKeys)
                m_addressCodes << main.setting("$$"_L1 + request.equipment, key).value_or(QString());
    }

    /// The status of the current phone.
    PhoneStatus of(const Phone& phone)
    {
        m_differences.clear();
        PhoneStatus status;
        status.phone = phone;
        if (!m_module || !m_module->writer)
            return status;
        status.file = m_module->writer->names(phone, m_destination.levels).device;
        const std::optional<QString> folder = folderFor(m_destination, phone);
        if (!folder || !exists(*folder)) {
            status.state = FileState::NoFolder;
            status.folder = folder.value_or(QString());
            return status;
        }
        status.folder = *folder;
        m_orphans.notePhone(*folder, status.file);
        compare(status, now(status));
        return status;
    }

    /// What differs for the phone that was compared last.
    const QList<Difference>& differences() const { return m_differences; }

private:
    bool exists(const QString& folder)
    {
        const auto known = m_exists.constFind(folder);
        return known != m_exists.cend() ? *known : *m_exists.insert(folder, QDir(folder).exists());
    }

    Now now(PhoneStatus& status)
    {
        if (const QString refusal = refusalOfFileName(status.file); !refusal.isEmpty())
            return {{}, m_main.messageLine(refusal, status.file).trimmed()};
        QString refused;
        const auto parameters = m_files.parametersOf(
            *status.phone,
            {[](const QString&) {},
             [&refused](const MacroExpansion& expansion) { refused = expansion.refusedToken; }});
        if (!parameters)
            return {{}, m_main.messageLine(u"M6"_s, refused)};
        status.address = addressIn(*parameters);
        if (parameters->isEmpty())
            return {};
        try {
            return {m_files.device(*m_module->writer, *status.phone, *parameters).bytes, {}};
        } catch (const ImageTooLarge&) {
            return {{}, m_main.messageLine(u"M203"_s, describe(*status.phone))};
        }
    }

    QString addressIn(const QList<MergedParameter>& parameters) const
    {
        QStringList parts;
        for (const QString& code : m_addressCodes) {
            const auto found =
                std::find_if(parameters.begin(), parameters.end(),
                             [&code](const MergedParameter& one) { return one.parameter().code == code; });
            if (found != parameters.end())
                parts << found->parameter().value;
        }
        return parts.size() == m_addressCodes.size() ? parts.join(u'.') : QString();
    }

    void compare(PhoneStatus& status, const Now& now)
    {
        const bool isPossible = refusalOfFileName(status.file).isEmpty();
        const FoundFile found = isPossible ? findFile(pathIn(status.folder, status.file)) : FoundFile();
        status.remark = now.remark;
        if (!found.exists)
            status.state = now.bytes || !now.remark.isEmpty() ? FileState::Missing : FileState::NoFile;
        else if (!found.bytes)
            setUnreadable(status, found.reason.isEmpty() ? m_main.messageLine(u"M373"_s) : found.reason);
        else if (found.bytes == now.bytes)
            status.state = FileState::Current;
        else
            compareContents(status, *found.bytes, now.bytes);
    }

    void compareContents(PhoneStatus& status, const QByteArray& inFile, const std::optional<QByteArray>& now)
    {
        static const QHash<Unreadable, QString> reasons = {{Unreadable::Foreign, u"M370"_s},
                                                           {Unreadable::CutOff, u"M371"_s},
                                                           {Unreadable::WrongChecksum, u"M372"_s}};
        const FileContents contents = m_module->reader(inFile);
        if (contents.failure) {
            setUnreadable(status, m_main.messageLine(reasons[*contents.failure]));
            return;
        }
        status.state = FileState::Different;
        m_differences = differencesOf(contents, now ? m_module->reader(*now) : FileContents());
        status.differences = m_differences.size();
    }

    static void setUnreadable(PhoneStatus& status, const QString& reason)
    {
        status.state = FileState::Unreadable;
        status.remark = reason;
    }

    MMain& m_main;
    const Destination m_destination;
    const Module* m_module;
    PhoneFiles m_files;
    Orphans& m_orphans;
    /// The parameters that hold the parts of the phones' addresses.
    QStringList m_addressCodes;
    QHash<QString, bool> m_exists;
    QList<Difference> m_differences;
};

} // namespace

QString nameOf(FileState state)
{
    switch (state) {
    case FileState::Current:
        return u"current"_s;
    case FileState::Different:
        return u"different"_s;
    case FileState::Missing:
        return u"missing"_s;
    case FileState::Unreadable:
        return u"unreadable"_s;
    case FileState::NoFile:
        return u"no file"_s;
    case FileState::NoFolder:
        return u"no folder"_s;
    case FileState::Orphan:
        return u"orphan"_s;
    }
    return {};
}

bool comparePhones(MMain& main, const QList<GenerationRequest>& requests, const StatusSink& each,
                   const ProgressSink& progress)
{
    main.stopFlag = false;
    QList<Recordset> phones;
    qsizetype total = 0;
    for (const GenerationRequest& request : requests) {
        phones << selectedPhones(main, request);
        total += phones.last().recordCount();
    }
    if (total == 0)
        return true;
    const QHash<QString, LastRestart> restarts = lastRestarts(main, requests.first().company);
    Orphans orphans;
    qsizetype done = 0;
    progress(done, total);
    for (qsizetype model = 0; model < requests.size(); ++model) {
        main.phones = phones[model];
        if (main.phones.eof())
            continue;
        Comparison comparison(main, requests[model], orphans);
        for (; !main.phones.eof(); main.phones.moveNext()) {
            if (main.stopFlag)
                return false;
            PhoneStatus status = comparison.of(main.currentPhone());
            status.lastRestart = restarts.value(status.phone->code).time;
            each(status, comparison.differences());
            progress(++done, total);
        }
    }
    for (const Orphan& orphan : orphans.find(main, requests))
        each({{}, orphan.name, orphan.folder, FileState::Orphan, 0, {}, {}, {}}, {});
    return true;
}

QList<Difference> differencesOf(MMain& main, const GenerationRequest& request)
{
    const Recordset before = main.phones;
    const auto restore = qScopeGuard([&] { main.phones = before; });
    main.phones = selectedPhones(main, request);
    if (main.phones.eof())
        return {};
    Orphans unused;
    Comparison comparison(main, request, unused);
    comparison.of(main.currentPhone());
    return comparison.differences();
}

} // namespace velmora
