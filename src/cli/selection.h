// The options that select a company, a model and phones.
#pragma once

#include "generation/model_requests.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace velmora {

class MMain;

/// What stands on the command line.
struct PhoneSelection {
    std::string company;
    /// May stay empty where all models can be meant.
    std::string equipment;
    std::string from;
    std::string to;
    /// Codes with commas between them, or "@" and the name of a file that holds codes.
    std::string phones;
};

/// Which models a command works on.
enum class Models { One, OneOrAll };

/// Adds --company, --equipment, --from and --to.
void addSelection(CLI::App& parser, PhoneSelection& selection, Models models = Models::One);
/// Adds --phones, which takes the place of --from and --to.
void addPhones(CLI::App& parser, PhoneSelection& selection);

/// The codes that `phones` names, each once, in their order; in a file they stand on lines or between commas.
/// Throws FileError when the file can't be read.
QStringList phoneCodes(const QString& phones);

/// The selection as it stands on the command line. Throws FileError.
PhoneChoice choiceOf(const PhoneSelection& selection);

/// The selection, completed by the first and the last phone that the company has of the model, or of all
/// models. Without any, the codes that are not named stay empty. Throws FileError.
PhoneChoice rangeOf(MMain& main, const PhoneSelection& selection);

} // namespace velmora
