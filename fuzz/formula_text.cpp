// Arbitrary bytes as formula text (one character a byte, pairs of bytes
// above 0x7F joined into one wide character) through the parser.  A text
// that compiles prints from its tokens or fails with a message; printed
// text compiles again.
#include "book/tberror.h"
#include "formula/formula_parser.h"
#include "formula/formula_printer.h"
#include "support/fake_formula_book.h"

#include <cstdint>
#include <string>
#include <vector>

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::wstring text;
    for (size_t i = 0; i < size; ++i) {
        if (data[i] >= 0xF0 && i + 1 < size) {
            text.push_back(wchar_t(0x100 + (data[i] & 0x0F) * 256 + data[i + 1]));
            ++i;
        } else {
            text.push_back(wchar_t(data[i]));
        }
    }
    FakeFormulaBook book;
    book.refs = {{0, 0}, {0, 2}, {-1, -1}};
    FormulaParser parser;
    FormulaPrinter printer;
    std::vector<uint8_t> tokens;
    try {
        parser.compile(text, &book, tokens);
    } catch (const tberror &) {
        return 0;
    }
    if (tokens.size() > FormulaParser::kMaxTokens) __builtin_trap();
    std::wstring printed;
    try {
        printed = printer.print(tokens.data(), tokens.size(), &book);
    } catch (const tberror &) {
        return 0;
    }
    try {
        parser.compile(printed, &book, tokens);
    } catch (const tberror &) {}
    return 0;
}
