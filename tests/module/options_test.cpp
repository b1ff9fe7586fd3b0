// parseOptions: flags, the text left over, buffer size, separators and the
// boolean texts, over a table of inputs.
#include "sheetfile.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

namespace {

struct Case {
    const char *input;
    unsigned flags;
    const char *rest;
    int bufferSize; // -1: untouched
    int fieldSep;   // 0: untouched
    int decimalSep;
    const char *trueText;
    const char *falseText;
};

TEST(ParseOptions, Table) {
    const Case cases[] = {
        {"file.csv", 0, "file.csv", -1, 0, 0, "", ""},
        {"", 0, "", -1, 0, 0, "", ""},
        {"grow;noindex;file.xls", OPT_GROW | OPT_NOINDEX, "file.xls", -1, 0, 0, "", ""},
        {"NOINDEX;GROW;file.xls", OPT_GROW | OPT_NOINDEX, "file.xls", -1, 0, 0, "", ""},
        {"skiph;a", OPT_SKIPH, "a", -1, 0, 0, "", ""},
        {"skiph+;a", OPT_SKIPH | OPT_SKIPH_NEW, "a", -1, 0, 0, "", ""},
        {"partndx;a", OPT_PARTNDX, "a", -1, 0, 0, "", ""},
        {"PartIndex;a", OPT_PARTNDX, "a", -1, 0, 0, "", ""},
        {"grow a", 0, "grow a", -1, 0, 0, "", ""},
        {"skiph", 0, "skiph", -1, 0, 0, "", ""},
        {"bufsize=8;f", 0, "f", 8192, 0, 0, "", ""},
        {"bufsize=0;f", 0, "f", 2048, 0, 0, "", ""},
        {"bufsize=0x10;f", 0, "f", 16384, 0, 0, "", ""},
        {"bufsize=010;f", 0, "f", 8192, 0, 0, "", ""},
        {"bufsize=x", 0, "bufsize=x", -1, 0, 0, "", ""},
        {"bufsize=4grow;f", 0, "grow;f", 4096, 0, 0, "", ""},
        {"bufsize=99999999999;f", 0, "f", 1 << 30, 0, 0, "", ""},
        {"fsep=;;dsep=,;f", 0, "f", -1, ';', ',', "", ""},
        {"FSEP=\t;f", 0, "f", -1, '\t', 0, "", ""},
        {"dsep=,f", 0, "f", -1, 0, ',', "", ""},
        {"fsep=", 0, "fsep=", -1, 0, 0, "", ""},
        {"true=yes;false=no;f", 0, "f", -1, 0, 0, "yes", "no"},
        {"true=;f", 0, "f", -1, 0, 0, "", ""},
        {"true=yes", 0, "yes", -1, 0, 0, "", ""},
        {"false=0123456789012345678901234567890;f", 0, "f", -1, 0, 0, "",
         "0123456789012345678901234567890"},
        {"false=01234567890123456789012345678901;f", 0, "01234567890123456789012345678901;f", -1, 0,
         0, "", ""},
        {"grow;fsep=|;skiph;true=Y;bufsize=2;x.csv", OPT_GROW | OPT_SKIPH, "x.csv", 2048, '|', 0,
         "Y", ""},
    };
    for (const Case &c : cases) {
        const char *text = c.input;
        int bufferSize = -1, fsep = 0, dsep = 0;
        char t[32] = "", f[32] = "";
        unsigned flags = parseOptions(0, &text, &bufferSize, &fsep, &dsep, t, f);
        EXPECT_EQ(std::make_tuple(flags, std::string(text), bufferSize, fsep, dsep, std::string(t),
                                  std::string(f)),
                  std::make_tuple(c.flags, std::string(c.rest), c.bufferSize, c.fieldSep,
                                  c.decimalSep, std::string(c.trueText), std::string(c.falseText)))
            << c.input;
    }
}

} // namespace
