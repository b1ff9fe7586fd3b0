#include "biff/support/interop_tools.h"

#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>

namespace bifftest {

namespace {
const char *kPython = "/usr/bin/python3";
}

std::string tmpPath(const std::string &name) { return std::string(TABRIX_TEST_TMP) + "/" + name; }

std::vector<std::string> runPython(const std::string &scriptName, const char *script,
                                   const std::string &args) {
    static std::set<std::string> saved;
    std::string path = tmpPath(scriptName);
    if (saved.insert(scriptName).second) std::ofstream(path) << script;
    std::string cmd = std::string(kPython) + " " + path + " " + args + " 2>/dev/null";
    FILE *p = popen(cmd.c_str(), "r");
    if (!p) return {"ERROR popen"};
    std::vector<std::string> lines;
    std::string cur;
    int ch;
    while ((ch = std::fgetc(p)) != EOF) {
        if (ch == '\n') {
            lines.push_back(cur);
            cur.clear();
        } else {
            cur += char(ch);
        }
    }
    if (!cur.empty()) lines.push_back(cur);
    pclose(p);
    return lines;
}

std::vector<std::string> corpusXlsFiles() {
    std::vector<std::string> files;
    for (const char *sub : {"libxls", "xlrd", "calamine"}) {
        std::string dir = std::string(TABRIX_CORPUS_DIR) + "/public/" + sub;
        DIR *d = opendir(dir.c_str());
        if (!d) continue;
        while (dirent *e = readdir(d)) {
            std::string n = e->d_name;
            if (n.size() > 4 && n.compare(n.size() - 4, 4, ".xls") == 0)
                files.push_back(dir + "/" + n);
        }
        closedir(d);
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace bifftest
