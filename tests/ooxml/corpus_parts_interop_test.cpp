// Every XML part of the public corpus's workbooks, and of workbooks that
// LibreOffice, gnumeric, openpyxl and xlsxwriter (when installed) write
// here, in one walk:
// - it reads without an error event, and a copy through the reader and the
//   writer reads in expat (tests/support/oracle.py) as the part does, up to
//   the writer's rules: namespace declarations all on the root, comments
//   and processing instructions dropped;
// - it binds through the schema tables and prints back canonically equal:
//   names as {URI}local, attributes sorted, white space between elements
//   (and as the whole text of an element, unless xml:space keeps it) and
//   the place of namespace declarations left out.  A part that dropped
//   something under the tolerance rules (unqualified unknown attributes,
//   unknown elements of a workbook or worksheet) is not compared.  Strict
//   parts, made by rewriting the namespaces of Transitional ones, load as
//   Strict and fail at the root as Transitional.
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ooxml/binding/engine/document.h"
#include "ooxml/lmx/xml_reader.h"
#include "ooxml/lmx/xml_writer.h"
#include "support/oracle.h"
#include "support/xml_parts.h"

using namespace binding;
using namespace xmlparts;
namespace fs = std::filesystem;

namespace {

// Reads `doc` and writes every event back; returns the reader's error.
lmx::elmx_error copy_document(const std::string &doc, std::string &out) {
    lmx::c_xml_reader r(doc.data(), doc.size());
    lmx::c_xml_writer w(out);
    auto prefix_of = [](std::string_view q) {
        const size_t c = q.find(':');
        return c == std::string_view::npos ? std::string_view() : q.substr(0, c);
    };
    for (int e; (e = r.next()) != lmx::EV_END_OF_INPUT;) {
        if (e == lmx::EV_ERROR) return r.error();
        if (e == lmx::EV_TEXT) {
            w.text(r.text());
        } else if (e == lmx::EV_END) {
            w.end_element();
        } else {
            for (size_t i = 0; i < r.declaration_count(); ++i)
                w.add_namespace(r.declaration(i).prefix, r.declaration(i).uri);
            w.start_element(w.add_namespace(prefix_of(r.qname()), r.namespace_uri(r.ns())),
                            r.local());
            for (size_t i = 0; i < r.attribute_count(); ++i) {
                const lmx::s_attribute &a = r.attribute(i);
                std::string_view v;
                if (lmx::elmx_error err = r.attribute_value(a, v)) return err;
                w.attribute(w.add_namespace(prefix_of(a.qname), r.namespace_uri(a.ns)), a.local, v);
            }
        }
    }
    return w.finish();
}

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

TEST(CorpusPartsInterop, PartsCopyReadAlikeInExpatAndBindAndPrintBack) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    const fs::path tmp = fs::path(TABRIX_TEST_TMP) / "corpus_parts_interop";
    fs::remove_all(tmp);
    fs::create_directories(tmp);
    makeProducerBooks(tmp / "generated");
    ASSERT_TRUE(unpack(tmp / "parts", {(tmp / "generated").string(), corpus.string()},
                       {".xml", ".rels", ".vml"}));

    size_t parts = 0, copies = 0, books = 0;
    size_t bound = 0, strict = 0, unbound = 0, with_drops = 0, strict_made = 0, strict_loaded = 0,
           tolerated = 0;
    std::map<std::string, size_t> unbound_roots;
    std::vector<std::string> failures;
    for (const auto &dir : fs::directory_iterator(tmp / "parts")) {
        const std::string origin = slurp(dir.path() / "origin.txt");
        const bool sample = origin.find("calamine") != std::string::npos ||
                            origin.find("generated") != std::string::npos || books++ % 32 == 0;
        for (const auto &f : fs::recursive_directory_iterator(dir.path())) {
            if (!f.is_regular_file() || f.path().filename() == "origin.txt" ||
                f.path().extension() == ".copy")
                continue;
            const std::string doc = slurp(f.path());
            if (doc.find_first_not_of(" \t\r\n") == std::string::npos) continue;
            const std::string where = f.path().string() + " from " + origin;
            ++parts;
            std::string copy;
            ASSERT_EQ(copy_document(doc, copy), lmx::ELMX_OK) << where;
            // Copies of the regression set, the generated books and every
            // 32nd other book go to expat.
            if (sample) {
                std::ofstream(f.path().string() + ".copy", std::ios::binary) << copy;
                ++copies;
            }
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
    EXPECT_GT(parts, 5000u);
    for (size_t i = 0; i < failures.size() && i < 20; ++i) ADD_FAILURE() << failures[i];
    EXPECT_EQ(failures.size(), 0u);
    const oracle::Lines seen = oracle::dump("xml-copies", (tmp / "parts").string());
    ASSERT_FALSE(seen.empty());
    for (size_t i = 0; i + 1 < seen.size(); ++i) ADD_FAILURE() << seen[i];
    ASSERT_EQ(seen.back().rfind("COMPARED ", 0), 0u) << seen.back();
    std::printf("%zu parts copied, %zu compared in expat\n", parts, copies);
    EXPECT_GT(std::stoul(seen.back().substr(9)), 500u);
    if (!HasFailure()) fs::remove_all(tmp);
}
