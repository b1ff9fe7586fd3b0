// Byte classes of XML text, one table lookup per byte.  Bytes above 127 are
// parts of UTF-8 sequences, already checked when the document was opened,
// and count as name characters.
#pragma once

#include <cstdint>

namespace lmx {
namespace chars {

enum : uint8_t {
    SPACE = 1,      // blank, tab, line feed, carriage return
    NAME_START = 2, // letter, "_", ":", anything above 127
    NAME = 4,       // a name start, digit, ".", "-"
    TEXT_STOP = 8,  // "<", "&", "\r", "]": ends a plain run of text
    ATTR_STOP = 16, // "<", "&", "\t", "\n", "\r", quotes: ends a plain attribute run
    COLON = 32,     // ":", so a name scan learns whether it holds a prefix
};

struct table {
    uint8_t c[256];
    constexpr table() : c() {
        for (int i = 0; i < 256; ++i) {
            uint8_t v = 0;
            bool letter = (i >= 'a' && i <= 'z') || (i >= 'A' && i <= 'Z');
            if (i == ' ' || i == '\t' || i == '\n' || i == '\r') v |= SPACE;
            if (letter || i == '_' || i == ':' || i >= 128) v |= NAME_START | NAME;
            if ((i >= '0' && i <= '9') || i == '.' || i == '-') v |= NAME;
            if (i == '<' || i == '&' || i == '\r' || i == ']') v |= TEXT_STOP;
            if (i == '<' || i == '&' || i == '\t' || i == '\n' || i == '\r' || i == '"' ||
                i == '\'')
                v |= ATTR_STOP;
            if (i == ':') v |= COLON;
            c[i] = v;
        }
    }
};

inline constexpr table k_table{};

inline bool is(char ch, uint8_t cls) {
    return (k_table.c[static_cast<unsigned char>(ch)] & cls) != 0;
}
inline bool is_space(char ch) { return is(ch, SPACE); }
inline uint8_t cls(char ch) { return k_table.c[static_cast<unsigned char>(ch)]; }

// Equality of two short names, without a library call.
inline bool same(const char *a, size_t na, const char *b, size_t nb) {
    if (na != nb) return false;
    for (size_t i = 0; i < na; ++i)
        if (a[i] != b[i]) return false;
    return true;
}

} // namespace chars
} // namespace lmx
