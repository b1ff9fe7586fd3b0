#include "args.h"

#include "cli.h"

#include <cstring>

namespace cli {

namespace {

const OptionSpec *findLong(const std::vector<OptionSpec> &options, const std::string &name) {
    for (const OptionSpec &o : options)
        if (name == o.longName) return &o;
    return nullptr;
}

const OptionSpec *findShort(const std::vector<OptionSpec> &options, char name) {
    for (const OptionSpec &o : options)
        if (o.shortName != 0 && o.shortName == name) return &o;
    return nullptr;
}

} // namespace

Args Args::parse(int argc, char **argv, const std::vector<OptionSpec> &options, int minPositional,
                 int maxPositional) {
    Args args;
    bool optionsEnded = false;
    for (int i = 0; i < argc; ++i) {
        std::string arg = argv[i];
        if (optionsEnded || arg == "-" || arg.size() < 2 || arg[0] != '-') {
            args._positional.push_back(arg);
            continue;
        }
        if (arg == "--") {
            optionsEnded = true;
            continue;
        }
        if (arg == "--help" || arg == "-h") {
            args._help = true;
            continue;
        }
        const OptionSpec *spec = nullptr;
        std::string value;
        bool hasInlineValue = false;
        if (arg.compare(0, 2, "--") == 0) {
            std::string name = arg.substr(2);
            size_t eq = name.find('=');
            if (eq != std::string::npos) {
                value = name.substr(eq + 1);
                name.resize(eq);
                hasInlineValue = true;
            }
            spec = findLong(options, name);
            if (!spec) throw UsageError("unknown option '--" + name + "'");
        } else {
            spec = findShort(options, arg[1]);
            if (!spec) throw UsageError(std::string("unknown option '-") + arg[1] + "'");
            if (arg.size() > 2) {
                value = arg.substr(2);
                hasInlineValue = true;
            }
        }
        std::string shown = std::string("--") + spec->longName;
        if (spec->valueName) {
            if (!hasInlineValue) {
                if (i + 1 >= argc)
                    throw UsageError("option '" + shown + "' needs a value " + spec->valueName);
                value = argv[++i];
            }
        } else if (hasInlineValue) {
            throw UsageError("option '" + shown + "' takes no value");
        }
        if (args._values.count(spec->longName))
            throw UsageError("option '" + shown + "' is given twice");
        args._values[spec->longName] = value;
    }
    if (args._help) return args;
    int count = int(args._positional.size());
    if (count < minPositional)
        throw UsageError(count == 0 ? "missing file argument" : "missing argument");
    if (count > maxPositional)
        throw UsageError("unexpected argument '" + args._positional[maxPositional] + "'");
    return args;
}

std::string Args::value(const std::string &longName, const std::string &fallback) const {
    auto it = _values.find(longName);
    return it == _values.end() ? fallback : it->second;
}

} // namespace cli
