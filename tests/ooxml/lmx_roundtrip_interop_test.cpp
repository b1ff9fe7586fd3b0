// The XML parts of the public corpus's workbooks and of workbooks that LibreOffice,
// gnumeric and openpyxl (when installed) write here: every part reads without
// an error event, and a part copied through the reader and the writer
// canonicalises (xmllint --c14n) to the form of the input, up to the
// writer's rules: namespace declarations all on the root, comments and
// processing instructions dropped.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ooxml/lmx/xml_reader.h"
#include "ooxml/lmx/xml_writer.h"
#include "support/xml_parts.h"

using namespace lmx;
using namespace xmlparts;
namespace fs = std::filesystem;

namespace {

// Reads `doc` and writes every event back; returns the reader's error.
elmx_error copy_document(const std::string &doc, std::string &out) {
    c_xml_reader r(doc.data(), doc.size());
    c_xml_writer w(out);
    auto prefix_of = [](std::string_view q) {
        const size_t c = q.find(':');
        return c == std::string_view::npos ? std::string_view() : q.substr(0, c);
    };
    for (int e; (e = r.next()) != EV_END_OF_INPUT;) {
        if (e == EV_ERROR) return r.error();
        if (e == EV_TEXT) {
            w.text(r.text());
        } else if (e == EV_END) {
            w.end_element();
        } else {
            for (size_t i = 0; i < r.declaration_count(); ++i)
                w.add_namespace(r.declaration(i).prefix, r.declaration(i).uri);
            w.start_element(w.add_namespace(prefix_of(r.qname()), r.namespace_uri(r.ns())),
                            r.local());
            for (size_t i = 0; i < r.attribute_count(); ++i) {
                const s_attribute &a = r.attribute(i);
                std::string_view v;
                if (elmx_error err = r.attribute_value(a, v)) return err;
                w.attribute(w.add_namespace(prefix_of(a.qname), r.namespace_uri(a.ns)), a.local, v);
            }
        }
    }
    return w.finish();
}

// Canonical text with names in {URI}local form, attributes sorted by that
// form, xmlns attributes, comments and processing instructions dropped, so
// that where a namespace is declared, and under which prefix, do not count.
std::string canonical_form(const fs::path &file) {
    const std::string cmd = "xmllint --c14n '" + file.string() + "' 2>/dev/null";
    std::string s;
    if (FILE *f = popen(cmd.c_str(), "r")) {
        char buf[65536];
        for (size_t n; (n = fread(buf, 1, sizeof buf, f)) > 0;) s.append(buf, n);
        pclose(f);
    }
    std::vector<std::vector<std::pair<std::string, std::string>>> scopes(
        1, {{"xml", std::string(k_uri_xml)}});
    auto expand = [&](const std::string &q, bool attribute) {
        const size_t c = q.find(':');
        const std::string prefix = c == std::string::npos ? "" : q.substr(0, c);
        if (c == std::string::npos && attribute) return q;
        for (size_t i = scopes.size(); i-- > 0;)
            for (const auto &b : scopes[i])
                if (b.first == prefix)
                    return "{" + b.second + "}" + q.substr(c == std::string::npos ? 0 : c + 1);
        return q;
    };
    std::vector<std::string> open;
    std::string out;
    for (size_t i = 0; i < s.size();) {
        if (s.compare(i, 4, "<!--") == 0) {
            i = s.find("-->", i) + 3;
        } else if (s.compare(i, 2, "<?") == 0) {
            i = s.find("?>", i) + 2;
        } else if (s.compare(i, 2, "</") == 0) {
            i = s.find('>', i) + 1;
            out += "</" + open.back() + ">";
            open.pop_back();
            scopes.pop_back();
        } else if (s[i] == '<') {
            size_t j = s.find_first_of(" >", i);
            const std::string name = s.substr(i + 1, j - i - 1);
            std::vector<std::pair<std::string, std::string>> attrs;
            scopes.emplace_back();
            while (s[j] == ' ') {
                const size_t eq = s.find('=', j), close = s.find('"', eq + 2);
                const std::string an = s.substr(j + 1, eq - j - 1),
                                  av = s.substr(eq + 2, close - eq - 2);
                if (an == "xmlns" || an.compare(0, 6, "xmlns:") == 0)
                    scopes.back().emplace_back(an.size() > 5 ? an.substr(6) : "", av);
                else
                    attrs.emplace_back(an, av);
                j = close + 1;
            }
            i = j + 1;
            open.push_back(expand(name, false));
            out += "<" + open.back();
            for (auto &a : attrs) a.first = expand(a.first, true);
            std::sort(attrs.begin(), attrs.end());
            for (const auto &a : attrs) out += " " + a.first + "=\"" + a.second + "\"";
            out += ">";
        } else {
            const size_t j = std::min(s.find('<', i), s.size());
            if (!open.empty()) out.append(s, i, j - i);
            i = j;
        }
    }
    return out;
}

TEST(LmxInterop, CorpusPartsReadAndCanonicaliseAfterACopy) {
    const fs::path corpus = fs::path(TABRIX_CORPUS_DIR) / "public";
    if (!fs::exists(corpus)) GTEST_SKIP() << "no corpus";
    if (std::system("xmllint --version > /dev/null 2>&1") != 0) GTEST_SKIP() << "xmllint missing";
    const fs::path tmp = fs::path(TABRIX_TEST_TMP) / "lmx_interop";
    fs::remove_all(tmp);
    fs::create_directories(tmp);
    makeProducerBooks(tmp / "generated");
    ASSERT_TRUE(unpack(tmp / "parts", {(tmp / "generated").string(), corpus.string()},
                       {".xml", ".rels", ".vml"}));

    size_t parts = 0, compared = 0, book = 0, generated = 0;
    for (const auto &dir : fs::directory_iterator(tmp / "parts")) {
        const std::string origin = slurp(dir.path() / "origin.txt");
        // All parts of the regression set and of the generated books, and of every
        // 32nd book of the rest, are canonicalised.
        const bool compare = origin.find("calamine") != std::string::npos ||
                             origin.find("generated") != std::string::npos || book++ % 32 == 0;
        generated += origin.find("generated") != std::string::npos;
        for (const auto &f : fs::recursive_directory_iterator(dir.path())) {
            if (!f.is_regular_file() || f.path().filename() == "origin.txt") continue;
            const std::string doc = slurp(f.path());
            if (doc.find_first_not_of(" \t\r\n") == std::string::npos)
                continue; // an empty member is not XML
            ++parts;
            std::string copy;
            ASSERT_EQ(copy_document(doc, copy), ELMX_OK) << f.path() << " from " << origin;
            if (!compare) continue;
            const fs::path out = f.path().string() + ".copy";
            std::ofstream(out, std::ios::binary) << copy;
            const std::string want = canonical_form(f.path());
            if (want.empty()) continue; // libxml2 itself refuses the part
            EXPECT_EQ(canonical_form(out), want) << f.path() << " from " << origin;
            ++compared;
        }
    }
    std::printf(
        "%zu parts read and copied, %zu canonicalised and compared, %zu generated workbooks\n",
        parts, compared, generated);
    EXPECT_GT(parts, 1000u);
    EXPECT_GT(compared, 500u);
    if (!HasFailure()) fs::remove_all(tmp);
}

} // namespace
