#include "common/MMain.h"

#include "common/texts/built_in_texts.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace velmora {

MMain::MMain(QString folder, Prompts userPrompts)
    : programFolder(std::move(folder)), prompts(std::move(userPrompts)), language(u"EN"_s)
{
}

std::optional<QString> MMain::setting(const QString& code, const QString& subcode)
{
    const Recordset rows = query("SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '"_L1 + code +
                                 "' AND SY_SUBCODE = '"_L1 + subcode + u'\'');
    return rows.eof() ? std::nullopt : std::optional(rows.text(0));
}

QString MMain::GetDescription(const QString& code, const QString& inLanguage)
{
    const Recordset texts = connection.select(
        "SELECT SY_VALUE FROM SYSTEM_PARAMETERS WHERE SY_CODE = '$$DESC_"_L1 +
        (inLanguage.isEmpty() ? language : inLanguage) + "' AND SY_SUBCODE = '"_L1 + code + "'"_L1);
    return texts.eof() ? QString() : texts.text(0);
}

QString MMain::textOr(const QString& code, const QString& otherwise)
{
    const QString text = GetDescription(code);
    return text.isEmpty() ? otherwise : text;
}

QString MMain::messageText(const QString& code)
{
    const QString text = GetDescription(code);
    return text.isEmpty() ? builtInText(code, language) : text;
}

QString MMain::worded(const QString& code, QString text, const QString& substitution, bool& show,
                      const QString& details) const
{
    if (text.isEmpty()) {
        text = "Message Not Found : "_L1 + code + " Language : "_L1 + language;
        show = true;
    }
    text.replace("$$"_L1, substitution);
    if (show)
        prompts.show(text, details);
    return text;
}

QString MMain::GetMessage(const QString& code, const QString& substitution, bool& show,
                          const QString& details)
{
    return worded(code, messageText(code), substitution, show, details);
}

void MMain::showMessage(const QString& code, const QString& substitution)
{
    bool show = true;
    GetMessage(code, substitution, show);
}

QString MMain::messageLine(const QString& code, const QString& substitution)
{
    bool show = false;
    return GetMessage(code, substitution, show);
}

QString MMain::GetParameterValue(const QString& code, const QString& macroShownAs)
{
    const Phone phone = currentPhone();
    const Recordset parameter =
        query("SELECT PA_DEFAULT, LE_CODE FROM EQUIPMENT_PARAMETERS WHERE EQ_CODE = '"_L1 + phone.equipment +
              "' AND PA_CODE = '"_L1 + code + "'"_L1);
    const auto refuse = [&](const QString& message) {
        bool show = true;
        GetMessage(message, code, show, describe(phone));
        return QString();
    };
    if (parameter.eof())
        return refuse(u"M1"_s);
    const QString level = parameter.text(1);
    if (level == "E"_L1)
        return parameter.text(0);
    if (level == "C"_L1) {
        const Recordset value =
            query("SELECT PA_VALUE FROM COMPANY_PARAMETERS WHERE CO_CODE = '"_L1 + phone.company +
                  "' AND EQ_CODE = '"_L1 + phone.equipment + "' AND PA_CODE = '"_L1 + code + "'"_L1);
        return value.eof() ? refuse(u"M5"_s) : ExpandMacros(value.text(0), MacroContext::Value, macroShownAs);
    }
    if (level == "P"_L1) {
        const Recordset value = query(phoneValueStatement(phone.company, phone.code, code));
        return value.eof() ? refuse(u"M4"_s) : ExpandMacros(value.text(0), MacroContext::Value, macroShownAs);
    }
    return refuse(level == "D"_L1 ? u"M3"_s : u"M2"_s);
}

QString MMain::ExpandMacros(const QString& value, MacroContext context, const QString& macroShownAs)
{
    if (!value.contains("$$"_L1))
        return value;
    const MacroExpansion expansion = expandMacros(value, currentPhone(), context);
    if (!expansion.refusedToken.isEmpty())
        showRefusedMacro(expansion, macroShownAs);
    return expansion.text;
}

void MMain::showRefusedMacro(const MacroExpansion& expansion, const QString& shownAs)
{
    bool show = true;
    GetMessage(u"M6"_s, shownAs.isEmpty() ? expansion.refusedToken : shownAs, show, describe(currentPhone()));
    stopFlag = stopFlag || expansion.unknownName;
}

QString MMain::BrowseFolder(const QString& startFolder) const
{
    const QString chosen =
        prompts.chooseFolder(startFolder.isEmpty() ? QDir::currentPath() : startFolder).value_or(QString());
    return chosen.isEmpty() ? startFolder : chosen;
}

Phone MMain::currentPhone() const
{
    return phoneOf(phones);
}

QString MMain::phoneValueStatement(const QString& company, const QString& phone, const QString& code)
{
    return "SELECT PA_VALUE FROM PHONES_PARAMETERS WHERE CO_CODE = '"_L1 + company + "' AND PH_CODE = '"_L1 +
           phone + "' AND PA_CODE = '"_L1 + code + "'"_L1;
}

Recordset MMain::query(const QString& statement)
{
    sqlText = statement;
    if (!answers)
        return connection.select(statement);
    if (const auto known = answers->constFind(statement); known != answers->cend())
        return *known;
    return *answers->insert(statement, connection.select(statement));
}

} // namespace velmora
