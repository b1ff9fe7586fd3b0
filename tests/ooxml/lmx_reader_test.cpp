// The pull reader against hand-made documents: encodings, declaration,
// references, entity limits, namespaces, well-formedness, raw capture.
#include <string>

#include <gtest/gtest.h>

#include "ooxml/lmx/xml_reader.h"

using namespace lmx;

namespace {

const s_ns_map k_map[] = {{1000, "", "urn:main"}, {1001, "r", "urn:rel"}, {0, nullptr, nullptr}};

// Every event as text: <{ns}name a=v ...> text </name>, or "!code detail".
std::string dump(const std::string &doc, s_reader_limits limits = s_reader_limits()) {
    c_xml_reader r(doc.data(), doc.size(), k_map, limits);
    std::string out;
    for (int e; (e = r.next()) != EV_END_OF_INPUT;) {
        if (e == EV_ERROR)
            return out + "!" + std::to_string(r.error()) + " " + r.debug_error().name;
        if (e == EV_START) {
            out += "<{" + std::to_string(r.ns()) + "}" + std::string(r.local());
            for (size_t i = 0; i < r.attribute_count(); ++i) {
                std::string_view v;
                if (r.attribute_value(r.attribute(i), v))
                    return out + "!" + std::to_string(r.error()) + " " + r.debug_error().name;
                out += " {" + std::to_string(r.attribute(i).ns) + "}" +
                       std::string(r.attribute(i).local) + "=" + std::string(v);
            }
            out += ">";
        } else if (e == EV_TEXT) {
            out += r.text();
        } else {
            out += "</" + std::string(r.local()) + ">";
        }
    }
    return out;
}

std::string utf16(const std::string &ascii_or_latin1, bool big, bool bom) {
    std::string s;
    if (bom) s += big ? "\xFE\xFF" : "\xFF\xFE";
    for (unsigned char c : ascii_or_latin1) {
        s += big ? '\0' : char(c);
        s += big ? char(c) : '\0';
    }
    return s;
}

const std::string k_laughs =
    "<?xml version=\"1.0\"?><!DOCTYPE l [<!ENTITY a \"lollollollollollollollollollol\">"
    "<!ENTITY b \"&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;\"><!ENTITY c \"&b;&b;&b;&b;&b;&b;&b;&b;&b;&b;\">"
    "<!ENTITY d \"&c;&c;&c;&c;&c;&c;&c;&c;&c;&c;\"><!ENTITY e \"&d;&d;&d;&d;&d;&d;&d;&d;&d;&d;\">"
    "<!ENTITY f \"&e;&e;&e;&e;&e;&e;&e;&e;&e;&e;\"><!ENTITY g \"&f;&f;&f;&f;&f;&f;&f;&f;&f;&f;\">"
    "<!ENTITY h \"&g;&g;&g;&g;&g;&g;&g;&g;&g;&g;\"><!ENTITY i \"&h;&h;&h;&h;&h;&h;&h;&h;&h;&h;\">"
    "]><l>&i;</l>";

TEST(LmxReader, DocumentsGiveTheirEventsOrTheirError) {
    std::string deep;
    for (int i = 0; i < 300; ++i) deep += "<a>";
    struct Case {
        const char *what;
        std::string doc;
        std::string expect;
    } cases[] = {
        {"utf-8 with namespaces",
         "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
         "<w xmlns=\"urn:main\" xmlns:r=\"urn:rel\" xmlns:o=\"urn:other\"><c r:id=\"x\" t=\"s\" "
         "o:k='1'/>"
         "<o:q xml:space=\"preserve\"> </o:q></w>",
         "<{1000}w><{1000}c {1001}id=x {1}t=s {100}k=1></c><{100}q {2}space=preserve> </q></w>"},
        {"utf-16 le with bom",
         utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a b=\"\xE9\">\xFC</a>", false, true),
         "<{1}a {1}b=\xC3\xA9>\xC3\xBC</a>"},
        {"utf-16 be without bom", utf16("<a b=\"\xE9\">\xFC</a>", true, false),
         "<{1}a {1}b=\xC3\xA9>\xC3\xBC</a>"},
        {"utf-8 bom", "\xEF\xBB\xBF<a>x</a>", "<{1}a>x</a>"},
        {"windows-1252 bytes by code point",
         "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>\xE9\x80</a>",
         "<{1}a>\xC3\xA9\xC2\x80</a>"},
        {"iso-8859-1", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xFF</a>",
         "<{1}a>\xC3\xBF</a>"},
        {"version 2.0", "<?xml version=\"2.0\"?><a/>", "!14 XML version 2.0 not understood"},
        {"version missing", "<?xml encoding=\"UTF-8\"?><a/>",
         "!13 Version not present in XML Decl"},
        {"unknown encoding", "<?xml version=\"1.0\" encoding=\"KOI8-R\"?><a/>",
         "!6 Unknown character encoding specified"},
        {"utf-8 declared over utf-16",
         utf16("<?xml version=\"1.0\" encoding=\"UTF-8\"?><a/>", false, true),
         "!15 Mis-match between specfied encoding and byte format"},
        {"bad utf-8", "<a>\xC3\x28</a>", "!15 Invalid UTF-8 sequence at byte 3"},
        {"unrecognised first bytes", "\x01\x02<a/>", "!6 Unrecognised character encoding"},
        {"duplicated attribute", "<a x=\"1\" x=\"2\"/>", "!3 @x"},
        {"cdata in v", "<v><![CDATA[1<2]]>&amp;<!-- c --><?pi x?>3</v>", "<{1}v>1<2&3</v>"},
        {"]]> in text", "<a>x]]>y</a>", "<{1}a>!23 ]]> in text"},
        {"references",
         "<!DOCTYPE a [<!ENTITY e \"E&#x46;\">]><a "
         "v=\"&e;&#10;x\ny\">&lt;&#65;&#x42;&e;&gt;\r\n</a>",
         "<{1}a {1}v=EF\nx y><ABEF>\n</a>"},
        {"billion laughs", k_laughs, "<{1}l>!33 Entity expansion limit exceeded"},
        {"billion empty laughs", std::string(k_laughs).replace(k_laughs.find("lollol"), 30, ""),
         "<{1}l>!33 Entity expansion limit exceeded"},
        {"external entity", "<!DOCTYPE a [<!ENTITY x SYSTEM \"file:///etc/passwd\">]><a>&x;</a>",
         "<{1}a>!17 &x;"},
        {"recursive entity", "<!DOCTYPE a [<!ENTITY x \"1&y;\"><!ENTITY y \"2&x;\">]><a>&x;</a>",
         "<{1}a>!24 &x;"},
        {"undefined entity", "<a>&nope;</a>", "<{1}a>!41 &nope;"},
        {"markup in entity", "<!DOCTYPE a [<!ENTITY x \"<b/>\">]><a>&x;</a>",
         "<{1}a>!33 Markup inside entity &x;"},
        {"character reference out of range", "<a>&#x110000;</a>",
         "<{1}a>!5 Character reference out of range"},
        {"nesting depth", deep, ""},
        {"mismatched end", "<a><b></a></b>", "<{1}a><{1}b>!10 </a> closes <b>"},
        {"truncated", "<a><b>text", "<{1}a><{1}b>!34 Premature end of file encountered"},
        {"undeclared prefix", "<p:a/>", "!23 Undeclared namespace prefix in p:a"},
        {"content after root", "<a/><b/>", "<{1}a></a>!23 Content after the root element"},
        {"bad comment", "<a><!-- x -- y --></a>", "<{1}a>!8 -- inside a comment"},
        {"no root", "<?xml version=\"1.0\"?> <!-- c -->", "!34 No root element"},
        {"unquoted attribute", "<a x=1/>", "!28 @x"},
    };
    for (const Case &c : cases) {
        const std::string got = dump(c.doc);
        if (c.expect.empty()) // 256 starts, then the error
            EXPECT_EQ(got.substr(got.find('!')), "!23 Elements nested deeper than 256") << c.what;
        else
            EXPECT_EQ(got, c.expect) << c.what;
    }
}

TEST(LmxReader, RootOfTheOtherNamespaceIsNotFound) {
    const std::string strict =
        "<?xml version=\"1.0\"?><worksheet xmlns=\"urn:strict\"><sheetData/></worksheet>";
    c_xml_reader wrong(strict.data(), strict.size(), k_map);
    EXPECT_EQ(wrong.expect_root(1000, "worksheet"), ELMX_ELEMENT_NOT_FOUND);
    EXPECT_EQ(wrong.next(), EV_ERROR);
    const s_ns_map strict_map[] = {{1000, "", "urn:strict"}, {0, nullptr, nullptr}};
    c_xml_reader right(strict.data(), strict.size(), strict_map);
    ASSERT_EQ(right.expect_root(1000, "worksheet"), ELMX_OK);
    EXPECT_EQ(right.next(), EV_START);
    EXPECT_EQ(right.local(), "sheetData");
}

TEST(LmxReader, CaptureKeepsTheElementAndTheBindingsItUses) {
    const std::string doc =
        "<w xmlns=\"urn:main\" xmlns:x=\"urn:x\" xmlns:y=\"urn:y\"><a/>"
        "<extLst><ext x:v=\"1\" xmlns:z=\"urn:z\"><z:i/>t&amp;</ext></extLst><b/></w>";
    c_xml_reader r(doc.data(), doc.size(), k_map);
    c_any_info info;
    std::string rest;
    for (int e; (e = r.next()) != EV_END_OF_INPUT;) {
        ASSERT_NE(e, EV_ERROR) << r.debug_error().name;
        if (e == EV_START && r.local() == "extLst")
            ASSERT_EQ(r.capture_element(info), ELMX_OK);
        else if (e == EV_START)
            rest += std::string(r.local()) + " ";
    }
    EXPECT_EQ(info.xml, "<extLst><ext x:v=\"1\" xmlns:z=\"urn:z\"><z:i/>t&amp;</ext></extLst>");
    EXPECT_EQ(info.ns_uri, "urn:main");
    ASSERT_EQ(info.ns_context.size(), 2u);
    EXPECT_EQ(info.ns_context[0], std::make_pair(std::string(), std::string("urn:main")));
    EXPECT_EQ(info.ns_context[1], std::make_pair(std::string("x"), std::string("urn:x")));
    EXPECT_EQ(rest, "w a b ");
}

} // namespace
