// The binding's answers to crafted parts: the error codes of the order
// checks, required content, value checks and the root, the tolerance rules
// (what is kept, what is dropped).
#include <string>

#include <gtest/gtest.h>

#include "ooxml/binding/engine/document.h"

using namespace binding;

namespace {

const std::string k_main = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";

std::string wrap(const std::string &root, const std::string &body, const std::string &attrs = "") {
    return "<" + root + " xmlns=\"" + k_main + "\"" + attrs + ">" + body + "</" + root + ">";
}

// A worksheet whose sheet data holds `rows`.
std::string sheetData(const std::string &rows) {
    return wrap("worksheet", "<sheetData>" + rows + "</sheetData>");
}

} // namespace

TEST(Binding, CraftedPartsGiveTheirCodes) {
    using namespace lmx;
    const std::string sheets = "<sheets><sheet name=\"a\" sheetId=\"1\" r:id=\"rId1\"/></sheets>";
    const std::string r_ns =
        " xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\"";
    const std::string types =
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">";
    const std::string drawing =
        "<xdr:wsDr "
        "xmlns:xdr=\"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing\">";
    const struct {
        e_part part;
        std::string doc;
        elmx_error code;
        const char *name;  // the detail's name
        bool same = false; // loads and prints back byte for byte
    } cases[] = {
        {PART_WORKBOOK, wrap("workbook", sheets, r_ns), ELMX_OK, ""},
        {PART_WORKBOOK, wrap("workbook", "<bookViews><workbookView/></bookViews>"),
         ELMX_MANDATORY_ELEMENT_MISSING, "workbook"},
        {PART_WORKBOOK, wrap("workbook", "<sheets/>"), ELMX_MANDATORY_ELEMENT_MISSING, "sheets"},
        {PART_WORKBOOK, wrap("workbook", sheets + "<workbookPr/>", r_ns), ELMX_BAD_END_OF_ELEMENT,
         "workbookPr"},
        {PART_WORKBOOK, wrap("workbook", "<sheets><sheet name=\"a\" r:id=\"x\"/></sheets>", r_ns),
         ELMX_REQUIRED_ATTRIBUTES_MISSING, "sheetId"},
        {PART_WORKBOOK, wrap("worksheet", "<sheetData/>"), ELMX_ELEMENT_NOT_FOUND, "worksheet"},
        {PART_WORKSHEET, wrap("worksheet", ""), ELMX_MANDATORY_ELEMENT_MISSING, "worksheet"},
        {PART_WORKSHEET, sheetData("<row><c t=\"q\"/></row>"), ELMX_VALUE_NOT_ENUMERATED, "t"},
        {PART_WORKSHEET, sheetData("<row r=\"x\"/>"), ELMX_VALUE_BAD_FORMAT, "r"},
        {PART_WORKSHEET, sheetData("<row outlineLevel=\"300\"/>"), ELMX_VALUE_EXCEEDS_MAX,
         "outlineLevel"},
        // A row without r loads; unknown elements of a worksheet are skipped.
        {PART_WORKSHEET,
         wrap("worksheet", "<sheetData><row/><bogus><x/></bogus></sheetData><bogus/>"), ELMX_OK,
         ""},
        // The hand-made row and cell: their order checks, and kept content where it stood.
        {PART_WORKSHEET, sheetData("<row><c><v>1</v><f>A1</f></c></row>"), ELMX_BAD_END_OF_ELEMENT,
         "f"},
        {PART_WORKSHEET, sheetData("<row><c><v>1</v><v>2</v></c></row>"), ELMX_BAD_END_OF_ELEMENT,
         "v"},
        {PART_WORKSHEET, sheetData("<row><c>1</c></row>"), ELMX_BAD_END_OF_ELEMENT, "c"},
        {PART_WORKSHEET, sheetData("<row><c><v><b/></v></c></row>"), ELMX_BAD_END_OF_ELEMENT, "b"},
        {PART_WORKSHEET, sheetData("<row><extLst/><c/></row>"), ELMX_BAD_END_OF_ELEMENT, "c"},
        {PART_WORKSHEET,
         wrap("worksheet",
              "<sheetData><row r=\"2\" spans=\"1:3\" s=\"4\" customFormat=\"1\" mc:x=\"1\">"
              "<c r=\"A2\" cm=\"1\"><f>B2</f><v>3</v></c><mc:AlternateContent><mc:Fallback/>"
              "</mc:AlternateContent><c r=\"B2\" t=\"e\"><v>#N/A</v><is><t>x</t></is></c>"
              "<c r=\"XFD1048576\" s=\"0\"><v mc:y=\"1\">2</v></c>"
              "<extLst><ext uri=\"{X}\"/></extLst></row><row r=\"01\"/></sheetData>",
              " xmlns:mc=\"http://schemas.openxmlformats.org/markup-compatibility/2006\""),
         ELMX_OK, "", true},
        {PART_STYLESHEET, wrap("styleSheet", "<bogus/>"), ELMX_BAD_END_OF_ELEMENT, "bogus"},
        {PART_STYLESHEET, wrap("styleSheet", "<fonts><font><b val=\"maybe\"/></font></fonts>"),
         ELMX_VALUE_BAD_FORMAT, "val"},
        {PART_STYLESHEET, wrap("styleSheet", "<cellXfs><xf/></cellXfs><fonts/>"),
         ELMX_BAD_END_OF_ELEMENT, "fonts"},
        {PART_STYLESHEET, wrap("styleSheet", "<fonts><font><color rgb=\"FF00\"/></font></fonts>"),
         ELMX_LENGTH_TOO_SHORT, "rgb"},
        // Producers' slips that load and survive: an ISO date cell, an empty style index, a
        // colour of three bytes, a phonetic run of rich runs.  Their neighbours still fail.
        {PART_WORKSHEET,
         wrap("worksheet",
              "<sheetData><row r=\"1\"><c r=\"A1\" s=\"\" t=\"d\"><v>2021-01-01</v></c>"
              "<c r=\"B1\" s=\"\"/></row></sheetData>"),
         ELMX_OK, "", true},
        {PART_WORKSHEET, sheetData("<row><c s=\"x\"/></row>"), ELMX_VALUE_BAD_FORMAT, "s"},
        {PART_WORKSHEET, sheetData("<row><c t=\"\"/></row>"), ELMX_VALUE_NOT_ENUMERATED, "t"},
        {PART_WORKSHEET, sheetData("<row r=\"\" ht=\"\"/>"), ELMX_OK, "", true},
        {PART_STYLESHEET,
         wrap("styleSheet", "<fonts count=\"1\"><font><color rgb=\"42464A\"/></font></fonts>"),
         ELMX_OK, "", true},
        {PART_STYLESHEET,
         wrap("styleSheet", "<fonts><font><color rgb=\"FF00FF00FF\"/></font></fonts>"),
         ELMX_LENGTH_TOO_LONG, "rgb"},
        {PART_STYLESHEET, wrap("styleSheet", "<fonts><font><b val=\"\"/></font></fonts>"),
         ELMX_VALUE_BAD_FORMAT, "val"},
        {PART_SST,
         wrap("sst", "<si><r><t>x</t></r><rPh sb=\"0\" eb=\"1\"><r><t>y</t></r></rPh></si>"),
         ELMX_OK, "", true},
        {PART_SST, wrap("sst", "<si><t>x</t><rPh sb=\"0\" eb=\"1\"/></si>"),
         ELMX_MANDATORY_ELEMENT_MISSING, "rPh"},
        {PART_SST, wrap("sst", "<si><t>a</t></si><si><t>b</t><t>c</t></si>"),
         ELMX_BAD_END_OF_ELEMENT, "t"},
        {PART_SST, "<sst xmlns=\"http://purl.oclc.org/ooxml/spreadsheetml/main\"/>",
         ELMX_ELEMENT_NOT_FOUND, "sst"},
        {PART_RELATIONSHIPS,
         "<Relationships xmlns=\"http://schemas.openxmlformats.org/package/2006/relationships\">"
         "<Relationship Id=\"r1\" Target=\"a\"/></Relationships>",
         ELMX_REQUIRED_ATTRIBUTES_MISSING, "Type"},
        {PART_CONTENT_TYPES,
         types + "<Override PartName=\"/a\" ContentType=\"x/y\"/><Default Extension=\"xml\" "
                 "ContentType=\"text/xml\"/></Types>",
         ELMX_OK, ""},
        {PART_CONTENT_TYPES, types + "<Default Extension=\"xml\" ContentType=\"no type\"/></Types>",
         ELMX_NO_PATTERN_MATCHED, "ContentType"},
        {PART_DRAWING, drawing + "<xdr:absoluteAnchor/></xdr:wsDr>", ELMX_MANDATORY_ELEMENT_MISSING,
         "absoluteAnchor"},
        {PART_DRAWING, drawing + "<xdr:oneCellAnchor><xdr:from><xdr:col/>",
         ELMX_UNEXPECTED_EMPTY_ELEMENT, "col"},
        {PART_WORKSHEET, wrap("worksheet", "<sheetData><row>"), ELMX_BAD_END_OF_ELEMENT, ""},
    };
    for (const auto &c : cases) {
        c_document d;
        lmx::s_debug_error dbg;
        const lmx::elmx_error e =
            d.unmarshal(c.doc.data(), c.doc.size(), TRANSITIONAL, c.part, &dbg);
        EXPECT_EQ(e, c.code) << c.doc << ": " << lmx::get_error_message(dbg);
        if (e && e == c.code && *c.name) {
            EXPECT_EQ(dbg.name, c.name) << c.doc;
        }
        std::string out;
        if (c.same && !e && d.marshal(out) == ELMX_OK) {
            EXPECT_EQ(out,
                      "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n" + c.doc);
        }
    }
    // The slips are not tolerated in Strict.
    const std::string empty_s =
        "<worksheet xmlns=\"http://purl.oclc.org/ooxml/spreadsheetml/main\">"
        "<sheetData><row><c s=\"\"/></row></sheetData></worksheet>";
    c_document d;
    EXPECT_EQ(d.unmarshal(empty_s.data(), empty_s.size(), STRICT, PART_WORKSHEET),
              ELMX_VALUE_BAD_FORMAT);
}
