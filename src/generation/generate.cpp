#include "generation/generate.h"

#include "common/MMain.h"
#include "files/file_error.h"
#include "files/stored_path.h"
#include "files/unfinished_file.h"
#include "files/whole_file.h"
#include "files/windows_names.h"
#include "generation/destination.h"
#include "generation/phone_files.h"
#include "modules/GXP2000.h"
#include "modules/modules.h"

#include <QDir>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

/// One run over the phones of the shared record set. A step that returns false ends it.
class Run {
public:
    Run(MMain& main, const GenerationRequest& request, const RunReport& report)
        : m_main(main), m_request(request), m_report(report), m_files(main, request.levels)
    {
    }

    std::optional<qsizetype> overAllPhones()
    {
        const qsizetype total = m_main.phones.recordCount();
        m_report.progress(0, total);
        for (; !m_main.phones.eof(); m_main.phones.moveNext()) {
            if (m_main.stopFlag) {
                m_report.line(lineOf(u"M205"_s, outOf(m_main.phones.absolutePosition() - 1, total)));
                return std::nullopt;
            }
            m_hasRemark = false;
            if (!generatePhone())
                return std::nullopt;
            m_withRemarks += m_hasRemark ? 1 : 0;
            m_report.progress(m_main.phones.absolutePosition(), total);
        }
        m_report.line(lineOf(u"M12"_s));
        if (m_withRemarks > 0)
            m_report.tell({lineOf(u"M290"_s, outOf(m_withRemarks, total)), true});
        return m_withRemarks;
    }

private:
    static QString outOf(qsizetype some, qsizetype total)
    {
        return QString::number(some) + " / "_L1 + QString::number(total);
    }

    /// A message as a line. Its text is looked up once per run, unless it is missing, which is always shown.
    QString lineOf(const QString& code, const QString& substitution = {})
    {
        QString& text = m_texts[code];
        if (text.isEmpty())
            text = m_main.messageText(code);
        return text.isEmpty() ? m_main.messageLine(code, substitution)
                              : QString(text).replace("$$"_L1, substitution);
    }

    /// Lists something that is not in order about the current phone.
    void remark(const QString& line)
    {
        m_hasRemark = true;
        m_report.tell({line, true});
    }

    bool generatePhone()
    {
        const Phone phone = m_main.currentPhone();
        const QString folder = localFolder(m_main.ExpandMacros(m_request.folder));
        if (m_main.stopFlag)
            return false;
        if (!followsPattern(folder, localFolder(m_request.folder))) {
            remark(lineOf(u"M269"_s, describe(phone)));
            return true;
        }
        if (const QString name = nameForbiddenHere(folder); !name.isEmpty()) {
            remark(lineOf(u"M366"_s, describe(phone) + ": "_L1 + name));
            return true;
        }
        if (folder.isEmpty() || !QDir(folder).exists()) {
            m_main.showMessage(u"M7"_s, folder);
            return false;
        }
        tidyOnce(folder);
        const auto parameters = m_files.parametersOf(phone, m_staging);
        const bool goOn = parameters && dispatch(phone, *parameters, folder);
        listStagingLines();
        return goOn;
    }

    /// Removes what an earlier run was killed over: a half device file holds passwords too.
    void tidyOnce(const QString& folder)
    {
        if (m_tidied.contains(folder))
            return;
        m_tidied.insert(folder);
        removeLeftovers(folder);
    }

    /// Lists what staging had to say, once it is clear about which phone.
    void listStagingLines()
    {
        for (const QString& line : std::exchange(m_stagingLines, {}))
            remark(line);
    }

    bool dispatch(const Phone& phone, const QList<MergedParameter>& parameters, const QString& folder)
    {
        if (!m_module) {
            const Recordset modules = m_main.query("SELECT EQ_MODULE FROM EQUIPMENT WHERE EQ_CODE = '"_L1 +
                                                   phone.equipment + u'\'');
            if (modules.recordCount() != 1)
                return refuse(u"M9"_s, phone.equipment);
            m_module = moduleOf(modules.text(0));
            if (!m_module)
                return refuse(u"M10"_s, phone.equipment + " - "_L1 + modules.text(0));
        }
        return !m_module->writer || writeFiles(*m_module->writer, phone, parameters, folder);
    }

    bool refuse(const QString& message, const QString& substitution)
    {
        m_main.showMessage(message, substitution);
        m_main.stopFlag = true;
        return false;
    }

    bool writeFiles(const Writer& writer, const Phone& phone, const QList<MergedParameter>& parameters,
                    const QString& folder)
    {
        const DeviceFileNames names = writer.names(phone, m_request.levels);
        m_report.line(lineOf(u"M13"_s, names.source + " - "_L1 + phone.description));
        listStagingLines();
        checkAddress(phone);
        if (parameters.isEmpty()) {
            remark(lineOf(u"M14"_s));
            return true;
        }
        // The device file of a template replaces a source copy of the same name, which needs no writing then.
        const bool writesSource = m_request.withSource && names.source != names.device;
        for (const QString& name : {names.device, writesSource ? names.source : names.device})
            if (const QString refusal = refusalOfFileName(name); !refusal.isEmpty()) {
                remark(lineOf(refusal, name));
                return true;
            }
        try {
            const DeviceFile file = m_files.device(writer, phone, parameters);
            const DeviceFile source =
                m_request.withSource ? m_files.source(writer, parameters) : DeviceFile();
            if (writesSource)
                writeWholeFile(pathIn(folder, names.source), source.bytes);
            writeWholeFile(pathIn(folder, names.device), file.bytes);
            reportLosses(file, source, phone);
        } catch (const FileError& error) {
            m_main.showMessage(u"M204"_s,
                               describe(phone) + " - "_L1 + error.path() + " - "_L1 + error.description());
            return false;
        } catch (const ImageTooLarge&) {
            m_main.showMessage(u"M203"_s, describe(phone));
            return false;
        }
        m_report.line(lineOf(u"M15"_s));
        return true;
    }

    void checkAddress(const Phone& phone)
    {
        static const QRegularExpression twelveDigits(u"^[0-9A-Fa-f]{12}$"_s);
        if (!m_request.levels.phone)
            return;
        if (!twelveDigits.match(phone.mac).hasMatch())
            remark(lineOf(u"M206"_s, phone.mac));
        QString& owner = m_addresses[phone.mac.toUpper()];
        if (!owner.isEmpty())
            remark(lineOf(u"M267"_s, owner));
        else
            owner = phone.code;
    }

    void reportLosses(const DeviceFile& file, const DeviceFile& source, const Phone& phone)
    {
        for (const QChar character : file.rejectedDigits)
            remark(lineOf(u"M11"_s, character + " - "_L1 + phone.mac));
        QStringList lossyCodes = file.lossyCodes + source.lossyCodes;
        lossyCodes.removeDuplicates();
        if (!lossyCodes.isEmpty())
            remark(lineOf(u"M202"_s, lossyCodes.join(", "_L1)));
    }

    MMain& m_main;
    const GenerationRequest& m_request;
    const RunReport& m_report;
    PhoneFiles m_files;
    /// The module of all phones, once it is known.
    const Module* m_module = nullptr;
    /// The texts of the messages, by their codes.
    QHash<QString, QString> m_texts;
    /// Lines about the parameters of the current phone that are not in the list yet.
    QStringList m_stagingLines;
    const StagingReport m_staging = {
        [this](const QString& line) { m_stagingLines << line; },
        [this](const MacroExpansion& expansion) { m_main.showRefusedMacro(expansion); }};
    QSet<QString> m_tidied;
    bool m_hasRemark = false;
    qsizetype m_withRemarks = 0;
    /// The MAC addresses of the run, in upper case, and the code of the first phone that has each.
    QHash<QString, QString> m_addresses;
};

QString quotedList(QStringList codes)
{
    for (QString& code : codes)
        code = u'\'' + code.replace(u'\'', "''"_L1) + u'\'';
    return codes.isEmpty() ? u"NULL"_s : codes.join(", "_L1);
}

QString selectionStatement(const GenerationRequest& request)
{
    QString statement = "SELECT * FROM PHONES WHERE CO_CODE = '"_L1 + request.company +
                        "' AND EQ_CODE = '"_L1 + request.equipment + "' "_L1;
    if (request.levels.phone)
        statement +=
            "AND PH_CODE BETWEEN '"_L1 + request.phoneFrom + "' AND '"_L1 + request.phoneTo + "' "_L1;
    if (request.codes)
        statement += "AND PH_CODE IN ("_L1 + quotedList(*request.codes) + ") "_L1;
    return statement + "ORDER BY PH_CODE"_L1;
}

} // namespace

Recordset selectedPhones(MMain& main, const GenerationRequest& request)
{
    return main.query(selectionStatement(request));
}

std::optional<qsizetype> Generate(MMain& main, const GenerationRequest& request, const RunReport& report)
{
    main.stopFlag = false;
    main.phones = selectedPhones(main, request);
    if (main.phones.eof()) {
        main.showMessage(u"M8"_s);
        return std::nullopt;
    }
    return Run(main, request, report).overAllPhones();
}

} // namespace velmora
