// Fuzz target: an archive read from memory, every member extracted.
#include <cstddef>
#include <cstdint>

#include "zip/zip_archive.h"
#include "zip/zip_exception.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    tabrix::CZipArchive zip;
    tabrix::CZipMemFile mem(data, size);
    try {
        zip.Open(mem, tabrix::CZipArchive::zipOpenReadOnly, false);
        for (size_t i = 0; i < zip.GetCount() && i < 256; ++i) {
            tabrix::CZipMemFile out;
            zip.ExtractFile(i, out);
        }
        zip.Close();
    } catch (const tabrix::CZipException &) {}
    return 0;
}
