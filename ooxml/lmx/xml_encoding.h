// Bringing a document's bytes to UTF-8 once, before parsing: byte-order
// detection, the declared encoding, and the check of UTF-8 sequences.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "ooxml/lmx/lmx_error.h"

namespace lmx {

// How the first bytes say the document is stored.
enum e_byte_form { BF_UTF8 = 2, BF_UTF16_BE = 3, BF_UTF16_LE = 4 };

// The pseudo-attributes of an XML declaration; views into the document.
struct s_xml_decl {
    bool present = false;
    std::string_view version, encoding, standalone;
    size_t length = 0; // bytes of "<?xml ... ?>"
};

// Parses the declaration at the start of a UTF-8 or ASCII-compatible text.
elmx_error parse_xml_decl(std::string_view text, s_xml_decl &decl, std::string &detail);

// Turns a whole document into UTF-8 text: `text` views either the input
// (after any byte order mark) or `storage`; `decl` is its declaration.
elmx_error document_to_utf8(const char *data, size_t size, std::string &storage,
                            std::string_view &text, s_xml_decl &decl, std::string &detail);

// The length of the valid UTF-8 prefix of `s` (equal to its size when all is valid).
size_t valid_utf8_prefix(std::string_view s);

// Appends the UTF-8 form of a code point.
void append_utf8(std::string &out, uint32_t cp);

} // namespace lmx
