// Every XML part of the public corpus's workbooks, and of workbooks that
// LibreOffice, gnumeric, openpyxl and xlsxwriter (when installed) write here,
// binds through the schema tables and prints back canonically equal: names
// as {URI}local, attributes sorted, white space between elements (and as
// the whole text of an element, unless xml:space keeps it) and the place of
// namespace declarations left out.  A part that dropped something
// under the tolerance rules (unqualified unknown attributes, unknown
// elements of a workbook or worksheet) is compared with those removed.
// Strict parts, made by rewriting the namespaces of Transitional ones, load
// as Strict and fail at the root as Transitional.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ooxml/binding/engine/document.h"
#include "support/xml_parts.h"

using namespace binding;
using namespace xmlparts;
namespace fs = std::filesystem;

namespace {

std::string root_of(const std::string &doc) {
    lmx::c_xml_reader r(doc.data(), doc.size());
    while (r.next() == lmx::EV_TEXT) {}
    return std::string(r.local());
}

// Producers' parts outside the published schema that load under the
// tolerance rules and must print back unchanged: a phonetic run of rich runs,
// an ISO date cell, an empty style index, a colour of three bytes.
const struct {
    const char *book, *root;
} k_tolerated[] = {
    {"calamine/rph.xlsx", "sst"},
    {"calamine/date_iso.xlsx", "worksheet"},
    {"calamine/empty_s_attribute.xlsx", "worksheet"},
    {"calamine/minimal_package.xlsx", "styleSheet"},
};

bool is_tolerated(const std::string &origin, const std::string &root) {
    for (const auto &t : k_tolerated)
        if (origin.find(t.book) != std::string::npos && root == t.root) return true;
    return false;
}

const std::pair<const char *, const char *> k_strict_uris[] = {
    {"http://schemas.openxmlformats.org/spreadsheetml/2006/main",
     "http://purl.oclc.org/ooxml/spreadsheetml/main"},
    {"http://schemas.openxmlformats.org/officeDocument/2006/relationships",
     "http://purl.oclc.org/ooxml/officeDocument/relationships"},
    {"http://schemas.openxmlformats.org/drawingml/2006/main",
     "http://purl.oclc.org/ooxml/drawingml/main"},
    {"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing",
     "http://purl.oclc.org/ooxml/drawingml/spreadsheetDrawing"},
};

std::string to_strict(std::string doc) {
    for (const auto &u : k_strict_uris)
        for (size_t at; (at = doc.find(u.first)) != std::string::npos;)
            doc.replace(at, std::strlen(u.first), u.second);
    return doc;
}

} // namespace

TEST(BindingInterop, CorpusPartsBindAndPrintBackCanonicallyEqual) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    const fs::path tmp = fs::path(TABRIX_TEST_TMP) / "binding_interop";
    fs::remove_all(tmp);
    fs::create_directories(tmp);
    makeProducerBooks(tmp / "generated");
    ASSERT_TRUE(
        unpack(tmp / "parts", {(tmp / "generated").string(), corpus.string()}, {".xml", ".rels"}));

    size_t bound = 0, strict = 0, unbound = 0, with_drops = 0, strict_made = 0, strict_loaded = 0,
           tolerated = 0;
    std::map<std::string, size_t> unbound_roots;
    std::vector<std::string> failures;
    for (const auto &dir : fs::directory_iterator(tmp / "parts")) {
        const std::string origin = slurp(dir.path() / "origin.txt");
        for (const auto &f : fs::recursive_directory_iterator(dir.path())) {
            if (!f.is_regular_file() || f.path().filename() == "origin.txt") continue;
            const std::string doc = slurp(f.path());
            if (doc.find_first_not_of(" \t\r\n") == std::string::npos) continue;
            const std::string where = f.path().string() + " from " + origin;
            c_document d;
            lmx::s_debug_error dbg;
            lmx::elmx_error e = d.unmarshal(doc.data(), doc.size(), TRANSITIONAL, PART_ANY, &dbg);
            if (e == lmx::ELMX_ELEMENT_NOT_FOUND) {
                e = d.unmarshal(doc.data(), doc.size(), STRICT, PART_ANY, &dbg);
                strict += e == lmx::ELMX_OK;
            }
            if (e == lmx::ELMX_ELEMENT_NOT_FOUND) {
                // Not a part of the schemas (document properties, custom XML ...).
                ++unbound;
                ++unbound_roots[dbg.name];
                continue;
            }
            if (e) {
                failures.push_back(where + ": " + lmx::get_error_message(dbg));
                continue;
            }
            ++bound;
            std::string out;
            ASSERT_EQ(d.marshal(out), lmx::ELMX_OK) << where;
            if (d.dropped()) {
                ++with_drops;
                continue;
            }
            if (canonicalXml(out) != canonicalXml(doc)) {
                failures.push_back(where + ": differs after a round trip");
                continue;
            }
            tolerated += is_tolerated(origin, root_of(doc));
            // A second read of the output binds the same.
            c_document again;
            ASSERT_EQ(again.unmarshal(out.data(), out.size(),
                                      d.set() == &k_strict ? STRICT : TRANSITIONAL, PART_ANY),
                      lmx::ELMX_OK)
                << where;
            // The main parts, rewritten to the Strict namespaces, load as Strict and fail as
            // Transitional.
            const std::string_view root = d.root_name();
            if (d.set() == &k_transitional && (root == "worksheet" || root == "sst") &&
                strict_made < 200) {
                const std::string s = to_strict(doc);
                c_document st;
                ASSERT_EQ(st.unmarshal(s.data(), s.size(), TRANSITIONAL, PART_ANY),
                          lmx::ELMX_ELEMENT_NOT_FOUND)
                    << where;
                // Features the Strict edition left out (legacy drawings, ...) fail there.
                strict_loaded += st.unmarshal(s.data(), s.size(), STRICT, PART_ANY) == lmx::ELMX_OK;
                ++strict_made;
            }
        }
    }
    std::string roots;
    for (const auto &r : unbound_roots) roots += " " + r.first + ":" + std::to_string(r.second);
    std::printf("bound %zu parts (%zu Strict, %zu with drops), %zu of %zu Strict-rewritten loaded; "
                "outside the schemas %zu:%s\n",
                bound, strict, with_drops, strict_loaded, strict_made, unbound, roots.c_str());
    EXPECT_GT(bound, 5000u);
    EXPECT_EQ(tolerated, sizeof k_tolerated / sizeof *k_tolerated);
    EXPECT_GT(strict_loaded, strict_made / 2);
    for (size_t i = 0; i < failures.size() && i < 20; ++i) ADD_FAILURE() << failures[i];
    EXPECT_EQ(failures.size(), 0u);
}
