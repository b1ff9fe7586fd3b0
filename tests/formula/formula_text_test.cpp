// Formula text to tokens and back: the round trips, the token bytes that
// other readers depend on, and every message of the parser and printer.
#include "book/tberror.h"
#include "formula/formula_parser.h"
#include "formula/formula_printer.h"
#include "formula/func_map.h"
#include "formula/ptg.h"
#include "support/fake_formula_book.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace tabrix;

namespace {

std::string hex(const std::vector<uint8_t> &v) {
    static const char *d = "0123456789ABCDEF";
    std::string s;
    for (uint8_t b : v) {
        if (!s.empty()) s += ' ';
        s += d[b >> 4];
        s += d[b & 15];
    }
    return s;
}

std::string narrow(const std::wstring &w) { return std::string(w.begin(), w.end()); }

// The text that comes back, or the message of the failure.
std::string roundTrip(const std::wstring &text, std::vector<uint8_t> *tokens = nullptr) {
    FakeFormulaBook book;
    FormulaParser parser;
    FormulaPrinter printer;
    std::vector<uint8_t> out;
    try {
        parser.compile(text, &book, out);
        if (tokens) *tokens = out;
        return narrow(printer.print(out.data(), out.size(), &book));
    } catch (const tberror &e) {
        return std::string("! ") + e.what();
    }
}

std::string printed(const std::vector<uint8_t> &tokens, bool relative = false, int row = 0,
                    int col = 0) {
    FakeFormulaBook book;
    book.refs = {{0, 0}, {1, 2}, {-1, -1}};
    try {
        return narrow(
            FormulaPrinter().print(tokens.data(), tokens.size(), &book, relative, row, col));
    } catch (const tberror &e) {
        return std::string("! ") + e.what();
    }
}

} // namespace

TEST(FormulaText, RoundTripsAndMessages) {
    struct Case {
        const wchar_t *text;
        const char *back;  // text printed, or "! message"
        const char *bytes; // token bytes, when they matter
    };
    const Case cases[] = {
        {L"=1 + 2*3", "1+2*3", "1E 01 00 1E 02 00 1E 03 00 05 03"},
        {L"(1+2)*3", "(1+2)*3", nullptr},
        {L"A1>=B1", "A1>=B1", "44 00 00 00 C0 44 00 00 01 C0 0C"},
        {L"A1<>B1", "A1<>B1", "44 00 00 00 C0 44 00 00 01 C0 0E"},
        {L"A1<=B1", "A1<=B1", nullptr},
        {L"-A1^2", "-A1^2", "44 00 00 00 C0 13 1E 02 00 07"},
        {L"2^-1", "2^-1", nullptr},
        {L"5%", "5%", nullptr},
        // After "%" a "+" is taken for unary plus: one operand too many.
        {L"5%+1", "! can't build infix formula string", "1E 05 00 1E 01 00 12 14"},
        {L"1.5+0.1+0.0000001+123456789012", "1.5+0.1+0.0000001+123456789012", nullptr},
        {L"65535+65536", "65535+65536", nullptr},
        {L"\"a, b\"&\"say \"\"hi\"\"\"", "\"a, b\"&\"say \"\"hi\"\"\"", nullptr},
        {L"\"it's\"&A1", "\"it's\"&A1", nullptr},
        {L"SUM(A1:B2, $C$3)", "SUM(A1:B2;$C$3)",
         "25 00 00 01 00 00 C0 01 C0 24 02 00 02 00 42 02 04 00"},
        {L"$A$1+A$1+$A1", "$A$1+A$1+$A1", nullptr},
        {L"IF(A1>0;\"pos\";\"neg\")", "IF(A1>0;\"pos\";\"neg\")", nullptr},
        {L"TODAY()", "TODAY()", "19 01 00 00 41 DD 00"},
        {L"PI()*2", "PI()*2", "42 00 13 00 1E 02 00 05"},
        {L"OFFSET(A1,1,1)", "OFFSET(A1;1;1)", "24 00 00 00 C0 1E 01 00 1E 01 00 22 03 4E 00"},
        {L"SUMPRODUCT(A1:A3,B1:B3)", "SUMPRODUCT(A1:A3;B1:B3)",
         "65 00 00 02 00 00 C0 00 C0 65 00 00 02 00 01 C0 01 C0 42 02 E4 00"},
        {L"LOG10(100)+ATAN2(1,2)+DAYS360(A1,A2)", "LOG10(100)+ATAN2(1;2)+DAYS360(A1;A2)", nullptr},
        {L"ROUND(AVERAGE(A1:A3),MAX(1,2))", "ROUND(AVERAGE(A1:A3);MAX(1;2))", nullptr},
        {L"Sheet1!A1+'My Sheet'!$B$2", "Sheet1!A1+'My Sheet'!$B$2", nullptr},
        {L"SUM('My Sheet:it''s'!A1:B2)", "SUM('My Sheet:it''s'!A1:B2)", nullptr},
        {L"Nowhere!A1", "#REF!A1", nullptr},
        {L"TRUE+FALSE*1", "TRUE+FALSE*1", nullptr},
        {L"1+FALSE", "! error: function parentheses not found", nullptr},
        {L"#N/A", "#N/A", "1C 2A"},
        {L"#REF!+#VALUE!", "#REF!+#VALUE!", nullptr},
        {L"", "! can't build infix formula string", ""},
        // The parser's messages.
        {L"1)", "! error in formula", nullptr},
        {L"sum(A1)", "! incorrect token in formula", nullptr},
        {L"SUM(\"A1\")", "! incorrect token in formula", nullptr},
        {L"SUMX2PY2(A1:A2,B1:B2)", "! incorrect token in formula", nullptr},
        {L"A1:B2 C3:D4", "! incorrect token in formula", nullptr},
        {L"#DIV/0!+1", "! incorrect token in formula", nullptr},
        {L"PI", "! error: function parentheses not found", nullptr},
        {L"TRUE", "! error: function parentheses not found", nullptr},
        {L"SUM(1", "! error: function parentheses not found", nullptr},
        {L"PI+1", "! error: function name without open parenthesis", nullptr},
        {L"IW1", "! Column is out of range", nullptr},
        {L"A0", "! Row is out of range", nullptr},
        {L"A65537", "! Row is out of range", nullptr},
        {L"A99999999999", "! MakeFormula::isReference: can't convert string to number", nullptr},
    };
    for (const Case &c : cases) {
        std::vector<uint8_t> tokens;
        EXPECT_EQ(roundTrip(c.text, &tokens), c.back) << narrow(c.text);
        if (c.bytes) {
            EXPECT_EQ(hex(tokens), c.bytes) << narrow(c.text);
        }
    }
    // Limits: a string constant of 256 characters, a text too long for a
    // record.
    EXPECT_EQ(roundTrip(L"\"" + std::wstring(256, L'x') + L"\""),
              "! a string in a formula can't be longer than 255 characters");
    EXPECT_EQ(roundTrip(L"\"" + std::wstring(255, L'x') + L"\"").size(), 257u);
    std::wstring sum = L"1";
    for (int i = 0; i < 1400; ++i) sum += L"+1.5";
    EXPECT_EQ(roundTrip(sum), "! formula is too long for a record");
    EXPECT_EQ(roundTrip(std::wstring(8193, L'1')),
              "! formula is too long: more than 8192 characters");
}

TEST(FormulaText, PrinterOfStoredTokens) {
    struct Case {
        std::vector<uint8_t> tokens;
        const char *text;
    };
    const Case cases[] = {
        // No parenthesis tokens: none printed.
        {{0x44, 0, 0, 0, 0xC0, 0x44, 0, 0, 1, 0xC0, 0x03, 0x44, 0, 0, 2, 0xC0, 0x05}, "A1+B1*C1"},
        // Attribute tokens vanish; the sum attribute is SUM of one argument.
        {{0x25, 0, 0, 1, 0, 0, 0xC0, 0, 0xC0, 0x19, 0x10, 0, 0, 0x19, 0x01, 0, 0}, "SUM(A1:A2)"},
        {{0x1E, 1, 0, 0x16, 0x42, 2, 1, 0}, "IF(1;MISS)"},
        {{0x1C, 0x07}, "#DIV/0!"},
        {{0x17, 3, 1, 'a', 0, '"', 0, 'b', 0}, "\"a\"\"b\""},
        {{0x1F, 0, 0, 0, 0, 0, 0, 0xF0, 0xBF}, "-1"},
        {{0x21, 0x18, 0}, "! toInfix error: incorrect function expression"},
        {{0x1E, 1, 0, 0x21, 0x18, 0}, "ABS(1)"},
        {{0x43, 1, 0, 0, 0}, "Rate"},
        {{0x43, 2, 0, 0, 0}, "?"},
        {{0x5A, 1, 0, 4, 0, 0x01, 0x80}, "'My Sheet:it''s'!$B5"},
        {{0x3B, 2, 0, 0, 0, 1, 0, 0, 0xC0, 1, 0xC0}, "#REF!A:B"},
        {{0x4B, 0, 0, 0, 0, 0, 0, 0, 0}, "#REF!"},
        // Shared formula seen from (5, 2): one row up, one column right.
        {{0x4C, 0xFF, 0xFF, 0x01, 0xC0}, "D5"},
        {{0x2D, 0xFF, 0xFF, 0, 0, 0xFF, 0xFF, 0x00, 0x40}, "B5:C$1"},
        // Messages.
        {{}, "! can't build infix formula string"},
        {{0x1E, 1, 0, 0x1E, 2, 0}, "! can't build infix formula string"},
        {{0x03}, "! toInfix error: expected two operands for binary operator"},
        {{0x13}, "! toInfix error: incorrect unary minus expression"},
        {{0x12}, "! toInfix error: incorrect unary plus expression"},
        {{0x14}, "! toInfix error: incorrect percent expression"},
        {{0x15}, "! toInfix error: incorrect brackets"},
        {{0x00}, "! can't recognize formula block: unknown ptg"},
        {{0x9F}, "! can't recognize formula block: unknown ptg"},
        {{0x18, 0x99}, "! unknown Ptg 0x18"},
        {{0x19, 0x99}, "! unknown Ptg 0x19"},
        {{0x1F, 1, 2}, "! GetFormula move1 error"},
        {{0x17, 5, 0, 'a'}, "! GetFormula move1 error"},
    };
    for (const Case &c : cases) {
        const bool shared = c.tokens.size() > 2 && (c.tokens[0] == 0x4C || c.tokens[0] == 0x2D);
        EXPECT_EQ(printed(c.tokens, shared, 5, 2), c.text) << hex(c.tokens);
    }
}

TEST(FormulaText, FunctionTableAndArgumentCounts) {
    const FuncMap &m = FuncMap::instance();
    EXPECT_EQ(m.size(), 371u);
    int fixed = -1;
    EXPECT_STREQ(m.name(255, &fixed), L"?");
    EXPECT_EQ(fixed, 0);
    EXPECT_STREQ(m.name(337, &fixed), L"POWER");
    EXPECT_EQ(fixed, 2);
    EXPECT_EQ(m.code(L"sum"), 255);
    EXPECT_EQ(m.codeRef(L"SUMIF"), (uint64_t(5) << 32) | 345);
    EXPECT_EQ(m.codeRef(L"CHOOSE") >> 32, FuncMap::kAllButFirst);
    const std::pair<const wchar_t *, int> counts[] = {
        {L"(1,2)", 2},     {L"()", 0},        {L"(1,)", 2},       {L"(,1)", 1}, {L"(,)", 1},
        {L"((1,2),3)", 2}, {L"(\"a,b\")", 1}, {L"('x,y'!A1)", 1}, {L" (1)", 1}};
    for (const auto &c : counts) EXPECT_EQ(getFuncParamCount(c.first), c.second) << narrow(c.first);
    EXPECT_THROW(getFuncParamCount(L"x(1)"), tberror);
    EXPECT_THROW(getFuncParamCount(L"(1"), tberror);
    std::vector<uint8_t> b;
    RgceLoc(0, 255, true, true).write(b);
    EXPECT_EQ(hex(b), "00 00 FF C0");
    EXPECT_THROW(RgceLoc(0, 256, true, true), tberror);
    // The reverse Polish form marks by-reference operands.
    EXPECT_EQ(narrow(FormulaParser().toReversePolish(L"ROW(A1)+COUNTIF(B1:B2,C1)")),
              "A1R ROW1F B1:B2 C1 COUNTIF2F +");
}
