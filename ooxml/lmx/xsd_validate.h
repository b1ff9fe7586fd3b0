// Validation of simple-type values: one static spec for each simple type of
// a schema joins the built-in type, its white-space mode and its facets.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ooxml/lmx/lmx_error.h"
#include "ooxml/lmx/xsd_regex.h"

namespace lmx {

enum e_xsd_type {
    XSD_STRING,
    XSD_BOOLEAN,
    XSD_DECIMAL,
    XSD_INTEGER,
    XSD_NON_POSITIVE_INTEGER,
    XSD_NEGATIVE_INTEGER,
    XSD_NON_NEGATIVE_INTEGER,
    XSD_POSITIVE_INTEGER,
    XSD_LONG,
    XSD_INT,
    XSD_SHORT,
    XSD_BYTE,
    XSD_UNSIGNED_LONG,
    XSD_UNSIGNED_INT,
    XSD_UNSIGNED_SHORT,
    XSD_UNSIGNED_BYTE,
    XSD_FLOAT,
    XSD_DOUBLE,
    XSD_DURATION,
    XSD_DATETIME,
    XSD_DATE,
    XSD_TIME,
    XSD_GYEAR,
    XSD_GYEARMONTH,
    XSD_GMONTH,
    XSD_GMONTHDAY,
    XSD_GDAY,
    XSD_HEX_BINARY,
    XSD_BASE64_BINARY,
    XSD_LIST,  // white-space separated items of `item`
    XSD_UNION, // the first of `members` that accepts the value
};

enum e_whitespace { WS_PRESERVE, WS_REPLACE, WS_COLLAPSE };

// A simple type: base type, white-space mode and facets.  Unset facets are
// null or -1.  Bounds are written in the type's lexical form; date and time
// types take no bounds.  Lists count items for their length facets.
struct s_validation_spec {
    e_xsd_type type = XSD_STRING;
    e_whitespace whitespace = WS_PRESERVE;
    const char *min_inclusive = nullptr;
    const char *max_inclusive = nullptr;
    const char *min_exclusive = nullptr;
    const char *max_exclusive = nullptr;
    long length = -1, min_length = -1, max_length = -1;
    long total_digits = -1, fraction_digits = -1;
    const char *const *enumeration = nullptr; // ends with null
    const c_regex *const *patterns = nullptr; // ends with null; one must match
    const char *fixed = nullptr;
    const s_validation_spec *item = nullptr;           // XSD_LIST
    const s_validation_spec *const *members = nullptr; // XSD_UNION, ends with null
};

// Applies a white-space mode to `s` in place.
void apply_whitespace(std::string &s, e_whitespace mode);
// Checks `text` against `spec` (after its white-space mode): ELMX_OK, or
// 35 lexical form, 36/37 bounds, 18/27 digits, 19/20 length, 22 pattern,
// 38 enumeration, 43 fixed.  `normalised`, when given, gets the processed text.
elmx_error validate(std::string_view text, const s_validation_spec &spec,
                    std::string *normalised = nullptr);

// Whether the text is an xs:boolean ("true", "false", "1", "0").
bool is_valid_bool(std::string_view s);
// Whether the text is an xs:integer of any size.
bool is_valid_integer(std::string_view s);
// Whether the text is an xs:double or xs:float (INF, -INF and NaN included).
bool is_valid_float(std::string_view s);
// Reads an xs:boolean.
elmx_error convert(std::string_view s, bool &v);
// Reads an xs:double.
elmx_error convert(std::string_view s, double &v);
// Reads a signed integer within 64 bits.
elmx_error convert(std::string_view s, int64_t &v);
// Reads an unsigned integer within 64 bits.
elmx_error convert(std::string_view s, uint64_t &v);

} // namespace lmx
