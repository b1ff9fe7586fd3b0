// Simple-type validation, one table per family: numbers, dates and
// durations, and the binary, list, union, enumeration, pattern and length forms.
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "ooxml/lmx/xsd_binary.h"
#include "ooxml/lmx/xsd_datetime.h"
#include "ooxml/lmx/xsd_validate.h"

using namespace lmx;

namespace {

struct Case {
    const s_validation_spec *spec;
    const char *text;
    int expect;
};

void run(const Case *cases, size_t n) {
    for (size_t i = 0; i < n; ++i)
        EXPECT_EQ(validate(cases[i].text, *cases[i].spec), cases[i].expect)
            << "case " << i << ": " << cases[i].text;
}

TEST(LmxXsd, Numbers) {
    s_validation_spec dec{XSD_DECIMAL}, money{XSD_DECIMAL}, i8{XSD_BYTE}, u64{XSD_UNSIGNED_LONG},
        big{XSD_INTEGER}, pos{XSD_POSITIVE_INTEGER}, dbl{XSD_DOUBLE}, pct{XSD_DOUBLE},
        flag{XSD_BOOLEAN}, range{XSD_INT};
    money.total_digits = 5;
    money.fraction_digits = 2;
    pct.min_inclusive = "0";
    pct.max_exclusive = "1E2";
    range.min_exclusive = "-1";
    range.max_inclusive = "10";
    const Case cases[] = {
        {&dec, " -0012.5000 ", 0},
        {&dec, ".5", 0},
        {&dec, "5.", 0},
        {&dec, "1e3", 35},
        {&dec, ".", 35},
        {&money, "123.45", 0},
        {&money, "1234.5", 0},
        {&money, "123456", 27},
        {&money, "1.234", 18},
        {&money, "0.00100", 18},
        {&i8, "-128", 0},
        {&i8, "127", 0},
        {&i8, "128", 36},
        {&i8, "-129", 37},
        {&i8, "1.0", 35},
        {&u64, "18446744073709551615", 0},
        {&u64, "18446744073709551616", 36},
        {&u64, "-1", 37},
        {&big, "-123456789012345678901234567890", 0},
        {&pos, "0", 37},
        {&pos, "+7", 0},
        {&dbl, "1.5E-3", 0},
        {&dbl, "INF", 0},
        {&dbl, "-INF", 0},
        {&dbl, "NaN", 0},
        {&dbl, "inf", 35},
        {&dbl, "1e", 35},
        {&pct, "99.9", 0},
        {&pct, "100", 36},
        {&pct, "-0.1", 37},
        {&pct, "NaN", 37},
        {&flag, "true", 0},
        {&flag, " 0 ", 0},
        {&flag, "yes", 35},
        {&range, "0", 0},
        {&range, "-1", 37},
        {&range, "11", 36},
    };
    run(cases, sizeof cases / sizeof *cases);
    int64_t i;
    uint64_t u;
    double d;
    EXPECT_EQ(convert("-9223372036854775808", i), ELMX_OK);
    EXPECT_EQ(convert("9223372036854775808", i), ELMX_VALUE_EXCEEDS_MAX);
    EXPECT_EQ(convert("+42", u), ELMX_OK);
    EXPECT_EQ(u, 42u);
    EXPECT_EQ(convert("-INF", d), ELMX_OK);
    EXPECT_TRUE(std::isinf(d) && d < 0);
}

TEST(LmxXsd, DatesTimesAndDurations) {
    s_validation_spec dt{XSD_DATETIME}, date{XSD_DATE}, time{XSD_TIME}, gy{XSD_GYEAR},
        gym{XSD_GYEARMONTH}, gm{XSD_GMONTH}, gmd{XSD_GMONTHDAY}, gd{XSD_GDAY}, dur{XSD_DURATION};
    const Case cases[] = {
        {&dt, "2024-02-29T23:59:59.125Z", 0},
        {&dt, "2023-02-29T00:00:00", 35},
        {&dt, "2024-01-01T24:00:00", 0},
        {&dt, "2024-01-01T24:00:01", 35},
        {&dt, "2024-01-01T12:00:00+14:00", 0},
        {&dt, "2024-01-01T12:00:00+14:01", 35},
        {&dt, "2024-01-01", 35},
        {&dt, "-0044-03-15T12:00:00", 0},
        {&dt, "0000-01-01T00:00:00", 35},
        {&date, "1900-02-29", 35},
        {&date, "2000-02-29-05:00", 0},
        {&date, "12024-01-01", 0},
        {&date, "02024-01-01", 35},
        {&time, "13:20:00", 0},
        {&time, "13:60:00", 35},
        {&gy, "2024Z", 0},
        {&gy, "24", 35},
        {&gym, "2024-13", 35},
        {&gym, "2024-12", 0},
        {&gm, "--02", 0},
        {&gm, "-02", 35},
        {&gmd, "--02-29", 0},
        {&gmd, "--04-31", 35},
        {&gd, "---31", 0},
        {&gd, "---32", 35},
        {&dur, "P1Y2M3DT4H5M6.5S", 0},
        {&dur, "-PT0S", 0},
        {&dur, "P", 35},
        {&dur, "PT", 35},
        {&dur, "P1D2Y", 35},
        {&dur, "P1.5D", 35},
        {&dur, "P1DT", 35},
        {&dur, "PT1H1D", 35},
    };
    run(cases, sizeof cases / sizeof *cases);
    c_duration a, b;
    ASSERT_TRUE(a.parse("P1M") && b.parse("P30D"));
    EXPECT_TRUE(a.p_is_indeterminate(b));
    ASSERT_TRUE(b.parse("P2Y"));
    EXPECT_FALSE(a.p_is_indeterminate(b));
}

TEST(LmxXsd, BinaryListsUnionsEnumerationsPatterns) {
    static const c_regex rgb("[0-9A-Fa-f]{8}");
    static const c_regex cellref("$?[A-Z]{1,3}$?[0-9]+");
    ASSERT_TRUE(rgb.is_valid() && cellref.is_valid());
    EXPECT_FALSE(c_regex("[a-").is_valid());
    static const c_regex *const rgb_p[] = {&rgb, nullptr};
    static const c_regex *const ref_p[] = {&cellref, nullptr};
    static const char *const modes[] = {"normal", "pageLayout", "pageBreakPreview", nullptr};
    s_validation_spec hex{XSD_HEX_BINARY}, b64{XSD_BASE64_BINARY}, colour{XSD_HEX_BINARY},
        view{XSD_STRING}, ref{XSD_STRING}, sqref{XSD_LIST}, name{XSD_STRING},
        uint{XSD_UNSIGNED_INT}, either{XSD_UNION}, token{XSD_STRING}, fixed{XSD_STRING};
    colour.length = 4;
    colour.patterns = rgb_p;
    view.enumeration = modes;
    view.whitespace = WS_COLLAPSE;
    ref.patterns = ref_p;
    sqref.item = &ref;
    sqref.min_length = 1;
    sqref.max_length = 3;
    name.min_length = 1;
    name.max_length = 3;
    const s_validation_spec *const members[] = {&uint, &view, nullptr};
    either.members = members;
    token.whitespace = WS_COLLAPSE;
    token.enumeration = modes;
    fixed.fixed = "1";
    const Case cases[] = {
        {&hex, "0aFF", 0},
        {&hex, "0aF", 35},
        {&hex, "0g", 35},
        {&b64, "TWFu", 0},
        {&b64, "TW E=", 0},
        {&b64, "TQ==", 0},
        {&b64, "TR==", 35},
        {&b64, "T===", 35},
        {&b64, "TWF", 35},
        {&colour, "FF00ff00", 0},
        {&colour, "FF00FF", 22},
        {&colour, "FF00FF0G", 22},
        {&view, "  pageLayout ", 0},
        {&view, "page", 38},
        {&sqref, "A1 $B$2:C3", 22},
        {&sqref, " A1  B2 ", 0},
        {&sqref, "A1 B2 C3 D4", 19},
        {&sqref, "", 20},
        {&name, "\xC3\xA9\xC3\xA9\xC3\xA9", 0},
        {&name, "abcd", 19},
        {&name, "", 20},
        {&either, "42", 0},
        {&either, "normal", 0},
        {&either, "-1", 38},
        {&token, " page\tLayout ", 38},
        {&fixed, "2", 43},
    };
    run(cases, sizeof cases / sizeof *cases);
    std::string norm;
    EXPECT_EQ(validate(" a \t b\n", token, &norm), ELMX_VALUE_NOT_ENUMERATED);
    EXPECT_EQ(norm, "a b");
    c_binary bin;
    ASSERT_TRUE(bin.from_base64("AP8Q"));
    std::string hexed;
    bin.output_convert_to_hex(hexed);
    EXPECT_EQ(hexed, "00FF10");
}

} // namespace
