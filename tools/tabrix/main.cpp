// tabrix: inspect, dump and convert spreadsheet workbooks from a shell.
//
// Exit codes: 0 success; 1 a failed operation (a missing or unreadable
// file, a file that is no workbook or that the library cannot load, a sheet
// that is not there, a range beyond the format's last cell), with the
// library's message on stderr; 2 bad usage (an unknown command or option, a
// missing argument, a malformed range or format name).
#include "args.h"
#include "cli.h"
#include "workbook.h"

#include <cctype>
#include <cstring>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace cli {

namespace {

struct Command {
    const char *name;
    const char *synopsis;
    const char *summary;
    int minPositional, maxPositional;
    std::vector<OptionSpec> options;
    const char *details;
    int (*run)(const Args &);
};

const std::vector<Command> &commands() {
    static const std::vector<Command> table = {
        {"info",
         "FILE",
         "show a workbook's format, sheets, named ranges and pictures",
         1,
         1,
         {},
         "Shows the file's format and version, the library's version, the date system\n"
         "(1900 or 1904), each sheet with its number, name, type (sheet, chart),\n"
         "state (visible, hidden, very hidden) and used range, the named ranges,\n"
         "and the number of pictures.\n",
         runInfo},
        {"dump",
         "FILE [--sheet NAME|N] [--range A1:D10] [--format csv|tsv|json] [--formulas]",
         "write the cells of one sheet to stdout",
         1,
         1,
         {{"sheet", 's', "NAME|N",
           "the sheet, by name or by number from 1 (default: the first worksheet)"},
          {"formulas", 'F', nullptr,
           "csv and tsv: a formula cell shows its formula (=SUM(A1:A3))\n"
           "                         rather than its cached value"},
          {"range", 'r', "RANGE",
           "the cells: A1:D10, B2, whole columns A:C or rows 2:5\n"
           "                         (default: A1 to the last used cell)"},
          {"format", 'f', "FORM", "csv (default), tsv or json"}},
         "csv quotes fields that hold a comma, a quote or a line break; tsv writes\n"
         "tab, line break and backslash as \\t \\n \\r \\\\.  Numbers come in their\n"
         "shortest exact form, dates and times as ISO 8601, errors as #DIV/0! etc.\n"
         "json gives an object with \"file\", \"sheet\", \"range\" and \"cells\": one entry\n"
         "for each cell that exists, with \"ref\", \"row\" and \"col\" (from 0), \"kind\"\n"
         "(number, string, boolean, blank, error), \"value\", \"format\" (the index of\n"
         "the cell's format in the book), \"numFormat\" (the number format's\n"
         "identifier, with \"numFormatText\" for the book's own formats), \"date\"\n"
         "for a date and \"formula\" for a formula cell (null when the library\n"
         "cannot print it).\n"
         "A malformed range is bad usage (exit 2); a well-formed one beyond the\n"
         "last cell of the file's format (IV65536 for .xls) fails (exit 1).\n",
         runDump},
        {"convert",
         "IN OUT [--sheet NAME|N] [--text] [--cells]",
         "convert between .xls, .xlsx, .csv and .tsv",
         2,
         2,
         {{"sheet", 's', "NAME|N",
           "workbook to text: the sheet to write (default: the first);\n"
           "                         workbook to workbook: keep only this sheet;\n"
           "                         text to workbook: the new sheet's name"},
          {"text", 't', nullptr, "text to workbook: keep every field as text"},
          {"cells", 'c', nullptr,
           "workbook to workbook: copy only the cells into a new book,\n"
           "                         even within one format"}},
         "The output's format is told by its extension, the input's by its content.\n"
         "A workbook converted to its own format is loaded and saved whole; across\n"
         "formats (or with --cells) the worksheets' cells are copied with their\n"
         "number formats and formulas, and nothing else.\n"
         "Text becomes one sheet from A1: numbers, TRUE/FALSE and ISO dates take\n"
         "those kinds (numbers with a leading zero stay text), the rest is text.\n",
         runConvert},
    };
    return table;
}

const Command *findCommand(const std::string &name) {
    for (const Command &c : commands())
        if (name == c.name) return &c;
    return nullptr;
}

void printUsage(std::ostream &out) {
    out << "usage: tabrix COMMAND [ARGS...]\n"
           "       tabrix COMMAND --help\n\n"
           "Inspect, dump and convert spreadsheet workbooks (.xls, .xlsx).\n\n"
           "commands:\n";
    for (const Command &c : commands())
        out << "  " << c.name << std::string(10 - std::strlen(c.name), ' ') << c.summary << "\n";
    out << "\noptions:\n"
           "  -h, --help    show this help\n"
           "  --version     show the library's version\n\n"
           "Exit status: 0 on success, 1 when an operation fails (the reason goes\n"
           "to stderr), 2 on bad usage.  A file's kind is told by its content (the\n"
           "compound file or zip signature), not by its extension alone.\n";
}

void printCommandHelp(const Command &c, std::ostream &out) {
    std::string summary = c.summary;
    summary[0] = char(std::toupper(static_cast<unsigned char>(summary[0])));
    out << "usage: tabrix " << c.name << " " << c.synopsis << "\n\n" << summary << ".\n\n";
    if (!c.options.empty()) {
        out << "options:\n";
        for (const OptionSpec &o : c.options) {
            std::string left =
                std::string(o.shortName ? std::string("-") + o.shortName + ", " : "    ") + "--" +
                o.longName + (o.valueName ? std::string(" ") + o.valueName : "");
            out << "  " << left << std::string(left.size() < 23 ? 23 - left.size() : 1, ' ')
                << o.help << "\n";
        }
        out << "\n";
    }
    out << c.details
        << "\nExit status: 0 on success, 1 when the operation fails, 2 on bad usage.\n";
}

int usageError(const std::string &message, const Command *command) {
    std::cerr << "tabrix" << (command ? std::string(" ") + command->name : "") << ": " << message
              << "\n";
    if (command)
        std::cerr << "usage: tabrix " << command->name << " " << command->synopsis << "\n"
                  << "Try 'tabrix " << command->name << " --help' for more.\n";
    else
        std::cerr << "Try 'tabrix --help' for more.\n";
    return EXIT_USAGE;
}

int showVersion() {
    Workbook wb(FileKind::Compound);
    std::cout << "tabrix " << versionText(wb.book()->version()) << "\n";
    return EXIT_OK;
}

} // namespace

int main(int argc, char **argv) {
    if (argc < 2) {
        printUsage(std::cerr);
        return EXIT_USAGE;
    }
    std::string first = argv[1];
    if (first == "--help" || first == "-h" || (first == "help" && argc == 2)) {
        printUsage(std::cout);
        return EXIT_OK;
    }
    if (first == "--version") {
        try {
            return showVersion();
        } catch (const std::exception &e) {
            std::cerr << "tabrix: " << e.what() << "\n";
            return EXIT_FAILED;
        }
    }
    if (first == "help") {
        const Command *c = findCommand(argv[2]);
        if (!c) return usageError("unknown command '" + std::string(argv[2]) + "'", nullptr);
        printCommandHelp(*c, std::cout);
        return EXIT_OK;
    }
    const Command *command = findCommand(first);
    if (!command) return usageError("unknown command '" + first + "'", nullptr);
    try {
        Args args = Args::parse(argc - 2, argv + 2, command->options, command->minPositional,
                                command->maxPositional);
        if (args.helpWanted()) {
            printCommandHelp(*command, std::cout);
            return EXIT_OK;
        }
        return command->run(args);
    } catch (const UsageError &e) {
        return usageError(e.what(), command);
    } catch (const std::exception &e) {
        std::cerr << "tabrix " << command->name << ": " << e.what() << "\n";
        return EXIT_FAILED;
    } catch (...) {
        std::cerr << "tabrix " << command->name << ": general failure\n";
        return EXIT_FAILED;
    }
}

} // namespace cli

int main(int argc, char **argv) { return cli::main(argc, argv); }
