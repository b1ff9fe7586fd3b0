// Fuzz target: the text-separated reader and writer over a host whose stream
// is the input.  The first byte picks the separators and the buffer size, the
// rest is the file.
#include "text_sheet.h"

#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

struct Stream {
    const uint8_t *data;
    size_t size;
    size_t pos;
    size_t written;
};
Stream g_stream;

long fuzzRead(qd_context *, void *buffer, long count) {
    size_t left = g_stream.size - g_stream.pos;
    size_t n = left < (size_t)count ? left : (size_t)count;
    if (n)
        memcpy(buffer, g_stream.data + g_stream.pos, n);
    g_stream.pos += n;
    return (long)n;
}

// The writer prints its output with "%s" only.
int fuzzPrint(qd_context *, const char *format, ...) {
    va_list ap;
    va_start(ap, format);
    const char *text = va_arg(ap, const char *);
    va_end(ap);
    size_t n = strlen(text);
    g_stream.written += n;
    return (int)n;
}

void fuzzDispatch(qd_context *, const char *, ...) {}

qd_host makeHost() {
    qd_host h;
    memset(&h, 0, sizeof h);
    h.read = fuzzRead;
    h.print = fuzzPrint;
    h.dispatchError = fuzzDispatch;
    return h;
}
const qd_host g_fuzzHost = makeHost();

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    g_host = &g_fuzzHost;
    uint8_t pick = size ? data[0] : 0;
    static const char kFieldSeps[] = ",;\t|";
    static const char kDecimalSeps[] = ".,";
    static const int kBufferSizes[] = {2048, 16, 3, 100};

    char buffer[2048];
    TextSheet s;
    memset(&s, 0, sizeof s);
    resetStore(&s);
    s.buffer = buffer;
    s.bufferSize = kBufferSizes[(pick >> 3) & 3];
    s.fieldSeparator = kFieldSeps[pick & 3];
    s.decimalSeparator = kDecimalSeps[(pick >> 2) & 1];
    strcpy(s.trueText, (pick & 0x20) ? "yes" : "TRUE");
    strcpy(s.falseText, "FALSE");
    s.realFormat = "%.15g";

    g_stream = Stream{size ? data + 1 : data, size ? size - 1 : 0, 0, 0};
    readTextStream(&s);
    if (s.lastRow < 4096 && s.lastCol < 4096) // keep sparse far cells cheap to write
        writeTextStream(&s);
    clearStore(&s);
    return 0;
}
