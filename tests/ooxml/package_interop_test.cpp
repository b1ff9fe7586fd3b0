// Real packages open with every part reachable through relationships.
// (That LibreOffice opens packages we write is for the book's interop test.)
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>

#include "book/str_util.h"
#include "book/tberror.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/file_util.h"
#include "ooxml/package/package_names.h"
#include "ooxml/package/relationships.h"
#include "ooxml/package/zip_package.h"
#include "support/packages.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

using packages::Parts;

// Walks the relationships from the package root; answers the problems found.
std::string walk(const Parts &parts) {
    std::string problems;
    auto ct = parts.find(pkg::kContentTypesPart);
    if (ct == parts.end()) return "no content types";
    ContentTypes types(ct->second.data(), ct->second.size());
    std::set<std::wstring, CaseInsensitiveLess> reached{pkg::kContentTypesPart}, todo{L"/"};
    while (!todo.empty()) {
        std::wstring source = *todo.begin();
        todo.erase(todo.begin());
        auto rels = parts.find(FileUtil::relsPartOf(source));
        if (rels == parts.end()) continue;
        reached.insert(rels->first);
        Relationships r(rels->second.data(), rels->second.size());
        for (const Relationships::Entry &e : r.entries()) {
            // External targets and locations inside the document aren't parts.
            if (e.targetMode == L"External" || e.target.empty() || e.target[0] == L'#') continue;
            std::wstring part = FileUtil::resolveTarget(source, e.target);
            if (!parts.count(part))
                problems += " missing " + packageNarrow(part);
            else if (reached.insert(part).second)
                todo.insert(part);
        }
    }
    for (const auto &p : parts)
        if (!reached.count(p.first) && p.first.back() != L'/')
            problems += " unreached " + packageNarrow(p.first);
    return problems;
}

} // namespace

TEST(PackageInterop, CorpusPackagesOpen) {
    // Files that are damaged or carry orphan parts on purpose.
    const std::map<std::string, std::string> expected = {
        {"issue252.xlsx",
         "Zlib library error (buffer error)."}, // a member inflates beyond its size
        {"pass_protected.xlsx",
         "The central directory was not found in the archive (or you were trying to open "
         "not the last volume of a segmented archive)."}, // an encrypted compound file
        {"empty_s_attribute.xlsx", " unreached /xl/.DS_Store"},
        {"non_monotonic_si.xlsx", " unreached /xl/worksheets/sheet1_formatted.xml"},
    };
    size_t opened = 0;
    for (const auto &f :
         fs::recursive_directory_iterator(std::string(TABRIX_CORPUS_DIR) + "/public")) {
        if (f.path().extension() != ".xlsx") continue;
        std::string problem;
        try {
            ZipReader zip(packageWide(f.path().string()));
            problem = walk(packages::unzip(zip));
        } catch (const tberror &e) {
            problem = e.what();
        }
        auto known = expected.find(f.path().filename().string());
        if (known != expected.end())
            EXPECT_EQ(problem, known->second) << f.path();
        else if (f.path().filename() ==
                 "issue_530.xlsx") // a trimmed file: charts and comments left behind
            EXPECT_EQ(problem.find(" missing"), std::string::npos) << f.path();
        else
            EXPECT_EQ(problem, "") << f.path();
        ++opened;
    }
    EXPECT_GT(opened, 0u);
}
