// Fuzz target: the text-separated reader and writer over the reference
// host, whose stream is the input.  The first byte picks the separators and
// the buffer size, the rest is the file.  The reader alone also splits the file under the tool's
// rules, fed whole and byte by byte, which must agree.
#include "csv_fields.h"
#include "refhost.h"
#include "text_sheet.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

// True when a stored text holds a line end, which the writer does not quote:
// such a store does not survive a second round.
bool hasLineEndText(const TextSheet *s) {
    for (int r = 0; r < s->rowCapacity; ++r) {
        TextPage *p = s->rows[r].cursor;
        while (p && p->lower) p = p->lower;
        for (; p; p = p->higher)
            for (int i = 0; i < TEXT_PAGE_COLUMNS; ++i)
                if (p->kinds[i] == CELL_STRING && strpbrk(p->values[i].text, "\r\n")) return true;
    }
    return false;
}

// Reads data into s and writes it back through the reference host: the
// input is its stream, and what the writer prints, with no stream open,
// collects in the context's output, which lands in *out.  False when the
// reading or the writing failed.
bool roundTrip(TextSheet *s, const uint8_t *data, size_t size, std::string *out, bool *lineEnds) {
    qdhost::Context ctx;
    s->context = &ctx;
    ctx.stream = size ? fmemopen(const_cast<uint8_t *>(data), size, "r") : fopen("/dev/null", "r");
    bool ok = readTextStream(s) == 0;
    fclose(ctx.stream);
    ctx.stream = nullptr;
    *lineEnds = hasLineEndText(s);
    // Far sparse cells are cheap to store but not to write out.
    // A number too long for the buffer stops the writing of its row, so
    // only a write without failure has to come back the same.
    if (ok && s->lastRow < 4096 && s->lastCol < 4096)
        ok = writeTextStream(s) == 0;
    else
        ok = false;
    clearStore(s);
    s->context = nullptr;
    *out = ctx.output;
    return ok;
}

// Fields and records of the reader as one text.
struct Collect {
    std::string out;
    void field(const char *text, size_t length) {
        out.append(text, length);
        out += '|';
    }
    void record(long line) { out += "@" + std::to_string(line) + "\n"; }
};

// The text split under the given rules, fed in blocks of `block` bytes.
std::string split(const CsvRules &rules, const uint8_t *data, size_t size, size_t block) {
    char buffer[8];
    CsvFields reader(rules, buffer, sizeof buffer);
    Collect sink;
    CsvFields::Status status = CsvFields::Ok;
    for (size_t at = 0; at < size && status == CsvFields::Ok; at += block)
        status = reader.feed(data + at, size - at < block ? size - at : block, sink);
    if (status == CsvFields::Ok) status = reader.finish(sink);
    return sink.out + "status " + std::to_string(status);
}

// Where the blocks end must not matter, under every caller's rules.
void checkBlocks(const uint8_t *data, size_t size) {
    CsvRules rules[3];
    rules[1].crEndsRecord = rules[1].openQuoteFails = true; // the tool's csv
    rules[2] = rules[1];                                    // the tool's tsv
    rules[2].separator = '\t';
    rules[2].quotes = false;
    rules[2].escapes = true;
    for (const CsvRules &r : rules)
        if (split(r, data, size, 1) != split(r, data, size, size ? size : 1)) abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    g_host = qdhost::hostTable();
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

    // What the writer gives back reads into the same store again: a second
    // round writes the same text.
    std::string first, second;
    bool lineEnds = false, again = false;
    const uint8_t *text = size ? data + 1 : data;
    size_t length = size ? size - 1 : 0;
    // A NUL byte cuts a field's text short, which no writer can restore.
    bool nul = length && memchr(text, 0, length) != nullptr;
    checkBlocks(text, length);
    if (!roundTrip(&s, text, length, &first, &lineEnds) || lineEnds || nul) return 0;
    if (!roundTrip(&s, reinterpret_cast<const uint8_t *>(first.data()), first.size(), &second,
                   &again))
        abort();
    if (second != first) abort();
    return 0;
}
