// Command-line arguments of one command: its positional arguments and its
// options, checked against the command's table of options.
#ifndef TABRIX_CLI_ARGS_H
#define TABRIX_CLI_ARGS_H

#include <map>
#include <string>
#include <vector>

namespace cli {

struct OptionSpec {
    const char *longName;  // "sheet" for --sheet
    char shortName;        // 's' for -s, or 0
    const char *valueName; // "NAME" when the option takes a value, else null
    const char *help;
};

class Args {
public:
    // Parses argv[0..argc) of a command (the command's name excluded).
    // "--name VALUE", "--name=VALUE", "-n VALUE", "-nVALUE" and flags; "--"
    // ends the options.  Throws UsageError for an unknown option, a missing
    // value, a repeated option, or a count of positionals outside
    // [minPositional, maxPositional].
    static Args parse(int argc, char **argv, const std::vector<OptionSpec> &options,
                      int minPositional, int maxPositional);

    const std::vector<std::string> &positional() const { return _positional; }
    bool has(const std::string &longName) const { return _values.count(longName) != 0; }
    // The value of an option, or `fallback` when it was not given.
    std::string value(const std::string &longName, const std::string &fallback = "") const;
    bool helpWanted() const { return _help; }

private:
    std::vector<std::string> _positional;
    std::map<std::string, std::string> _values;
    bool _help = false;
};

} // namespace cli

#endif
