#include "windows/failure_report.h"

#include "common/MMain.h"
#include "common/texts/refusal.h"
#include "files/file_error.h"

using namespace Qt::StringLiterals;

namespace velmora {

bool reportFailures(MMain& main, const std::function<void()>& handler)
{
    try {
        handler();
        return true;
    } catch (const DatabaseError& error) {
        const QString words = "Database error: "_L1 + error.description();
        const QString reason = unreachableReason(main, error);
        if (reason.isEmpty())
            main.prompts.show(words, error.statement());
        else
            main.prompts.show(reason, words + u'\n' + error.statement());
    } catch (const FileError& error) {
        main.prompts.show(error.path() + ": "_L1 + error.description(), {});
    }
    return false;
}

} // namespace velmora
