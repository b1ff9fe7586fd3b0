// Fuzz target: the option parser over any text, with all outputs and with
// none; the text left over must lie inside the input.
#include "sheetfile.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::string text(reinterpret_cast<const char *>(data), size);
    const char *begin = text.c_str();
    const char *end = begin + strlen(begin);

    const char *p = begin;
    int bufferSize = 0, fsep = 0, dsep = 0;
    char t[32], f[32];
    t[0] = f[0] = '\0';
    parseOptions(0, &p, &bufferSize, &fsep, &dsep, t, f);
    if (p < begin || p > end || strlen(t) > 31 || strlen(f) > 31 || bufferSize < 0 ||
        bufferSize > (1 << 30))
        abort();

    p = begin;
    parseOptions(0, &p, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (p < begin || p > end) abort();
    return 0;
}
