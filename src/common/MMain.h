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

    /// The message of `code`, every "$$" in it replaced by `substitution`; shown when `show` is set. A
    /// message without a text row sets `show`, so that it is always seen. `details` explain what is shown.
    QString GetMessage(const QString& code, const QString& substitution, bool& show,
                       const QString& details = {});

    /// The two steps of GetMessage, for a text that is looked up long before it is said.
    QString messageText(const QString& code);
    QString worded(const QString& code, QString text, const QString& substitution, bool& show,
                   const QString& details = {}) const;

    /// GetMessage, shown.
    void showMessage(const QString& code, const QString& substitution = {});
    /// GetMessage, not shown unless it is missing: a line for a list.
    QString messageLine(const QString& code, const QString& substitution = {});

    /// The value that the current phone gets for parameter `code`, or an empty text after a shown message
    /// (M1 to M5). There is no fall-back from one level to another. A refused macro is a part of the value:
    /// where that is a secret, `macroShownAs` is shown in its place.
    QString GetParameterValue(const QString& code, const QString& macroShownAs = {});
    /// How it finds a value of a phone.
    static QString phoneValueStatement(const QString& company, const QString& phone, const QString& code);

    /// Expands the phone macro in `value` for the current phone. A refused macro is shown (M6); an unknown
    /// one also sets the stop flag.
    QString ExpandMacros(const QString& value, MacroContext context = MacroContext::Value,
                         const QString& macroShownAs = {});

    /// Shows that a macro is refused for the current phone (M6), by its own name unless another is given; an
    /// unknown one sets the stop flag.
    void showRefusedMacro(const MacroExpansion& expansion, const QString& shownAs = {});

    /// Lets the user choose a folder; `startFolder` when nothing was chosen.
    QString BrowseFolder(const QString& startFolder) const;

    /// The current row of `phones`. REQUIRES: there is one.
    Phone currentPhone() const;

    /// Keeps the statement as the SQL text and runs it, or takes its answer from `answers`.
    Recordset query(const QString& statement);

    /// Answers by statement. Where they are set, a query is asked once and its answer kept there: for as long
    /// as a run looks up the same for thousands of phones, and nothing else runs.
    using Answers = QHash<QString, Recordset>;
    Answers* answers = nullptr;
};

} // namespace velmora
