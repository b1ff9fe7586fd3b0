// Loads arbitrary bytes as a binary workbook.  Bytes that start like a
// compound file are taken as the whole file; anything else becomes the
// workbook stream of a new container, so that the record reading is
// reached quickly.  A book that loads is saved and loaded again.
#include "biff/book_impl.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

using namespace tabrix;

namespace {
const uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string file;
    if (data && size >= 8 && std::memcmp(data, kSignature, 8) == 0)
        file.assign(reinterpret_cast<const char *>(data), size);
    else
        file = fuzzinput::container(data ? std::vector<uint8_t>(data, data + size)
                                         : std::vector<uint8_t>());

    auto *book = new BinaryBookT<char>();
    book->setLocale("UTF-8");
    if (book->loadRaw(file.data(), unsigned(file.size()))) {
        const char *out = nullptr;
        unsigned outSize = 0;
        if (book->saveRaw(&out, &outSize)) {
            std::string copy(out, outSize);
            auto *again = new BinaryBookT<char>();
            again->setLocale("UTF-8");
            // What we wrote must load again.
            if (!again->loadRaw(copy.data(), unsigned(copy.size()))) {
                std::fprintf(stderr, "a saved book does not load again: %s\n",
                             again->errorMessage());
                std::abort();
            }
            if (again->sheetCount() != book->sheetCount()) std::abort();
            again->release();
        }
    } else if (book->sheetCount() != 0 || book->formatSize() != 21) {
        // A failed load leaves a new book.
        std::abort();
    }
    book->release();
    return 0;
}
