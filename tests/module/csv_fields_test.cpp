// The reader of separated text under the driver's and the tool's rules.
#include "csv_fields.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Collect {
    std::string out;
    void field(const char *text, size_t length) { out += "[" + std::string(text, length) + "]"; }
    void record(long line) { out += "@" + std::to_string(line) + " "; }
};

// Fields as "[a][b]@line ", fed one byte at a time, then the status.
std::string split(const CsvRules &rules, const std::string &text, size_t limit = 64) {
    char buffer[64];
    CsvFields reader(rules, buffer, limit);
    Collect sink;
    CsvFields::Status status = CsvFields::Ok;
    for (size_t i = 0; i < text.size() && status == CsvFields::Ok; ++i)
        status = reader.feed(reinterpret_cast<const unsigned char *>(&text[i]), 1, sink);
    if (status == CsvFields::Ok) status = reader.finish(sink);
    static const char *const kNames[] = {"", "too long", "open quote"};
    return sink.out + kNames[status];
}

} // namespace

TEST(CsvFields, EachCallersRules) {
    CsvRules driver, csv, tsv;
    driver.separator = ';';
    csv.crEndsRecord = csv.openQuoteFails = true;
    tsv = csv;
    tsv.separator = '\t';
    tsv.quotes = false;
    tsv.escapes = true;
    struct Case {
        const CsvRules *rules;
        const char *text;
        const char *expect;
    };
    const Case cases[] = {
        {&driver, "a;\"b;\"\"c\"\"\"x\r\nd", "[a][b;\"c\"x]@1 [d]@2 "},
        {&driver, "a\rb\n\"q\r\"\n", "[a\rb]@1 [q]@2 "}, // a CR before LF is dropped, even quoted
        {&driver, "\"open\nquote", "[open\nquote]@1 "},
        {&csv, "a,\"b\r\n,c\"\r\nd\re\n", "[a][b\r\n,c]@1 [d]@3 [e]@3 "},
        {&csv, "\"\"x,\"a\"b\"", "[x][ab\"]@1 "},
        {&csv, "a\n\"open", "[a]@1 open quote"},
        {&tsv, "a\\tb\t\\q\\\\\"c\\", "[a\tb][\\q\\\"c\\]@1 "},
        {&tsv, "x\\n\r\n\r\ny", "[x\n]@1 []@2 [y]@3 "},
    };
    for (const Case &c : cases) EXPECT_EQ(split(*c.rules, c.text), c.expect) << c.text;
    // A field may hold limit - 1 bytes; one more is too long, also at the end.
    EXPECT_EQ(split(csv, "abc,de", 4), "[abc][de]@1 ");
    EXPECT_EQ(split(csv, "abcd", 4), "too long");
    EXPECT_EQ(split(tsv, "ab\\x", 4), "too long");
}
