// The error table of the XML runtime.
#include "ooxml/lmx/lmx_error.h"

#include <cstddef>

namespace lmx {

namespace {

const char *const mc_error_description[] = {
    "No Error",
    "Unable to open file",
    "Violation of xs:all cardinality constraints",
    "Attribute has already been read",
    "Attributes found in anonymous compositor",
    "XML badly formed",
    "XML character encoding not supported",
    "Inappropriate choice option selected",
    "Badly formed comment",
    "Badly formed DTD",
    "Bad end of element",
    "Bad start tag end",
    "Syntax error in end tag",
    "Bad XML Decl spec",
    "Unsupported XML version",
    "Mis-match between specified char encoding and read bytes",
    "Element not found",
    "Reference to external entity",
    "Fraction digits exceeded",
    "Length too long",
    "Length too short",
    "Mandatory element missing",
    "No pattern matched",
    "Not well formed",
    "Recursive entity definition",
    "Required attribute(s) missing",
    "Element instances exceeds maxOccurs",
    "Total digits exceeded",
    "Unable to read attribute value",
    "Unable to read element value",
    "Unknown element in xs:all",
    "Unknown element in complexContent",
    "Unexpected empty element",
    "Unexpected entity",
    "Unexpected end of message",
    "Invalid value format for this type",
    "Value greater than specified maximum",
    "Value less than specified minimum",
    "Value does not match enumerations",
    "Unexpected attribute",
    "Nilled element body not empty",
    "Entity not found",
    "Undefined error",
    "Value does not match specified fixed constraint",
    "Unknown xsi:type",
    "Type not set",
    "min/max occurs error on marshaling",
};

const char *const mc_user_description[] = {
    "User defined error 1", "User defined error 2", "User defined error 3",
    "User defined error 4", "User defined error 5", "User defined error 6",
    "User defined error 7", "User defined error 8", "User defined error 9",
};

} // namespace

const char *get_error_description(int code) {
    const int n = int(sizeof mc_error_description / sizeof *mc_error_description);
    if (code >= 0 && code < n) return mc_error_description[code];
    if (code >= ELMX_USER_DEFINED_1 && code <= ELMX_USER_DEFINED_9)
        return mc_user_description[code - ELMX_USER_DEFINED_1];
    return "";
}

void s_debug_error::capture(elmx_error c, std::string n, const char *f, int line, int in_line) {
    if (c == ELMX_UNEXPECTED_EOM && code != ELMX_OK) return;
    code = c;
    name = std::move(n);
    file = f ? f : "";
    source_line = line;
    input_line = in_line;
}

std::string get_error_message(const s_debug_error &e) {
    std::string m = get_error_description(e.code);
    if (!e.name.empty()) m += " (" + e.name + ")";
    if (e.input_line > 0) m += " at line " + std::to_string(e.input_line);
    if (!e.file.empty()) m += " [" + e.file + ":" + std::to_string(e.source_line) + "]";
    return m;
}

} // namespace lmx
