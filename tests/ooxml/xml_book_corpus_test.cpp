// Every xlsx and xlsm of the public corpus loads, saves and loads again with
// every part it had: parts the book does not model byte for byte, the
// calculation chain alone left out.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>

#include "ooxml/book/part_generator.h"
#include "ooxml/book/xml_book_impl.h"
#include "ooxml/package/content_types.h"
#include "ooxml/package/zip_package.h"
#include "ooxml/xml_book_proxy.h"

using namespace tabrix;
namespace fs = std::filesystem;

namespace {

// Files that are not packages a book can read, each with the reason.
const std::map<std::string, std::string> kKnownBad = {
    {"pass_protected.xlsx", "an encrypted compound file, not a zip"},
    {"issue252.xlsx", "a damaged deflate stream"},
    {"rph.xlsx", "a run inside a phonetic run of the string table"},
    {"date_iso.xlsx", "a date cell, which only Strict worksheets have"},
    {"empty_s_attribute.xlsx", "an empty style index"},
    {"minimal_package.xlsx", "a colour of three bytes"},
};

using Entries = std::map<std::wstring, std::string, CaseInsensitiveLess>;

Entries entries(ZipReader &zip) {
    Entries out;
    for (size_t i = 0; i < zip.size(); ++i) {
        char *data = nullptr;
        size_t size = 0;
        zip.data(i, data, size);
        out[zip.name(i)] = std::string(data ? data : "", size);
        std::free(data);
    }
    return out;
}

// What went wrong with one file; empty when nothing did.
std::string roundTrip(const fs::path &file) {
    XMLBookProxy<char> book;
    if (!book.load(file.string().c_str())) return std::string("load: ") + book.errorMessage();
    auto *impl = dynamic_cast<XMLBookImplT<char> *>(book.impl());
    if (!impl) return "no book";
    std::set<std::wstring> opaque;
    for (const auto &p : impl->parts())
        if (dynamic_cast<BinaryFile *>(p.second)) opaque.insert(p.first);
    const char *bytes = nullptr;
    unsigned size = 0;
    if (!book.saveRaw(&bytes, &size)) return std::string("save: ") + book.errorMessage();
    ZipReader savedZip(bytes, size);
    Entries saved = entries(savedZip);

    ZipReader sourceZip(file.wstring());
    const Entries source = entries(sourceZip);
    const auto types = source.find(L"/[Content_Types].xml");
    const ContentTypes ct(types->second.data(), types->second.size());
    for (const auto &e : source) {
        const std::wstring type = ct.contentType(e.first);
        if (type.empty() || type.find(L"calcChain") != std::wstring::npos) continue;
        const std::string name(e.first.begin(), e.first.end());
        auto it = saved.find(e.first);
        if (it == saved.end()) {
            if (!e.second.empty()) return "lost " + name;
            continue;
        }
        if (opaque.count(e.first) && it->second != e.second) return "changed " + name;
    }
    XMLBookProxy<char> again;
    if (!book.isNormalMode()) again.switchToStrictMode();
    if (!again.loadRaw(bytes, size)) return std::string("reload: ") + again.errorMessage();
    if (again.sheetCount() != book.sheetCount()) return "sheet count";
    return "";
}

TEST(XMLBookCorpus, EveryPartSurvivesASave) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    int checked = 0;
    for (const auto &e : fs::recursive_directory_iterator(corpus)) {
        const std::string ext = e.path().extension().string();
        if (ext != ".xlsx" && ext != ".xlsm") continue;
        const std::string name = e.path().filename().string();
        const std::string problem = roundTrip(e.path());
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
