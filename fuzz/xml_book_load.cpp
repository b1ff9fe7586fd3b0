// Fuzz target: an Open XML book loaded from memory in both editions, its
// sheets visited, a sheet added and the book saved to memory, whether the
// load went well or not.
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "tabrix.h"
#include "tabrix/IBookT.h"
#include "ooxml/xml_book_proxy.h"

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    for (bool strict : {false, true}) {
        XMLBookProxy<char> book;
        if (strict) book.switchToStrictMode();
        book.loadRaw(reinterpret_cast<const char *>(data), unsigned(size));
        for (int i = 0; i < book.sheetCount(); ++i) {
            book.sheetType(i);
            if (ISheetT<char> *sheet = book.getSheet(i)) sheet->name();
        }
        book.addSheet("fuzz", nullptr);
        const char *bytes = nullptr;
        unsigned length = 0;
        book.saveRaw(&bytes, &length);
    }
    return 0;
}
