// Arbitrary bytes as a shared string table, in both editions.  A table
// that loads gives every item, takes a new text, saves, and must load
// again with the same items.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "book/tberror.h"
#include "ooxml/sheet/shared_strings.h"

using namespace tabrix;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const char *bytes = reinterpret_cast<const char *>(data);
    for (binding::e_edition edition : {binding::TRANSITIONAL, binding::STRICT}) {
        std::unique_ptr<SharedStrings> sst;
        try {
            sst = std::make_unique<SharedStrings>(edition, bytes, size);
        } catch (const tberror &) {
            continue;
        }
        sst->addString(L"new\r_x0041_ text");
        std::string out;
        sst->save(out);
        SharedStrings again(edition, out.data(), out.size());
        if (again.size() != sst->size()) std::abort();
        for (uint32_t i = 0; i < sst->size(); ++i)
            if (again.stringByIndex(i) != sst->stringByIndex(i)) std::abort();
    }
    return 0;
}
