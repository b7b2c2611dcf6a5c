// The common module: the state that the whole program shares, and the lookups that every part uses.
#pragma once

#include "common/batch.h"
#include "common/macros.h"
#include "common/phone.h"
#include "common/prompts.h"
#include "common/remembered.h"
#include "database/connection.h"

namespace velmora {

/// One object for a whole run, made by main() and passed by reference. The start-up fills its state.
/// Lookups throw DatabaseError when the database fails.
class MMain {
public:
    MMain(QString folder, Prompts userPrompts);

    /// The folder of ParamDB.txt, the seed file and the manual, without a trailing separator.
    const QString programFolder;
    const Prompts prompts;
    /// The main connection: the working database.
    Connection connection;
    /// The phones of the current batch; its current row is the current phone.
    Recordset phones;
    /// The statement being built or last executed.
    QString sqlText;
    /// The language of all texts.
    QString language;
    /// The upper-case name whose rights hold.
    QString userName;
    /// Ends a generation run after its current step.
    bool stopFlag = false;
    Batch batch;
    Remembered remembered;

    /// The value of a row of SYSTEM_PARAMETERS, the first of a sub-code; nothing where there is none.
    std::optional<QString> setting(const QString& code, const QString& subcode);

    /// The text of `code` in `inLanguage` (the current language when empty), or an empty text.
    QString GetDescription(const QString& code, const QString& inLanguage = {});

    /// The text of `code`, or `otherwise` where the database holds none.
    QString textOr(const QString& code, const QString& otherwise);

    /// The text of a message, in which a "$$" stands for what is to be filled in; an empty text where there
    /// is none.
    QString messageText(const QString& code);

    /// The message of `code`, every "$$" in it replaced by `substitution`; shown when `show` is set. A
    /// message without a text row sets `show`, so that it is always seen. `details` explain what is shown.
    QString GetMessage(const QString& code, const QString& substitution, bool& show,
                       const QString& details = {});

    /// GetMessage, shown.
    void showMessage(const QString& code, const QString& substitution = {});
    /// GetMessage, not shown unless it is missing: a line for a list.
    QString messageLine(const QString& code, const QString& substitution = {});

    /// The value that the current phone gets for parameter `code`, or an empty text after a shown message
    /// (M1 to M5). There is no fall-back from one level to another.
    QString GetParameterValue(const QString& code);

    /// Expands the phone macro in `value` for the current phone. A refused macro is shown (M6); an unknown
    /// one also sets the stop flag.
    QString ExpandMacros(const QString& value, MacroContext context = MacroContext::Value);

    /// Lets the user choose a folder; `startFolder` when nothing was chosen.
    QString BrowseFolder(const QString& startFolder) const;

    /// The current row of `phones`. REQUIRES: there is one.
    Phone currentPhone() const;

    /// Keeps the statement as the SQL text and runs it.
    Recordset query(const QString& statement);
};

} // namespace velmora
