#include "windows/failure_report.h"

#include "common/MMain.h"
#include "files/file_error.h"

using namespace Qt::StringLiterals;

namespace velmora {

bool reportFailures(MMain& main, const std::function<void()>& handler)
{
    try {
        handler();
        return true;
    } catch (const DatabaseError& error) {
        main.prompts.show("Database error: "_L1 + error.description(), error.statement());
    } catch (const FileError& error) {
        main.prompts.show(error.path() + ": "_L1 + error.description(), {});
    }
    return false;
}

} // namespace velmora
