// xs:hexBinary and xs:base64Binary as byte vectors.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace lmx {

class c_binary {
public:
    // Whether the text is hexBinary: an even number of hex digits.
    static bool is_valid_hex(std::string_view text);
    // Whether the text is base64Binary (white space allowed between characters).
    static bool is_valid_base64(std::string_view text);
    // Reads hexBinary; false (and nothing kept) when invalid.
    bool from_hex(std::string_view text);
    // Reads base64Binary; false (and nothing kept) when invalid.
    bool from_base64(std::string_view text);
    // Appends the bytes as upper-case hex digits.
    void output_convert_to_hex(std::string &out) const;
    // The bytes.
    const std::vector<uint8_t> &bytes() const { return _bytes; }

private:
    std::vector<uint8_t> _bytes;
};

} // namespace lmx
