// Byte-order detection, the XML declaration and the transcoding to UTF-8.
#include "ooxml/lmx/xml_encoding.h"

#include <cstdint>
#include <cstring>

#include "ooxml/lmx/xml_chars.h"

namespace lmx {

namespace {

bool iequals(std::string_view a, const char *b) {
    size_t n = std::strlen(b);
    if (a.size() != n) return false;
    for (size_t i = 0; i < n; ++i) {
        char x = a[i], y = b[i];
        if (x >= 'a' && x <= 'z') x = char(x - 32);
        if (y >= 'a' && y <= 'z') y = char(y - 32);
        if (x != y) return false;
    }
    return true;
}

bool is_ascii_ws_or_lt(unsigned char c) {
    return c == '<' || c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

elmx_error utf16_to_utf8(const unsigned char *p, size_t n, bool big, std::string &out,
                         std::string &detail) {
    if (n % 2) {
        detail = "Unrecognised character encoding";
        return ELMX_BAD_CHAR_ENCODING;
    }
    out.clear();
    out.reserve(n + n / 2);
    for (size_t i = 0; i < n; i += 2) {
        uint32_t u = big ? (uint32_t(p[i]) << 8 | p[i + 1]) : (uint32_t(p[i + 1]) << 8 | p[i]);
        if (u >= 0xD800 && u <= 0xDFFF) {
            if (u > 0xDBFF || i + 3 >= n) {
                detail = "Unrecognised character encoding";
                return ELMX_BAD_CHAR_ENCODING;
            }
            uint32_t l =
                big ? (uint32_t(p[i + 2]) << 8 | p[i + 3]) : (uint32_t(p[i + 3]) << 8 | p[i + 2]);
            if (l < 0xDC00 || l > 0xDFFF) {
                detail = "Unrecognised character encoding";
                return ELMX_BAD_CHAR_ENCODING;
            }
            u = 0x10000 + ((u - 0xD800) << 10) + (l - 0xDC00);
            i += 2;
        }
        append_utf8(out, u);
    }
    return ELMX_OK;
}

} // namespace

void append_utf8(std::string &out, uint32_t cp) {
    if (cp < 0x80) {
        out += char(cp);
    } else if (cp < 0x800) {
        out += char(0xC0 | (cp >> 6));
        out += char(0x80 | (cp & 0x3F));
    } else if (cp < 0x10000) {
        out += char(0xE0 | (cp >> 12));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    } else {
        out += char(0xF0 | (cp >> 18));
        out += char(0x80 | ((cp >> 12) & 0x3F));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
}

size_t valid_utf8_prefix(std::string_view s) {
    const unsigned char *p = reinterpret_cast<const unsigned char *>(s.data());
    const size_t n = s.size();
    size_t i = 0;
    while (i < n) {
        // Thirty-two, then eight ASCII bytes at a time: most of a document.
        while (i + 32 <= n) {
            uint64_t w[4];
            std::memcpy(w, p + i, 32);
            if ((w[0] | w[1] | w[2] | w[3]) & 0x8080808080808080ull) break;
            i += 32;
        }
        while (i + 8 <= n) {
            uint64_t w;
            std::memcpy(&w, p + i, 8);
            if (w & 0x8080808080808080ull) break;
            i += 8;
        }
        if (i >= n) break;
        unsigned char c = p[i];
        if (c < 0x80) {
            ++i;
            continue;
        }
        size_t len;
        uint32_t cp;
        if (c >= 0xC2 && c <= 0xDF) {
            len = 2;
            cp = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            len = 3;
            cp = c & 0x0F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            len = 4;
            cp = c & 0x07;
        } else {
            return i;
        }
        if (i + len > n) return i;
        for (size_t k = 1; k < len; ++k) {
            if ((p[i + k] & 0xC0) != 0x80) return i;
            cp = cp << 6 | (p[i + k] & 0x3F);
        }
        if ((len == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) ||
            (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
            return i;
        i += len;
    }
    return n;
}

elmx_error parse_xml_decl(std::string_view t, s_xml_decl &decl, std::string &detail) {
    decl = s_xml_decl();
    if (t.size() < 6 || t.compare(0, 5, "<?xml") != 0 || !chars::is_space(t[5])) return ELMX_OK;
    decl.present = true;
    size_t end = t.find("?>", 5);
    if (end == std::string_view::npos) {
        detail = "Unterminated XML Decl";
        return ELMX_BAD_XML_DECL;
    }
    decl.length = end + 2;
    size_t i = 5;
    int index = 0;
    while (true) {
        size_t ws = i;
        while (i < end && chars::is_space(t[i])) ++i;
        if (i == end) break;
        if (i == ws) {
            detail = "Missing white space in XML Decl";
            return ELMX_BAD_XML_DECL;
        }
        size_t name = i;
        while (i < end && (chars::is(t[i], chars::NAME))) ++i;
        std::string_view key = t.substr(name, i - name);
        while (i < end && chars::is_space(t[i])) ++i;
        if (i >= end || t[i] != '=') {
            detail = "Missing = in XML Decl";
            return ELMX_BAD_XML_DECL;
        }
        ++i;
        while (i < end && chars::is_space(t[i])) ++i;
        if (i >= end || (t[i] != '"' && t[i] != '\'')) {
            detail = "Missing quote in XML Decl";
            return ELMX_BAD_XML_DECL;
        }
        char q = t[i++];
        size_t v = i;
        while (i < end && t[i] != q) ++i;
        if (i >= end) {
            detail = "Unterminated value in XML Decl";
            return ELMX_BAD_XML_DECL;
        }
        std::string_view value = t.substr(v, i - v);
        ++i;
        if (index == 0 && key != "version") {
            detail = "Version not present in XML Decl";
            return ELMX_BAD_XML_DECL;
        }
        if (key == "version") {
            if (index != 0) {
                detail = "Version not first in XML Decl";
                return ELMX_BAD_XML_DECL;
            }
            if (value != "1.0" && value != "1.1") {
                detail = "XML version " + std::string(value) + " not understood";
                return ELMX_BAD_XML_VERSION;
            }
            decl.version = value;
        } else if (key == "encoding" && index == 1) {
            decl.encoding = value;
        } else if (key == "standalone" && decl.standalone.empty() && index >= 1) {
            if (value != "yes" && value != "no") {
                detail = "Bad standalone value in XML Decl";
                return ELMX_BAD_XML_DECL;
            }
            decl.standalone = value;
        } else {
            detail = "Unexpected " + std::string(key) + " in XML Decl";
            return ELMX_BAD_XML_DECL;
        }
        ++index;
    }
    if (decl.version.empty()) {
        detail = "Version not present in XML Decl";
        return ELMX_BAD_XML_DECL;
    }
    return ELMX_OK;
}

elmx_error document_to_utf8(const char *data, size_t size, std::string &storage,
                            std::string_view &text, s_xml_decl &decl, std::string &detail) {
    const unsigned char *b = reinterpret_cast<const unsigned char *>(data);
    if (size == 0 || !data) {
        detail = "Empty document";
        return ELMX_UNEXPECTED_EOM;
    }
    e_byte_form form;
    size_t skip = 0;
    if (size >= 2 && b[0] == 0xFF && b[1] == 0xFE) {
        form = BF_UTF16_LE;
        skip = 2;
    } else if (size >= 2 && b[0] == 0xFE && b[1] == 0xFF) {
        form = BF_UTF16_BE;
        skip = 2;
    } else if (size >= 3 && b[0] == 0xEF && b[1] == 0xBB && b[2] == 0xBF) {
        form = BF_UTF8;
        skip = 3;
    } else if (is_ascii_ws_or_lt(b[0])) {
        form = (size >= 2 && b[1] == 0) ? BF_UTF16_LE : BF_UTF8;
    } else if (size >= 2 && b[0] == 0 && is_ascii_ws_or_lt(b[1])) {
        form = BF_UTF16_BE;
    } else {
        detail = "Unrecognised character encoding";
        return ELMX_BAD_CHAR_ENCODING;
    }

    if (form != BF_UTF8) {
        elmx_error e = utf16_to_utf8(b + skip, size - skip, form == BF_UTF16_BE, storage, detail);
        if (e) return e;
        text = storage;
    } else {
        text = std::string_view(data + skip, size - skip);
    }
    elmx_error e = parse_xml_decl(text, decl, detail);
    if (e) return e;

    const std::string_view enc = decl.encoding;
    const bool single = iequals(enc, "ISO-8859-1") || iequals(enc, "Windows-1252") ||
                        iequals(enc, "cp-1252") || iequals(enc, "US-ASCII");
    const bool utf8 = enc.empty() || iequals(enc, "UTF-8");
    const bool utf16 = iequals(enc, "UTF-16");
    if (!single && !utf8 && !utf16) {
        detail = "Unknown character encoding specified";
        return ELMX_BAD_CHAR_ENCODING;
    }
    if (form != BF_UTF8) {
        // A declared 8-bit encoding over 16-bit units keeps the units' code points.
        if (utf8 && !enc.empty()) {
            detail = "Mis-match between specfied encoding and byte format";
            return ELMX_ENCODING_MISMATCH;
        }
        return ELMX_OK;
    }
    if (utf16 || (single && skip)) {
        detail = "Mis-match between specfied encoding and byte format";
        return ELMX_ENCODING_MISMATCH;
    }
    if (single) {
        // Each byte stands for the code point of its value.
        std::string out;
        out.reserve(text.size() + text.size() / 8);
        for (char c : text) {
            unsigned char u = static_cast<unsigned char>(c);
            if (u < 0x80)
                out += c;
            else
                append_utf8(out, u);
        }
        storage.swap(out);
        text = storage;
        return ELMX_OK;
    }
    size_t good = valid_utf8_prefix(text);
    if (good != text.size()) {
        detail = "Invalid UTF-8 sequence at byte " + std::to_string(good + skip);
        return ELMX_ENCODING_MISMATCH;
    }
    return ELMX_OK;
}

} // namespace lmx
