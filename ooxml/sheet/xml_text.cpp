// Escaping of cell texts: see xml_text.h.
#include "ooxml/sheet/xml_text.h"

#include <cstdint>

#include "ooxml/lmx/xml_encoding.h"

namespace tabrix {

namespace {

const char kHex[] = "0123456789ABCDEF";

int hexValue(wchar_t c) {
    if (c >= '0' && c <= '9') return int(c - '0');
    if (c >= 'a' && c <= 'f') return int(c - 'a' + 10);
    if (c >= 'A' && c <= 'F') return int(c - 'A' + 10);
    return -1;
}

// Whether `s` at `i` starts a "_xHHHH_" sequence.
template <class S> bool isEscape(const S &s, size_t i) {
    if (i + 7 > s.size() || s[i] != '_' || s[i + 1] != 'x' || s[i + 6] != '_') return false;
    for (size_t k = 2; k < 6; ++k)
        if (hexValue(wchar_t(s[i + k])) < 0) return false;
    return true;
}

void appendEscape(uint32_t unit, std::string &out) {
    out += "_x";
    for (int shift = 12; shift >= 0; shift -= 4) out += kHex[(unit >> shift) & 0xF];
    out += '_';
}

void appendUnits(uint32_t cp, std::wstring &out) {
    if (cp < 0x10000) {
        out += wchar_t(cp);
    } else {
        cp -= 0x10000;
        out += wchar_t(0xD800 + (cp >> 10));
        out += wchar_t(0xDC00 + (cp & 0x3FF));
    }
}

} // namespace

void escapeXmlText(std::wstring_view units, std::string &out) {
    out.reserve(out.size() + units.size());
    for (size_t i = 0; i < units.size(); ++i) {
        const uint32_t u = uint32_t(units[i]) & 0xFFFFu;
        if (u < 0x80 && u >= 0x20 && u != '_') {
            out += char(u);
        } else if (u == '\t' || u == '\n') {
            out += char(u);
        } else if (u == '_') {
            out += isEscape(units, i) ? "_x005F_" : "_";
        } else if (u < 0x20 || u >= 0xFFFE) {
            appendEscape(u, out);
        } else if (u >= 0xD800 && u <= 0xDBFF && i + 1 < units.size() &&
                   (uint32_t(units[i + 1]) & 0xFFFFu) >= 0xDC00 &&
                   (uint32_t(units[i + 1]) & 0xFFFFu) <= 0xDFFF) {
            const uint32_t lo = uint32_t(units[++i]) & 0xFFFFu;
            lmx::append_utf8(out, 0x10000 + ((u - 0xD800) << 10) + (lo - 0xDC00));
        } else if (u >= 0xD800 && u <= 0xDFFF) {
            appendEscape(u, out);
        } else {
            lmx::append_utf8(out, u);
        }
    }
}

void unescapeXmlText(std::string_view text, std::wstring &out) {
    out.reserve(out.size() + text.size());
    const size_t n = text.size();
    for (size_t i = 0; i < n;) {
        const unsigned char b = static_cast<unsigned char>(text[i]);
        if (b < 0x80) {
            if (b == '_' && isEscape(text, i)) {
                uint32_t v = 0;
                for (size_t k = 2; k < 6; ++k)
                    v = v * 16 + uint32_t(hexValue(wchar_t(text[i + k])));
                out += wchar_t(v);
                i += 7;
            } else {
                out += wchar_t(b);
                ++i;
            }
            continue;
        }
        // A multi-byte sequence: its length from the lead byte, checked.
        const int len = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : b >= 0xC0 ? 2 : 0;
        uint32_t cp = len == 4 ? b & 0x07u : len == 3 ? b & 0x0Fu : b & 0x1Fu;
        bool ok = len > 0 && b < 0xF5 && i + size_t(len) <= n;
        for (int k = 1; ok && k < len; ++k) {
            const unsigned char c = static_cast<unsigned char>(text[i + size_t(k)]);
            ok = (c & 0xC0) == 0x80;
            cp = (cp << 6) | (c & 0x3Fu);
        }
        if (ok && (cp > 0x10FFFF || (len == 3 && cp < 0x800) || (len == 4 && cp < 0x10000) ||
                   (len == 2 && cp < 0x80)))
            ok = false;
        appendUnits(ok ? cp : 0xFFFD, out);
        i += ok ? size_t(len) : 1;
    }
}

bool isPlainXmlText(std::string_view utf8) {
    const size_t n = utf8.size();
    for (size_t i = 0; i < n;) {
        const unsigned char b = static_cast<unsigned char>(utf8[i]);
        if (b < 0x80) {
            if ((b < 0x20 && b != '\t' && b != '\n') || b == '_') return false;
            ++i;
            continue;
        }
        const int len = b >= 0xF0 ? 4 : b >= 0xE0 ? 3 : b >= 0xC2 ? 2 : 0;
        if (len == 0 || b > 0xF4 || i + size_t(len) > n) return false;
        uint32_t cp = len == 4 ? b & 0x07u : len == 3 ? b & 0x0Fu : b & 0x1Fu;
        for (int k = 1; k < len; ++k) {
            const unsigned char c = static_cast<unsigned char>(utf8[i + size_t(k)]);
            if ((c & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (c & 0x3Fu);
        }
        if ((len == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF) || cp >= 0xFFFE)) ||
            (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
            return false;
        i += size_t(len);
    }
    return true;
}

} // namespace tabrix
