// Every xlsx and xlsm of the public corpus loads, saves and loads again with
// every part it had: parts the book does not model byte for byte, the
// calculation chain alone left out.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>

#include "support/packages.h"

namespace fs = std::filesystem;

namespace {

// Files that are not packages a book can read, each with the reason.
const std::map<std::string, std::string> kKnownBad = {
    {"pass_protected.xlsx", "an encrypted compound file, not a zip"},
    {"issue252.xlsx", "a damaged deflate stream"},
};

TEST(XMLBookCorpus, EveryPartSurvivesASave) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    int checked = 0;
    for (const auto &e : fs::recursive_directory_iterator(corpus)) {
        const std::string ext = e.path().extension().string();
        if (ext != ".xlsx" && ext != ".xlsm") continue;
        const std::string name = e.path().filename().string();
        const std::string problem = packages::packageRoundTrip(e.path());
        const auto bad = kKnownBad.find(name);
        if (bad != kKnownBad.end()) {
            EXPECT_EQ(problem.substr(0, 5), "load:") << name << " now loads: " << bad->second;
            continue;
        }
        EXPECT_EQ(problem, "") << e.path();
        ++checked;
    }
    EXPECT_GT(checked, 0);
}

} // namespace
