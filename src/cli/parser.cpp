#include "cli/parser.h"

#include <CLI/CLI.hpp>

namespace velmora {

namespace {

/// Tells why the command line can't be taken. What is not known is named first: a command that is mistyped
/// also looks as if there were none.
int explain(const CLI::App& parser, const CLI::ParseError& error)
{
    const std::vector<std::string> unknown = parser.remaining(true);
    const bool missing = dynamic_cast<const CLI::RequiredError*>(&error) != nullptr;
    return missing && !unknown.empty() ? parser.exit(CLI::ExtrasError(unknown)) : parser.exit(error);
}

} // namespace

Option& Option::required()
{
    m_option->required();
    return *this;
}

Option& Option::excludes(const char* other)
{
    m_option->excludes(other);
    return *this;
}

Option& Option::between(int least, int most)
{
    m_option->check(CLI::Range(least, most));
    return *this;
}

Option& Option::oneOf(const QStringList& values)
{
    std::vector<std::string> allowed;
    for (const QString& value : values)
        allowed.push_back(value.toStdString());
    m_option->check(CLI::IsMember(allowed));
    return *this;
}

Option& Option::check(const char* kind, const std::function<QString(const QString& value)>& complaint)
{
    const auto complain = [complaint](const std::string& value) {
        return complaint(QString::fromStdString(value)).toStdString();
    };
    m_option->check(CLI::Validator(complain, kind));
    return *this;
}

bool Option::isGiven() const
{
    return m_option->count() > 0;
}

Parser Parser::addCommand(const char* name, const char* description)
{
    return Parser(m_application->add_subcommand(name, description));
}

void Parser::requireCommand()
{
    m_application->require_subcommand(1);
}

Option Parser::addOption(const char* name, QString& value, const char* description)
{
    const auto take = [&value](const std::string& text) { value = QString::fromStdString(text); };
    return Option(m_application->add_option_function<std::string>(name, take, description));
}

Option Parser::addOption(const char* name, QStringList& values, const char* description)
{
    const auto take = [&values](const std::vector<std::string>& texts) {
        values.clear();
        for (const std::string& text : texts)
            values << QString::fromStdString(text);
    };
    CLI::Option* option =
        m_application->add_option_function<std::vector<std::string>>(name, take, description);
    return Option(option->delimiter(','));
}

Option Parser::addOption(const char* name, int& value, const char* description)
{
    return Option(m_application->add_option(name, value, description)->capture_default_str());
}

Option Parser::addOption(const char* name, quint16& value, const char* description)
{
    return Option(m_application->add_option(name, value, description)->capture_default_str());
}

void Parser::addFlag(const char* name, bool& value, const char* description)
{
    m_application->add_flag(name, value, description);
}

bool Parser::isChosen() const
{
    return m_application->parsed();
}

CommandLine::CommandLine(const char* name, const char* description, const QString& version)
    : m_application(std::make_unique<CLI::App>(description, name))
{
    m_application->set_version_flag("--version", version.toStdString());
    m_application->require_subcommand(1);
    m_application->fallthrough();
}

CommandLine::~CommandLine() = default;

Usage CommandLine::parse(const QStringList& arguments)
{
    // As UTF-8 on every system, the last one first: so they are taken.
    std::vector<std::string> lastFirst;
    for (const QString& argument : arguments)
        lastFirst.insert(lastFirst.begin(), argument.toStdString());
    try {
        m_application->parse(lastFirst);
    } catch (const CLI::ParseError& error) {
        return explain(*m_application, error) == 0 ? Usage::HelpWanted : Usage::Wrong;
    }
    return Usage::Right;
}

} // namespace velmora
