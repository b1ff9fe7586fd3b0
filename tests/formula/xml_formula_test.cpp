// R1C1 notation converted to A1 relative to the holding cell, with the wrap
// of each format, and the part kinds of content types.
#include "formula/x_generator.h"
#include "formula/xml_formula.h"

#include <gtest/gtest.h>

#include <string>

using namespace tabrix;

TEST(XmlFormula, RelativeReferencesWrapAtEachFormatsLimit) {
    // Blanks outside quotes go; lower case r and c are read; negative
    // results wrap at the binary and the Open XML limits.
    const struct {
        const wchar_t *in, *out;
        bool biff;
    } toA1[] = {
        {L"r[1]c[1] + 1", L"B2+1", true},     {L"R[-1]C", L"A65536", true},
        {L"R[-1]C", L"A1048576", false},      {L"RC[-1]", L"IV1", true},
        {L"RC[-1]", L"XFD1", false},          {L"\"R1C1\"", L"\"$A$1\"", true},
        {L"ROUND(1,2)", L"ROUND(1,2)", true},
    };
    for (const auto &c : toA1) {
        std::wstring t = c.in;
        XMLFormula::toRefA1(t, 0, 0, c.biff);
        EXPECT_EQ(t, c.out) << std::string(c.in, c.in + wcslen(c.in));
    }
}

TEST(XmlFormula, PartFactoryDispatchesOnContentType) {
    XGenerator<std::string> gen;
    auto maker = [](const char *name) {
        return [name](const char *data, size_t size, bool flag) {
            return std::make_unique<std::string>(std::string(name) + ":" + std::string(data, size) +
                                                 (flag ? "+" : ""));
        };
    };
    gen.setMaker(PartKind::Styles, maker("styles"));
    gen.setMaker(PartKind::Worksheet, maker("sheet"));
    gen.setMaker(PartKind::Binary, maker("bytes"));
    const std::string ct = "application/vnd.openxmlformats-officedocument.spreadsheetml.";
    EXPECT_EQ(*gen.create("x", 1, ct + "styles+xml", true), "styles:x+");
    EXPECT_EQ(*gen.create("x", 1, ct + "worksheet+xml", true), "sheet:x");
    EXPECT_EQ(*gen.create("x", 1, "application/vnd.openxmlformats-officedocument.theme+xml", false),
              "bytes:x");
    // Kinds without their maker yet are kept as bytes.
    EXPECT_EQ(*gen.create("x", 1, ct + "sharedStrings+xml", false), "bytes:x");
    EXPECT_EQ(gen.create("x", 1, ct + "sheet.main+xml", false), nullptr);
    EXPECT_EQ(gen.create("x", 1, "application/vnd.ms-excel.sheet.macroEnabled.main+xml", false),
              nullptr);
    EXPECT_EQ(partKind("application/vnd.openxmlformats-package.relationships+xml"),
              PartKind::Relationships);
    EXPECT_EQ(partKind("application/vnd.openxmlformats-officedocument.drawing+xml"),
              PartKind::Drawing);
    EXPECT_EQ(partKind(ct + "chartsheet+xml"), PartKind::ChartSheet);
}
