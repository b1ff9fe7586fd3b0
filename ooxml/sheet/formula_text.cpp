// Separator exchange, reference shifting and range parsing of formula texts.
#include "ooxml/sheet/formula_text.h"

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "book/excel_util.h"
#include "ooxml/binding/parts/cell.h"
#include "ooxml/sheet/xml_text.h"

namespace tabrix {

namespace {

const int kRows = 1048576;
const int kCols = 16384;

bool isTokenChar(wchar_t c) { return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '$'; }

// The token moved, or as it was when it is no address.
std::wstring shiftToken(const std::wstring &token, int rowDelta, int colDelta) {
    const wchar_t first = token.front(), last = token.back();
    if (!((first >= 'A' && first <= 'Z') || first == '$') || !(last >= '0' && last <= '9'))
        return token;
    int row = -1, col = -1;
    bool rowRelative = false, colRelative = false;
    ExcelUtil::addrToRowCol(token.c_str(), &row, &col, &rowRelative, &colRelative);
    if (row < 0 || col < 0 || row >= kRows || col >= kCols) return token;
    if (rowRelative) row += rowDelta;
    if (colRelative) col += colDelta;
    if (row < 0 || col < 0 || row >= kRows || col >= kCols) return L"#REF!";
    return ExcelUtil::rowColToAddr(row, col, rowRelative, colRelative);
}

} // namespace

template <class S>
void exchangeSeparators(S &text, typename S::value_type from, typename S::value_type to) {
    typename S::value_type quote = 0;
    for (auto &c : text) {
        if (quote) {
            if (c == quote) quote = 0;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == from) {
            c = to;
        }
    }
}

namespace {

// The bytes exchangePlainSeparators stops at: controls, "_", quotes, the
// separators, and the bytes of characters beyond ASCII.
struct StopBytes {
    bool stop[256] = {};
    StopBytes() {
        for (int b = 0; b < 256; ++b)
            stop[b] =
                b < 0x20 || b >= 0x80 || b == '_' || b == '"' || b == '\'' || b == ',' || b == ';';
    }
};
const StopBytes kStop;

// The walk of exchangePlainSeparators over the bytes it stops at.
struct SeparatorWalk {
    char from, to;
    char quote = 0;
    bool ascii = true;
    // False when the byte can't stay as it is in XML.
    bool take(unsigned char b, char &out) {
        if (b >= 0x80) {
            ascii = false; // no byte of a longer character is a separator or a quote
        } else if ((b < 0x20 && b != '\t' && b != '\n') || b == '_') {
            return false;
        } else if (quote) {
            if (b == quote) quote = 0;
        } else if (b == '"' || b == '\'') {
            quote = char(b);
        } else if (b == static_cast<unsigned char>(from)) {
            out = to;
        }
        return true;
    }
};

} // namespace

bool exchangePlainSeparators(const char *in, size_t size, char *out, char from, char to) {
    SeparatorWalk walk{from, to};
    size_t i = 0;
#if defined(__SSE2__)
    // Sixteen bytes copied at once, and only those it stops at looked at.
    // A signed compare with 0x20 takes the controls and the bytes from 0x80.
    const __m128i low = _mm_set1_epi8(0x20), under = _mm_set1_epi8('_'), dq = _mm_set1_epi8('"'),
                  sq = _mm_set1_epi8('\''), comma = _mm_set1_epi8(','), semi = _mm_set1_epi8(';');
    for (; i + 16 <= size; i += 16) {
        const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i *>(in + i));
        _mm_storeu_si128(reinterpret_cast<__m128i *>(out + i), v);
        const __m128i stops = _mm_or_si128(
            _mm_or_si128(_mm_cmplt_epi8(v, low), _mm_cmpeq_epi8(v, under)),
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, dq), _mm_cmpeq_epi8(v, sq)),
                         _mm_or_si128(_mm_cmpeq_epi8(v, comma), _mm_cmpeq_epi8(v, semi))));
        for (unsigned m = unsigned(_mm_movemask_epi8(stops)); m; m &= m - 1) {
            const size_t k = i + size_t(__builtin_ctz(m));
            if (!walk.take(static_cast<unsigned char>(in[k]), out[k])) return false;
        }
    }
#endif
    for (; i < size; ++i) {
        const unsigned char b = static_cast<unsigned char>(in[i]);
        out[i] = char(b);
        if (kStop.stop[b] && !walk.take(b, out[i])) return false;
    }
    return walk.ascii || isPlainXmlText(std::string_view(out, size));
}

template void exchangeSeparators(std::wstring &, wchar_t, wchar_t);
template void exchangeSeparators(std::string &, char, char);

std::wstring shiftFormula(const std::wstring &text, int rowDelta, int colDelta) {
    std::wstring out;
    out.reserve(text.size() + 8);
    bool literal = false;
    size_t i = 0;
    while (i < text.size()) {
        const wchar_t c = text[i];
        if (literal || c == '"') {
            if (c == '"') literal = !literal;
            out += c;
            ++i;
            continue;
        }
        if (!isTokenChar(c)) {
            out += c;
            ++i;
            continue;
        }
        size_t end = i;
        while (end < text.size() && isTokenChar(text[end])) ++end;
        const std::wstring token = text.substr(i, end - i);
        // A function name, or the tail of a longer word, isn't an address.
        const bool word =
            (end < text.size() && (text[end] == '(' || (text[end] >= 'a' && text[end] <= 'z'))) ||
            (i > 0 && ((text[i - 1] >= 'a' && text[i - 1] <= 'z') || text[i - 1] == '_'));
        out += word ? token : shiftToken(token, rowDelta, colDelta);
        i = end;
    }
    return out;
}

bool parseRef(const std::string &ref, int &rowFirst, int &colFirst, int &rowLast, int &colLast) {
    const size_t colon = ref.find(':');
    uint32_t r1 = 0, c1 = 0, r2 = 0, c2 = 0;
    if (!binding::parse_cell_ref(std::string_view(ref).substr(0, colon), r1, c1)) return false;
    if (colon == std::string::npos) {
        r2 = r1;
        c2 = c1;
    } else if (!binding::parse_cell_ref(std::string_view(ref).substr(colon + 1), r2, c2)) {
        return false;
    }
    rowFirst = int(r1);
    colFirst = int(c1);
    rowLast = int(r2);
    colLast = int(c2);
    return true;
}

} // namespace tabrix
