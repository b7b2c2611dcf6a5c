#include "cli/command.h"
#include "cli/terminal_prompts.h"
#include "common/MMain.h"
#include "editor/table_access.h"
#include "editor/table_catalogue.h"
#include "editor/transfer/table_export.h"
#include "editor/transfer/table_import.h"
#include "editor/transfer/verdict_texts.h"
#include "files/whole_file.h"
#include "mainwindow/menu.h"

#include <QTextStream>

#include <cctype>
#include <cstdio>
#include <memory>

using namespace Qt::StringLiterals;

namespace velmora {

namespace {

struct Options {
    QString table;
    QString file;
    QString separator;
    bool dryRun = false;
    bool skipRefused = false;
    bool addRanges = false;
};

QStringList tablesOf(const QList<TableTab>& tabs)
{
    QStringList tables;
    for (const TableTab& tab : tabs)
        tables << tab.table;
    return tables;
}

ExitStatus list(MMain& main)
{
    QTextStream out(stdout);
    for (const TableTab& tab : tableTabs(main))
        out << tab.table << '\t' << tab.caption << '\n';
    return Done;
}

/// What the password, if the table has one, opens; nothing after a message.
std::optional<Access> accessOf(MMain& main, const QString& table)
{
    const TablePasswords passwords = passwordsOf(main, table);
    std::optional<QString> entry = QString();
    if (passwords.first)
        entry = main.prompts.askPassword(main.textOr(u"PASSWORD_REQUIRED"_s, u"Password Required"_s),
                                         main.textOr(u"PASSWORD"_s, u"Password"_s));
    if (!entry) {
        main.showMessage(u"M318"_s, QLatin1StringView(passwordVariable));
        return std::nullopt;
    }
    const Access access = accessFor(passwords, *entry);
    if (access == Access::False) {
        main.showMessage(u"M100"_s);
        return std::nullopt;
    }
    return access;
}

/// The table, as far as the user may open it; nothing after a message.
std::optional<OpenTable> openTable(MMain& main, const QString& name)
{
    const QString table = name.toUpper();
    const QStringList tables = tablesOf(tableTabs(main));
    if (!tables.contains(table)) {
        main.prompts.show(VerdictTexts(main, {}).text({u"M317"_s, {name, tables.join(", "_L1)}}), {});
        return std::nullopt;
    }
    const std::optional<Access> access = accessOf(main, table);
    return access ? std::optional(OpenTable{describeTable(main, table), *access}) : std::nullopt;
}

std::optional<char> separatorOf(const Options& options)
{
    if (options.separator.isEmpty())
        return std::nullopt;
    return options.separator == "tab"_L1 ? '\t' : options.separator.front().toLatin1();
}

ExitStatus exportTo(MMain& main, const OpenTable& table, const Options& options)
{
    const auto exported =
        exportTable(main, table, separatorOf(options).value_or(','), [](qsizetype) { return true; });
    if (options.file.isEmpty())
        std::fwrite(exported->bytes.constData(), 1, static_cast<size_t>(exported->bytes.size()), stdout);
    else
        writeWholeFile(options.file, exported->bytes);
    QTextStream(stderr) << (exported->rows == 1
                                ? main.messageLine(u"M316"_s)
                                : main.messageLine(u"M209"_s, QString::number(exported->rows)))
                        << '\n';
    return Done;
}

const char* wordFor(Verdict verdict)
{
    switch (verdict) {
    case Verdict::New:
        return "new";
    case Verdict::Changed:
        return "changed";
    case Verdict::Same:
        return "same";
    case Verdict::Refused:
        return "refused";
    }
    return "";
}

void print(VerdictTexts& texts, const TableDescription& table, const CheckedLines& lines)
{
    QTextStream out(stdout);
    for (const CheckedLine& line : lines)
        out << line.number << '\t' << wordFor(line.verdict) << '\t' << onOneLine(keyText(table, line)) << '\t'
            << onOneLine(texts.details(line)) << '\n';
}

/// What an import without writing, or with it, makes of the file.
TableImport carryOut(MMain& main, const OpenTable& table, const TableFile& file, const Options& options)
{
    const TransferProgress goOn = [](qsizetype, qsizetype) { return true; };
    if (options.dryRun)
        return {*checkLines(main, table, file, options.addRanges, goOn), false};
    return *importLines(main, table, file, {options.skipRefused, options.addRanges}, goOn);
}

ExitStatus importFrom(MMain& main, const OpenTable& table, const Options& options)
{
    if (options.addRanges && !mayAddRanges(main)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    QStringList columns;
    for (const TableColumn& column : table.description.columns)
        columns << column.name;
    VerdictTexts texts(main, columns);
    QTextStream err(stderr);
    const QString& path = options.file;
    try {
        const TableFile file = readTableFile(readTableBytes(path), table.description, separatorOf(options));
        if (!file.further.isEmpty())
            err << texts.furtherColumns(file) << '\n';
        const TableImport import = carryOut(main, table, file, options);
        print(texts, table.description, import.lines);
        err << texts.counts(import.lines) << '\n';
        if (!import.written)
            err << main.messageLine(u"M337"_s) << '\n';
        return options.skipRefused || count(import.lines, Verdict::Refused) == 0 ? Done : EndedWithMessage;
    } catch (const TableFileError& error) {
        main.prompts.show(path + ": "_L1 + texts.text(error.why()), {});
        return EndedWithMessage;
    }
}

ExitStatus run(MMain& main, const Options& options,
               const std::function<ExitStatus(MMain&, const OpenTable&, const Options&)>& transfer)
{
    if (!canReachMenuItem(main, u"Config"_s)) {
        main.showMessage(u"M208"_s, main.userName);
        return EndedWithMessage;
    }
    if (!transfer)
        return list(main);
    const std::optional<OpenTable> table = openTable(main, options.table);
    return table ? transfer(main, *table, options) : EndedWithMessage;
}

/// One character that no value is written with.
QString separatorOnly(const QString& text)
{
    const ushort character = text.size() == 1 ? text.front().unicode() : 0;
    const bool one = character < 0x80 && character != '"' && std::ispunct(character) != 0;
    return one || text == "tab"_L1 ? QString() : "one character or \"tab\" is needed, not "_L1 + text;
}

} // namespace

Command tableCommand(Parser application)
{
    Parser parser = application.addCommand("table", "Write a table as separated values, or take them in");
    parser.requireCommand();
    const auto options = std::make_shared<Options>();
    parser.addCommand("list", "The tables that you may open, a tab between name and caption");
    const auto add = [&](const char* name, const char* description, const char* aboutSeparator) {
        Parser kind = parser.addCommand(name, description);
        kind.addOption("table", options->table, "Name of the table").required();
        kind.addOption("--separator", options->separator, aboutSeparator).check("S", separatorOnly);
        return kind;
    };
    Parser exporting = add("export", "Write the columns' names and every row",
                           "What stands between fields: a character or \"tab\" (default: ,)");
    exporting.addOption("--file", options->file, "The file to write (default: standard output)");
    Parser importing = add("import", "Take in rows: add new ones and change those that differ",
                           "What stands between fields: a character or \"tab\" (default: recognised)");
    importing.addOption("--file", options->file, "The file to read").required();
    importing.addFlag("--dry-run", options->dryRun, "Write nothing");
    importing.addFlag("--skip-refused", options->skipRefused,
                      "Leave out refused lines; otherwise one of them keeps all from being written");
    importing.addFlag("--add-ranges", options->addRanges,
                      "Add phones' codes that are missing in their companies' ranges");
    return {parser, [=](MMain& main) {
                if (exporting.isChosen())
                    return run(main, *options, exportTo);
                if (importing.isChosen())
                    return run(main, *options, importFrom);
                return run(main, *options, nullptr);
            }};
}

} // namespace velmora
