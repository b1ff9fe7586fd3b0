// Running the built `tabrix` program as a child process and collecting what
// it says.
#ifndef TABRIX_TEST_RUN_TOOL_H
#define TABRIX_TEST_RUN_TOOL_H

#include <string>
#include <vector>

namespace clitest {

struct RunResult {
    int exitCode = -1; // -1 when the program did not exit normally
    std::string out;
    std::string err;
};

// The path of the tool: TABRIX_CLI_PATH when the build gives it, else
// tools/tabrix beside the tests' own folder of the build tree.
std::string toolPath();

// Runs the tool with `args`, stdin empty.
RunResult runTool(const std::vector<std::string> &args);

// A scratch folder of this test program, made on first use.
std::string scratch(const std::string &name);

std::string readFile(const std::string &path);
void writeFile(const std::string &path, const std::string &content);

} // namespace clitest

#endif
