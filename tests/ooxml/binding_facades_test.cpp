// Parts built through the typed facades print in schema order whatever the
// order of the calls, and read back with the same values; the row grows on
// an index past its end; the compact cell keeps its fields through a round trip.
#include <string>

#include <gtest/gtest.h>

#include "ooxml/binding/engine/document.h"
#include "ooxml/binding/parts/package_facades.h"
#include "ooxml/binding/parts/sst_facades.h"
#include "ooxml/binding/parts/styles_facades.h"
#include "ooxml/binding/parts/workbook_facades.h"
#include "ooxml/binding/parts/worksheet_facades.h"

using namespace binding;

namespace {

// Writes `d`, reads the text back into `again` (in the same edition), and answers the text.
std::string reread(const c_document &d, e_part part, c_document &again) {
    std::string out;
    EXPECT_EQ(d.marshal(out), lmx::ELMX_OK);
    lmx::s_debug_error dbg;
    EXPECT_EQ(again.unmarshal(out.data(), out.size(), d.set() == &k_strict ? STRICT : TRANSITIONAL,
                              part, &dbg),
              lmx::ELMX_OK)
        << out << "\n"
        << lmx::get_error_message(dbg);
    return out;
}

} // namespace

TEST(BindingFacades, PartsBuiltInAnyOrderPrintInSchemaOrder) {
    for (e_edition ed : {TRANSITIONAL, STRICT}) {
        c_document d;
        d.create(ed, PART_WORKSHEET);
        c_worksheet ws(&d.root());
        ws.get_pageSetup().set_orientation(e_orientation::LANDSCAPE);
        ws.get_mergeCells().append_mergeCell().set_ref("A1:B2");
        c_row row = ws.get_sheetData().append_row();
        row.set_r(3);
        row.set_ht(14.25);
        c_cell &cell = row.get_c(2); // grows the row to three cells
        cell.set_r(2, 2);
        cell.set_s(7);
        cell.set_t("s");
        cell.set_v("12");
        cell.make_rest().append("f")->_text = "SUM(A1:B1)";
        c_col col = ws.get_cols().append_col();
        col.set_width(9.5);
        col.set_max(2);
        col.set_min(1);
        ws.get_sheetViews().append_sheetView().set_workbookViewId(0);
        c_document again;
        const std::string out = reread(d, PART_WORKSHEET, again);
        EXPECT_NE(
            out.find("<cols><col min=\"1\" max=\"2\" width=\"9.5\"/></cols><sheetData><row r=\"3\" "
                     "ht=\"14.25\"><c/><c/>"
                     "<c r=\"C3\" s=\"7\" t=\"s\"><f>SUM(A1:B1)</f><v>12</v></c></row></sheetData>"
                     "<mergeCells><mergeCell ref=\"A1:B2\"/></mergeCells>"),
            std::string::npos)
            << out;
        c_row back = c_worksheet(&again.root()).get_sheetData().get_row(0);
        ASSERT_EQ(back.size_c(), 3u);
        EXPECT_EQ(back.get_c(2).row(), 2u);
        EXPECT_EQ(back.get_c(2).get_v(), "12");
        EXPECT_EQ(back.get_c(2).get_t(), "s");
        EXPECT_EQ(back.get_c(0).get_t(), "n");
        // Enumerated attributes go through their schema texts.
        c_page_setup setup = c_worksheet(&again.root()).get_pageSetup();
        EXPECT_EQ(setup.get_orientation(), e_orientation::LANDSCAPE);
        EXPECT_EQ(setup.get_orientation_text(), "landscape");
    }

    c_document st;
    st.create(TRANSITIONAL, PART_STYLESHEET);
    c_stylesheet ss(&st.root());
    c_xf xf = ss.get_cellXfs().append_xf();
    xf.set_fontId(1);
    xf.get_alignment().set_wrapText(true);
    c_font font = ss.get_fonts().append_font();
    font.get_sz().set_val("11");
    font.get_b();
    c_num_fmt fmt = ss.get_numFmts().append_numFmt();
    fmt.set_formatCode("0.0%");
    fmt.set_numFmtId(164);
    ss.get_borders().append_border().get_bottom().set_style(e_border_style::THIN);
    ss.get_fills().append_fill().get_patternFill().set_patternType(e_pattern_type::GRAY125);
    c_document st2;
    const std::string styles = reread(st, PART_STYLESHEET, st2);
    c_stylesheet ss2(&st2.root());
    EXPECT_EQ(ss2.get_fills().get_fill(0).get_patternFill().get_patternType(),
              e_pattern_type::GRAY125);
    EXPECT_EQ(ss2.get_borders().get_border(0).get_bottom().get_style(), e_border_style::THIN);
    EXPECT_EQ(ss2.get_borders().get_border(0).get_top().get_style(),
              e_border_style::NONE); // the default
    EXPECT_NE(
        styles.find("<numFmts><numFmt numFmtId=\"164\" "
                    "formatCode=\"0.0%\"/></numFmts><fonts><font><b/><sz val=\"11\"/></font>"),
        std::string::npos)
        << styles;

    c_document wb;
    wb.create(TRANSITIONAL, PART_WORKBOOK);
    c_workbook book(&wb.root());
    book.get_definedNames().append_definedName().set_name("x");
    c_sheet sheet = book.get_sheets().append_sheet();
    sheet.set_name("One");
    sheet.set_sheetId(1);
    sheet.set_id("rId1");
    book.get_workbookPr().set_date1904(true);
    c_document wb2;
    reread(wb, PART_WORKBOOK, wb2);
    EXPECT_TRUE(c_workbook(&wb2.root()).get_workbookPr().get_date1904());
    EXPECT_EQ(c_workbook(&wb2.root()).get_sheets().get_sheet(0).get_name(), "One");
}
