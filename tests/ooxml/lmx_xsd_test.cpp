// Simple-type validation, one table per family: numbers, dates and
// durations, and the binary, list, union, enumeration, pattern and length forms.
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ooxml/lmx/xsd_binary.h"
#include "ooxml/lmx/xsd_datetime.h"
#include "ooxml/lmx/xsd_validate.h"

using namespace lmx;

namespace {

// Texts that one spec answers with one code.
struct Case {
    const s_validation_spec *spec;
    int expect;
    std::vector<const char *> texts;
};

template <size_t N> void run(const Case (&cases)[N]) {
    for (size_t i = 0; i < N; ++i)
        for (const char *text : cases[i].texts)
            EXPECT_EQ(validate(text, *cases[i].spec), cases[i].expect)
                << "group " << i << ": " << text;
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
        {&dec, 0, {" -0012.5000 ", ".5", "5."}},
        {&dec, 35, {"1e3", "."}},
        {&money, 0, {"123.45", "1234.5"}},
        {&money, 27, {"123456"}},
        {&money, 18, {"1.234", "0.00100"}},
        {&i8, 0, {"-128", "127"}},
        {&i8, 36, {"128"}},
        {&i8, 37, {"-129"}},
        {&i8, 35, {"1.0"}},
        {&u64, 0, {"18446744073709551615"}},
        {&u64, 36, {"18446744073709551616"}},
        {&u64, 37, {"-1"}},
        {&big, 0, {"-123456789012345678901234567890"}},
        {&pos, 37, {"0"}},
        {&pos, 0, {"+7"}},
        {&dbl, 0, {"1.5E-3", "INF", "-INF", "NaN"}},
        {&dbl, 35, {"inf", "1e"}},
        {&pct, 0, {"99.9"}},
        {&pct, 36, {"100"}},
        {&pct, 37, {"-0.1", "NaN"}},
        {&flag, 0, {"true", " 0 "}},
        {&flag, 35, {"yes"}},
        {&range, 0, {"0"}},
        {&range, 37, {"-1"}},
        {&range, 36, {"11"}},
    };
    run(cases);
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
        {&dt,
         0,
         {"2024-02-29T23:59:59.125Z", "2024-01-01T24:00:00", "2024-01-01T12:00:00+14:00",
          "-0044-03-15T12:00:00"}},
        {&dt,
         35,
         {"2023-02-29T00:00:00", "2024-01-01T24:00:01", "2024-01-01T12:00:00+14:01", "2024-01-01",
          "0000-01-01T00:00:00"}},
        {&date, 35, {"1900-02-29", "02024-01-01"}},
        {&date, 0, {"2000-02-29-05:00", "12024-01-01"}},
        {&time, 0, {"13:20:00"}},
        {&time, 35, {"13:60:00"}},
        {&gy, 0, {"2024Z"}},
        {&gy, 35, {"24"}},
        {&gym, 35, {"2024-13"}},
        {&gym, 0, {"2024-12"}},
        {&gm, 0, {"--02"}},
        {&gm, 35, {"-02"}},
        {&gmd, 0, {"--02-29"}},
        {&gmd, 35, {"--04-31"}},
        {&gd, 0, {"---31"}},
        {&gd, 35, {"---32"}},
        {&dur, 0, {"P1Y2M3DT4H5M6.5S", "-PT0S"}},
        {&dur, 35, {"P", "PT", "P1D2Y", "P1.5D", "P1DT", "PT1H1D"}},
    };
    run(cases);
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
        {&hex, 0, {"0aFF"}},
        {&hex, 35, {"0aF", "0g"}},
        {&b64, 0, {"TWFu", "TW E=", "TQ=="}},
        {&b64, 35, {"TR==", "T===", "TWF"}},
        {&colour, 0, {"FF00ff00"}},
        {&colour, 22, {"FF00FF", "FF00FF0G"}},
        {&view, 0, {"  pageLayout "}},
        {&view, 38, {"page"}},
        {&sqref, 22, {"A1 $B$2:C3"}},
        {&sqref, 0, {" A1  B2 "}},
        {&sqref, 19, {"A1 B2 C3 D4"}},
        {&sqref, 20, {""}},
        {&name, 0, {"\xC3\xA9\xC3\xA9\xC3\xA9"}},
        {&name, 19, {"abcd"}},
        {&name, 20, {""}},
        {&either, 0, {"42", "normal"}},
        {&either, 38, {"-1"}},
        {&token, 38, {" page\tLayout "}},
        {&fixed, 43, {"2"}},
    };
    run(cases);
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
