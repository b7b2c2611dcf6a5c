// The command line: commands, and their options bound to variables.
#pragma once

#include <QStringList>

#include <functional>
#include <memory>

// Known to parser.cpp alone: it takes long to compile, in every file that includes it.
namespace CLI {
class App;
class Option;
} // namespace CLI

namespace velmora {

/// An option of a command.
class Option {
public:
    explicit Option(CLI::Option* option) : m_option(option) {}

    Option& required();
    /// The other option, which the command has already, can't be given together with this one.
    Option& excludes(const char* other);
    /// A number from `least` to `most`.
    Option& between(int least, int most);
    Option& oneOf(const QStringList& values);
    /// `complaint` tells what is wrong with a value, or nothing; `kind` is how the help names such values.
    Option& check(const char* kind, const std::function<QString(const QString& value)>& complaint);
    bool isGiven() const;

private:
    CLI::Option* m_option;
};

/// A command, or the program itself. The variables get their values when the command line is parsed.
class Parser {
public:
    explicit Parser(CLI::App* application) : m_application(application) {}

    Parser addCommand(const char* name, const char* description);
    /// One of its commands has to be given.
    void requireCommand();
    Option addOption(const char* name, QString& value, const char* description);
    /// Values with commas between them.
    Option addOption(const char* name, QStringList& values, const char* description);
    /// The help shows the value that the variable has, as the default.
    Option addOption(const char* name, int& value, const char* description);
    Option addOption(const char* name, quint16& value, const char* description);
    void addFlag(const char* name, bool& value, const char* description);
    /// Whether the command line has this command.
    bool isChosen() const;

private:
    CLI::App* m_application;
};

/// What the arguments of a program are.
enum class Usage { Right, HelpWanted, Wrong };

/// The command line of a program whose options may also stand behind its commands.
class CommandLine {
public:
    CommandLine(const char* name, const char* description, const QString& version);
    ~CommandLine();

    Parser parser() const { return Parser(m_application.get()); }
    /// Prints the help or the version that is wanted, or what is wrong with the arguments.
    Usage parse(const QStringList& arguments);

private:
    std::unique_ptr<CLI::App> m_application;
};

} // namespace velmora
