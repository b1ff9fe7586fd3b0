// Result codes of the XML runtime and the detail of the last error.  The
// runtime never throws for a document problem: every operation answers an
// elmx_error, and the layer above turns a non-zero code into its exception.
#pragma once

#include <string>

namespace lmx {

enum elmx_error {
    ELMX_OK = 0,
    ELMX_NO_FILE = 1,
    ELMX_ALL_CARDINALITY = 2,
    ELMX_ATTRIBUTE_ALREADY_READ = 3,
    ELMX_ATTRIBUTES_IN_ANONYMOUS_COMPOSITOR = 4,
    ELMX_BADLY_FORMED = 5,
    ELMX_BAD_CHAR_ENCODING = 6,
    ELMX_BAD_CHOICE = 7,
    ELMX_BAD_COMMENT = 8,
    ELMX_BAD_DTD = 9,
    ELMX_BAD_END_OF_ELEMENT = 10,
    ELMX_BAD_END_TAG = 11,
    ELMX_BAD_END_TAG_SYNTAX = 12,
    ELMX_BAD_XML_DECL = 13,
    ELMX_BAD_XML_VERSION = 14,
    ELMX_ENCODING_MISMATCH = 15,
    ELMX_ELEMENT_NOT_FOUND = 16,
    ELMX_EXTERNAL_ENTITY = 17,
    ELMX_FRACTION_DIGITS_EXCEEDED = 18,
    ELMX_LENGTH_TOO_LONG = 19,
    ELMX_LENGTH_TOO_SHORT = 20,
    ELMX_MANDATORY_ELEMENT_MISSING = 21,
    ELMX_NO_PATTERN_MATCHED = 22,
    ELMX_NOT_WELL_FORMED = 23,
    ELMX_RECURSIVE_ENTITY = 24,
    ELMX_REQUIRED_ATTRIBUTES_MISSING = 25,
    ELMX_OCCURRENCES = 26,
    ELMX_TOTAL_DIGITS_EXCEEDED = 27,
    ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE = 28,
    ELMX_UNABLE_TO_READ_ELEMENT_VALUE = 29,
    ELMX_UNKNOWN_ELEMENT_IN_ALL = 30,
    ELMX_UNKNOWN_ELEMENT_IN_COMPLEX_CONTENT = 31,
    ELMX_UNEXPECTED_EMPTY_ELEMENT = 32,
    ELMX_UNEXPECTED_ENTITY = 33,
    ELMX_UNEXPECTED_EOM = 34,
    ELMX_VALUE_BAD_FORMAT = 35,
    ELMX_VALUE_EXCEEDS_MAX = 36,
    ELMX_VALUE_EXCEEDS_MIN = 37,
    ELMX_VALUE_NOT_ENUMERATED = 38,
    ELMX_UNEXPECTED_ATTRIBUTE = 39,
    ELMX_NILLED_ELEMENT_NOT_EMPTY = 40,
    ELMX_ENTITY_NOT_FOUND = 41,
    ELMX_UNDEFINED_ERROR = 42,
    ELMX_VALUE_NOT_FIXED = 43,
    ELMX_UNKNOWN_XSI_TYPE = 44,
    ELMX_TYPE_NOT_SET = 45,
    ELMX_OCCURS_ON_MARSHAL = 46,
    ELMX_USER_DEFINED_1 = 1000,
    ELMX_USER_DEFINED_9 = 1008
};

// The fixed English text of a code; an empty text for a code not in the table.
const char *get_error_description(int code);

// The detail of the last error: its code, the name or text it concerns, the
// source file and line that raised it, and the input line where it happened.
struct s_debug_error {
    elmx_error code = ELMX_OK;
    std::string name;
    std::string file;
    int source_line = 0;
    int input_line = 0;

    // Fills the record; a code 34 does not replace an error already stored.
    void capture(elmx_error c, std::string n, const char *f, int line, int in_line);
    // Clears the record back to "No Error".
    void clear() { *this = s_debug_error(); }
};

// One line: description, detail name, input line and source position.
std::string get_error_message(const s_debug_error &e);

} // namespace lmx
