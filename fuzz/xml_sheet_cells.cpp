// Arbitrary bytes as a worksheet of a book with a small shared string
// table, in both editions.  A sheet that binds is read cell by cell over
// its extents (capped at a corner of 512 by 512), edited, saved, and must
// load again.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "support/xml_sheet_fake.h"

using namespace tabrix;

namespace {

const char kTable[] = "<sst xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\">"
                      "<si><t>a</t></si><si><r><t>b</t></r></si></sst>";

// Each cell by its type, so that failures are the exception; the first
// row by every read, failures and all.
void readAll(ISheetT<char> &sheet) {
    const int rowEnd = std::min(sheet.lastRow(), sheet.firstRow() + 512);
    const int colEnd = std::min(sheet.lastCol(), sheet.firstCol() + 512);
    for (int r = sheet.firstRow(); r < rowEnd; ++r)
        for (int c = sheet.firstCol(); c < colEnd; ++c) {
            IFormatT<char> *format = nullptr;
            const bool every = r == sheet.firstRow() && c < sheet.firstCol() + 16;
            const CellType type = sheet.cellType(r, c);
            if (every || type == CELLTYPE_NUMBER) sheet.readNum(r, c, &format);
            if (every || type == CELLTYPE_STRING) sheet.readStr(r, c, &format);
            if (every || type == CELLTYPE_BOOLEAN) sheet.readBool(r, c, &format);
            if (every || type == CELLTYPE_BLANK) sheet.readBlank(r, c, &format);
            if (every || type == CELLTYPE_ERROR) sheet.readError(r, c);
            if (every || sheet.isFormula(r, c)) sheet.readFormula(r, c, &format);
            if (type == CELLTYPE_NUMBER) sheet.isDate(r, c);
        }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    for (binding::e_edition edition : {binding::TRANSITIONAL, binding::STRICT}) {
        xmlfake::Book<char> book(edition);
        if (edition == binding::TRANSITIONAL)
            book.sst = std::make_unique<SharedStrings>(edition, kTable, std::strlen(kTable));
        std::unique_ptr<xmlfake::Sheet<char>> sheet;
        try {
            sheet = std::make_unique<xmlfake::Sheet<char>>(book, bytes);
        } catch (const tberror &) {
            continue;
        }
        readAll(*sheet);
        book.r1c1 = true;
        readAll(*sheet);
        const int r = sheet->firstRow(), c = sheet->firstCol();
        sheet->copyCell(r, c, r + 1, c + 1);
        sheet->writeNum(r, c, 1, nullptr);
        sheet->writeFormula(r + 1, c, "SUM(R1C1;1)", nullptr);
        sheet->clear(r, r + 2, c, c + 2);
        std::string out;
        try {
            out = sheet->save();
        } catch (const tberror &) {
            std::abort();
        }
        xmlfake::Sheet<char> again(book, out);
        readAll(again);
    }
    return 0;
}
