// The writer: escaping, number and boolean forms, root-only namespace
// declarations including late ones, kept elements written back; and the
// texts of the error table at its edges.
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "ooxml/lmx/xml_reader.h"
#include "ooxml/lmx/xml_writer.h"

using namespace lmx;

namespace {

const char k_decl[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

TEST(LmxWriter, ValuesComeOutInTheirXmlForm) {
    struct Case {
        double d;
        const char *text;
    } doubles[] = {{0.1, "0.1"},
                   {1e20, "1e+20"},
                   {1.0 / 3, "0.33333333333333"},
                   {12345678901234567.0, "1.2345678901235e+16"},
                   {-2.5e-7, "-2.5e-07"},
                   {std::numeric_limits<double>::infinity(), "INF"},
                   {-std::numeric_limits<double>::infinity(), "-INF"},
                   {std::nan(""), "NaN"}};
    for (const Case &c : doubles) {
        std::string s;
        output_convert_to_xml(s, c.d);
        EXPECT_EQ(s, c.text);
    }
    std::string s;
    output_convert_to_xml(s, std::string_view("a]]>b>c<&\"'\r\n\t"), false);
    EXPECT_EQ(s, "a]]&gt;b>c&lt;&amp;&quot;&apos;&#13;\n\t");
    s.clear();
    output_convert_to_xml(s, std::string_view("x\ny\tz"), true);
    EXPECT_EQ(s, "x&#10;y&#9;z");
}

TEST(LmxWriter, NamespacesGoOnTheRootAndKeptElementsKeepTheirMeaning) {
    const s_ns_map map[] = {{1000, "", "urn:main"}, {1001, "r", "urn:rel"}, {0, nullptr, nullptr}};
    // A kept element read from another document, whose "r" means something else.
    const std::string src =
        "<q xmlns:r=\"urn:odd\" xmlns:x=\"urn:x\"><x:e r:a=\"1\"><x:f/></x:e></q>";
    c_xml_reader r(src.data(), src.size());
    c_any_info kept;
    while (r.next() == EV_START && r.local() != "e") {}
    ASSERT_EQ(r.capture_element(kept), ELMX_OK);

    std::string out;
    c_xml_writer w(out, map);
    w.start_element(1000, "worksheet");
    w.start_element(1000, "row");
    w.attribute(NS_NONE, "r", int64_t(3));
    w.attribute(NS_NONE, "ht", 15.75);
    w.attribute(NS_NONE, "hidden", true);
    w.attribute(w.add_namespace("x14ac", "urn:ac"), "dyDescent", std::string_view("0.25"));
    w.start_element(1000, "c");
    w.attribute(1001, "id", std::string_view("a<b"));
    w.text("1]]>2");
    w.end_element();
    w.start_element(1000, "c");
    w.end_element();
    w.end_element();
    w.write_any_info(kept);
    w.end_element();
    EXPECT_EQ(w.finish(), ELMX_OK);
    EXPECT_EQ(out, std::string(k_decl) +
                       "<worksheet xmlns=\"urn:main\" xmlns:r=\"urn:rel\" xmlns:x14ac=\"urn:ac\" "
                       "xmlns:x=\"urn:x\">"
                       "<row r=\"3\" ht=\"15.75\" hidden=\"true\" x14ac:dyDescent=\"0.25\">"
                       "<c r:id=\"a&lt;b\">1]]&gt;2</c><c/></row>"
                       "<x:e xmlns:r=\"urn:odd\" r:a=\"1\"><x:f/></x:e></worksheet>");
    // The output reads back with every name where it was.
    c_xml_reader back(out.data(), out.size(), map);
    std::string names;
    for (int e; (e = back.next()) != EV_END_OF_INPUT;) {
        ASSERT_NE(e, EV_ERROR) << back.debug_error().name;
        if (e == EV_START)
            names +=
                std::string(back.namespace_uri(back.ns())) + " " + std::string(back.local()) + ";";
    }
    EXPECT_EQ(names, "urn:main worksheet;urn:main row;urn:main c;urn:main c;urn:x e;urn:x f;");

    std::string unfinished;
    c_xml_writer w2(unfinished);
    EXPECT_EQ(w2.finish(), ELMX_TYPE_NOT_SET);
    w2.start_element(NS_NONE, "a");
    EXPECT_EQ(w2.finish(), ELMX_OCCURS_ON_MARSHAL);
    w2.text("x");
    w2.end_element();
    w2.attribute(NS_NONE, "late", std::string_view("1"));
    EXPECT_EQ(w2.finish(), ELMX_UNDEFINED_ERROR);
}

TEST(LmxErrors, TableEdges) {
    const std::pair<int, const char *> texts[] = {{0, "No Error"},
                                                  {17, "Reference to external entity"},
                                                  {24, "Recursive entity definition"},
                                                  {46, "min/max occurs error on marshaling"},
                                                  {1000, "User defined error 1"},
                                                  {1008, "User defined error 9"},
                                                  {47, ""},
                                                  {-1, ""},
                                                  {1009, ""}};
    for (const auto &t : texts) EXPECT_STREQ(get_error_description(t.first), t.second) << t.first;
}

} // namespace
