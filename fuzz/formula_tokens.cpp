// Arbitrary bytes as stored formula tokens through the printer: the first
// four bytes give the base cell of a shared formula (used when the first
// is odd), the rest are the tokens.  Every input prints or fails with a
// message.
#include "book/tberror.h"
#include "formula/formula_printer.h"
#include "support/fake_formula_book.h"

#include <cstdint>

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (size < 4) return 0;
    const bool relative = data[0] & 1;
    const int row = data[1] | data[2] << 8, col = data[3];
    FakeFormulaBook book;
    book.refs = {{0, 0}, {0, 2}, {-1, -1}};
    FormulaPrinter printer;
    try {
        printer.print(data + 4, size - 4, &book, relative, row, col);
    } catch (const tberror &) {}
    return 0;
}
