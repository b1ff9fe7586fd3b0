// Hex and base64 forms of binary values.
#include "ooxml/lmx/xsd_binary.h"

namespace lmx {

namespace {

int hex_value(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

int b64_value(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A';
    if (c >= 'a' && c <= 'z') return c - 'a' + 26;
    if (c >= '0' && c <= '9') return c - '0' + 52;
    if (c == '+') return 62;
    if (c == '/') return 63;
    return -1;
}

// Decodes base64 into `out` when given; false when the text is not base64Binary.
bool decode_base64(std::string_view text, std::vector<uint8_t> *out) {
    std::string s;
    for (char c : text)
        if (c != ' ' && c != '\t' && c != '\n' && c != '\r') s += c;
    if (s.size() % 4) return false;
    for (size_t i = 0; i < s.size(); i += 4) {
        const bool last = i + 4 == s.size();
        int v[4];
        int pad = 0;
        for (int k = 0; k < 4; ++k) {
            if (s[i + k] == '=') {
                if (!last || k < 2) return false;
                ++pad;
                v[k] = 0;
                continue;
            }
            if (pad) return false;
            v[k] = b64_value(s[i + k]);
            if (v[k] < 0) return false;
        }
        // The bits after the last byte must be zero.
        if ((pad == 1 && (v[2] & 3)) || (pad == 2 && (v[1] & 15))) return false;
        const uint32_t w =
            uint32_t(v[0]) << 18 | uint32_t(v[1]) << 12 | uint32_t(v[2]) << 6 | uint32_t(v[3]);
        if (out) {
            out->push_back(uint8_t(w >> 16));
            if (pad < 2) out->push_back(uint8_t(w >> 8));
            if (pad < 1) out->push_back(uint8_t(w));
        }
    }
    return true;
}

} // namespace

bool c_binary::is_valid_hex(std::string_view text) {
    if (text.size() % 2) return false;
    for (char c : text)
        if (hex_value(c) < 0) return false;
    return true;
}

bool c_binary::is_valid_base64(std::string_view text) { return decode_base64(text, nullptr); }

bool c_binary::from_hex(std::string_view text) {
    _bytes.clear();
    if (!is_valid_hex(text)) return false;
    for (size_t i = 0; i < text.size(); i += 2)
        _bytes.push_back(uint8_t(hex_value(text[i]) << 4 | hex_value(text[i + 1])));
    return true;
}

bool c_binary::from_base64(std::string_view text) {
    _bytes.clear();
    if (decode_base64(text, &_bytes)) return true;
    _bytes.clear();
    return false;
}

void c_binary::output_convert_to_hex(std::string &out) const {
    static const char k_digits[] = "0123456789ABCDEF";
    for (uint8_t b : _bytes) {
        out += k_digits[b >> 4];
        out += k_digits[b & 15];
    }
}

} // namespace lmx
