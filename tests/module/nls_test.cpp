// The message library: paths convert from UTF-8 to the encoding of the C
// locale, or are refused when they have no form there or do not fit.
#include "qdnls.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

TEST(Nls, PathConversion) {
    struct Case {
        const char *locale;
        const char *in;
        size_t size;
        int result;
        std::string out;
    };
    const Case cases[] = {
        {"C", "data/plain.xls", 64, 14, "data/plain.xls"},
        {"C", "caf\xc3\xa9.xls", 64, -1, "caf\xc3\xa9.xls"}, // no ASCII form: kept, refused
        {"C", "long-name.xls", 5, -1, "long"},               // does not fit
        {"C.UTF-8", "caf\xc3\xa9.xls", 64, 9, "caf\xc3\xa9.xls"},
        {"C.UTF-8", "x", 1, -1, ""},
    };
    std::string saved = std::setlocale(LC_ALL, nullptr);
    for (const Case &c : cases) {
        if (!std::setlocale(LC_ALL, c.locale)) continue;
        char out[64];
        EXPECT_EQ(QDNLSconvstrto(QDNLS_ENC_SYSTEM, c.in, out, c.size), c.result)
            << c.locale << " " << c.in;
        EXPECT_EQ(std::string(out), c.out) << c.locale << " " << c.in;
    }
    std::setlocale(LC_ALL, saved.c_str());
    char out[8];
    EXPECT_EQ(QDNLSconvstrto(QDNLS_ENC_SYSTEM, nullptr, out, sizeof out), -1);
}
