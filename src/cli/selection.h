// The options that select a company, a model and a range of phones.
#pragma once

#include <QString>

#include <string>

namespace CLI {
class App;
}

namespace velmora {

class MMain;

/// What stands on the command line.
struct PhoneSelection {
    std::string company;
    std::string equipment;
    std::string from;
    std::string to;
};

struct PhoneRange {
    QString company;
    QString equipment;
    QString from;
    QString to;
};

void addSelection(CLI::App& parser, PhoneSelection& selection);

/// The selection, completed by the first and the last phone that the company has of the model. Without any,
/// the codes that are not named stay empty.
PhoneRange rangeOf(MMain& main, const PhoneSelection& selection);

} // namespace velmora
