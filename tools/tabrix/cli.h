// What the parts of the tool share: the two kinds of failure with their exit
// codes, and the entry of each command.
#ifndef TABRIX_CLI_CLI_H
#define TABRIX_CLI_CLI_H

#include <stdexcept>
#include <string>

namespace cli {

// Exit codes of the tool.
enum ExitCode { EXIT_OK = 0, EXIT_FAILED = 1, EXIT_USAGE = 2 };

// Something wrong with the command line on its own: an unknown option, a
// missing argument, a malformed range.  Exit code 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// An operation that failed on a file: missing, unreadable, corrupt, a sheet
// that isn't there, the library's own failure message.  Exit code 1.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Args;

int runInfo(const Args &args);
int runDump(const Args &args);
int runConvert(const Args &args);

} // namespace cli

#endif
