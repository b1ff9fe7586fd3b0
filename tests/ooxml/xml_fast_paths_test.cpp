// The plain fast paths (cells read straight from the bytes, plain shared
// string tables held as texts) against the general reader: a part read
// either way gives the same cells and texts and writes back the same XML.
#include <gtest/gtest.h>

#include <string>

#include "ooxml/sheet/shared_strings.h"
#include "tests/support/xml_parts.h"
#include "tests/support/xml_sheet_fake.h"

namespace {

const char *const kHead = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
                          "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/"
                          "2006/main\"><sheetData>";

// Each row mixes cells of the plain form with forms the general reader
// takes (single quotes, an inline string, a formula, an entity, white
// space, a comment inside a value); the expected dump is the same either way.
TEST(XmlFastPaths, PlainAndGeneralCellsReadAlike) {
    const std::string rows =
        "<row r=\"1\"><c r=\"A1\" s=\"0\"><v>1.5</v></c><c r='B1'><v>2</v></c>"
        "<c r=\"C1\" t=\"inlineStr\"><is><t>in</t></is></c><c r=\"D1\"><v>3</v></c></row>"
        "<row r=\"2\">\n  <c r=\"A2\"><f>IF(A1&gt;0,&quot;a,b&quot;,1)</f><v>3</v></c>\n  <c "
        "r=\"B2\" "
        "t=\"str\"><v>a&amp;b</v></c>"
        "<c r=\"C2\" t=\"b\"><v>1</v></c><c r=\"E2\" s=\"0\"/><c t=\"e\"><v>#N/A</v></c></row>"
        "<row r=\"3\"><c r=\"A3\"><v>4<!-- four --></v></c><c><v></v></c><c r=\"C3\"><v>5</v></c>"
        "</row></sheetData></worksheet>";
    xmlfake::Book<char> book;
    xmlfake::Sheet<char> sheet(book, kHead + rows);
    std::string dump;
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 5; ++c) {
            dump += std::to_string(sheet.cellType(r, c)) + ":";
            if (sheet.cellType(r, c) == tabrix::CELLTYPE_NUMBER)
                dump += std::to_string(sheet.readNum(r, c, nullptr));
            else if (sheet.cellType(r, c) == tabrix::CELLTYPE_STRING)
                dump += sheet.readStr(r, c, nullptr);
            dump += " ";
        }
    EXPECT_EQ(dump, "1:1.500000 1:2.000000 2:in 1:3.000000 0: "
                    "1:3.000000 2:a&b 3: 0: 4: "
                    "1:4.000000 4: 1:5.000000 0: 0: ");
    EXPECT_STREQ(sheet.readFormula(1, 0, nullptr), "IF(A1>0;\"a,b\";1)");
    // A formula written over a cell with an inline string, and over a cell
    // with a formula read in, replaces both.
    ASSERT_TRUE(sheet.writeFormula(0, 2, "SUM(1;2)", nullptr));
    ASSERT_TRUE(sheet.writeFormula(1, 0, "A1&\"<\"", nullptr));
    EXPECT_STREQ(sheet.readFormula(0, 2, nullptr), "SUM(1;2)");
    // What is written back reads canonically as the input, cell order kept
    // and the cells without an address given theirs.
    std::string addressed = kHead + rows;
    addressed.replace(addressed.find(" t=\"inlineStr\"><is><t>in</t></is>"), 33,
                      "><f>SUM(1,2)</f>");
    addressed.replace(addressed.find("IF(A1&gt;0,&quot;a,b&quot;,1)</f><v>3</v>"), 41,
                      "A1&amp;\"&lt;\"</f>");
    addressed.replace(addressed.find("<c t="), 5, "<c r=\"F2\" t=");
    addressed.replace(addressed.find("<c><v></v>"), 3, "<c r=\"B3\">");
    EXPECT_EQ(xmlparts::canonicalXml(sheet.save()), xmlparts::canonicalXml(addressed));
}

// Tables of the plain form and tables that only the bound tree takes give
// the same texts, and each is written back canonically as read.
TEST(XmlFastPaths, PlainAndBoundStringTablesReadAlike) {
    const std::string ns = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
    const std::string items = "<si><t>a &amp; b &lt;c&gt;</t></si><si><t xml:space=\"preserve\"> "
                              "x </t></si><si><t/></si><si><t>caf\xC3\xA9 _x000D_</t></si>";
    const std::string tables[] = {
        "<sst xmlns=\"" + ns + "\" count=\"4\" uniqueCount=\"4\">" + items + "</sst>",
        "<sst xmlns=\"" + ns + "\" count=\"4\" uniqueCount=\"4\">" + items + "<!-- c --></sst>",
        "<sst xmlns='" + ns + "'>" + items + "<si><r><t>ri</t></r><r><t>ch</t></r></si></sst>",
        "<sst xmlns=\"" + ns + "\" count=\"4\">\n" + items + "\n</sst>",
    };
    for (const std::string &xml : tables) {
        tabrix::SharedStrings sst(binding::TRANSITIONAL, xml.data(), xml.size());
        ASSERT_GE(sst.size(), 4u) << xml;
        EXPECT_EQ(sst.stringByIndex(0), L"a & b <c>") << xml;
        EXPECT_EQ(sst.stringByIndex(1), L" x ") << xml;
        EXPECT_EQ(sst.stringByIndex(2), L"") << xml;
        EXPECT_EQ(sst.stringByIndex(3), L"caf\u00e9 \r") << xml;
        if (sst.size() > 4) {
            EXPECT_EQ(sst.stringByIndex(4), L"rich") << xml;
        }
        std::string out;
        sst.save(out);
        EXPECT_EQ(xmlparts::canonicalXml(out), xmlparts::canonicalXml(xml)) << xml;
        EXPECT_EQ(sst.addString(L" x "), 1u) << xml; // found again, not added
    }
}

} // namespace
