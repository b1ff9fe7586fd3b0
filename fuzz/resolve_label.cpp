// Fuzz target: range labels with their options, resolved over a small fixed
// book.  The first byte chooses the file's state (read or write, header
// options); the rest is the label.
#include "support/tin_fake_sheet.h"
#include "refhost.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    g_host = qdhost::hostTable();
    unsigned fileFlags = 0;
    std::string label;
    if (data && size > 0) {
        if (data[0] & 1) fileFlags |= OPT_WRITING;
        if (data[0] & 2) fileFlags |= OPT_SKIPH;
        if (data[0] & 4) fileFlags |= OPT_GROW;
        if (data[0] & 8) fileFlags |= OPT_SKIPH | OPT_SKIPH_NEW;
        label.assign(reinterpret_cast<const char *>(data + 1), size - 1);
    }
    tin::FakeBook book;
    book.maxSheets = 16;
    if (!(size > 0 && (data[0] & 16))) tin::fillStandardBook(book);
    tin::FakeFile file(&book, fileFlags);
    qdhost::Context ctx;
    const char *text = label.c_str(); // stops at an embedded NUL, as a host text would
    unsigned flags = parseOptions(fileFlags, &text, nullptr, nullptr, nullptr, nullptr, nullptr);
    RangeSpec spec;
    if (resolveRange(&ctx, flags, &file.file, &spec, text) == 0) {
        // Every column of the map must lie inside the resolved rectangle.
        int width = spec.lastCol - spec.firstCol + 1;
        for (int k = 0; k < spec.columnCount; k++)
            if (spec.columnMap[k] < 0 || spec.columnMap[k] >= width) abort();
        if (spec.firstRow < 0 || spec.firstRow > spec.lastRow || spec.columnCount < 1) abort();
        qd_value v;
        readCell(&ctx, &spec, QD_STRING, &v, 0, spec.columnMap[0]);
    } else if (ctx.errors.empty()) {
        abort(); // a failure always says why
    }
    free(spec.columnMap);
    return 0;
}
