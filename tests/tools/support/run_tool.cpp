#include "support/run_tool.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <limits.h>
#include <spawn.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace clitest {

std::string toolPath() {
#ifdef TABRIX_CLI_PATH
    return TABRIX_CLI_PATH;
#else
    char self[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", self, sizeof self - 1);
    std::string dir = n > 0 ? std::string(self, size_t(n)) : std::string("./x");
    dir.resize(dir.find_last_of('/')); // build/tests/tools
    dir.resize(dir.find_last_of('/')); // build/tests
    dir.resize(dir.find_last_of('/')); // build
    return dir + "/tools/tabrix";
#endif
}

std::string scratch(const std::string &name) {
    std::string dir = std::string(TABRIX_TEST_TMP) + "/cli";
    mkdir(TABRIX_TEST_TMP, 0777);
    mkdir(dir.c_str(), 0777);
    return dir + "/" + name;
}

std::string readFile(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeFile(const std::string &path, const std::string &content) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << content;
}

RunResult runTool(const std::vector<std::string> &args) {
    RunResult r;
    std::string tool = toolPath();
    std::string outPath = scratch("stdout.txt"), errPath = scratch("stderr.txt");
    std::vector<char *> argv;
    argv.push_back(const_cast<char *>(tool.c_str()));
    for (const std::string &a : args) argv.push_back(const_cast<char *>(a.c_str()));
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0644);
    pid_t pid = 0;
    int rc = posix_spawn(&pid, tool.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0) {
        r.err = "cannot start " + tool;
        return r;
    }
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {}
    if (WIFEXITED(status)) r.exitCode = WEXITSTATUS(status);
    r.out = readFile(outPath);
    r.err = readFile(errPath);
    return r;
}

} // namespace clitest
