// The lexical and value checks of simple types.
#include "ooxml/lmx/xsd_validate.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <functional>

#include "ooxml/lmx/xsd_binary.h"
#include "ooxml/lmx/xsd_datetime.h"
#include "ooxml/lmx/xsd_decimal.h"

namespace lmx {

namespace {

// The implicit bounds of the integer types.
struct s_int_bounds {
    e_xsd_type type;
    const char *min, *max;
};
const s_int_bounds k_int_bounds[] = {
    {XSD_INTEGER, nullptr, nullptr},
    {XSD_NON_POSITIVE_INTEGER, nullptr, "0"},
    {XSD_NEGATIVE_INTEGER, nullptr, "-1"},
    {XSD_NON_NEGATIVE_INTEGER, "0", nullptr},
    {XSD_POSITIVE_INTEGER, "1", nullptr},
    {XSD_LONG, "-9223372036854775808", "9223372036854775807"},
    {XSD_INT, "-2147483648", "2147483647"},
    {XSD_SHORT, "-32768", "32767"},
    {XSD_BYTE, "-128", "127"},
    {XSD_UNSIGNED_LONG, "0", "18446744073709551615"},
    {XSD_UNSIGNED_INT, "0", "4294967295"},
    {XSD_UNSIGNED_SHORT, "0", "65535"},
    {XSD_UNSIGNED_BYTE, "0", "255"},
};

const s_int_bounds *int_bounds(e_xsd_type t) {
    for (const s_int_bounds &b : k_int_bounds)
        if (b.type == t) return &b;
    return nullptr;
}

bool is_space(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Characters of a UTF-8 text.
size_t code_points(std::string_view s) {
    size_t n = 0;
    for (char c : s) n += (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    return n;
}

elmx_error check_length(size_t n, const s_validation_spec &spec) {
    if ((spec.length >= 0 && n > size_t(spec.length)) ||
        (spec.max_length >= 0 && n > size_t(spec.max_length)))
        return ELMX_LENGTH_TOO_LONG;
    if ((spec.length >= 0 && n < size_t(spec.length)) ||
        (spec.min_length >= 0 && n < size_t(spec.min_length)))
        return ELMX_LENGTH_TOO_SHORT;
    return ELMX_OK;
}

// Compares a value with a bound of the same type: <0, 0, >0; `ok` false when they don't compare.
template <class T> int cmp(const T &a, const T &b) { return a < b ? -1 : b < a ? 1 : 0; }

elmx_error check_bounds(const s_validation_spec &spec, const char *imin, const char *imax,
                        const std::function<bool(const char *, int &)> &against) {
    int c;
    if (imin && against(imin, c) && c < 0) return ELMX_VALUE_EXCEEDS_MIN;
    if (imax && against(imax, c) && c > 0) return ELMX_VALUE_EXCEEDS_MAX;
    if (spec.min_inclusive && (!against(spec.min_inclusive, c) || c < 0))
        return ELMX_VALUE_EXCEEDS_MIN;
    if (spec.min_exclusive && (!against(spec.min_exclusive, c) || c <= 0))
        return ELMX_VALUE_EXCEEDS_MIN;
    if (spec.max_inclusive && (!against(spec.max_inclusive, c) || c > 0))
        return ELMX_VALUE_EXCEEDS_MAX;
    if (spec.max_exclusive && (!against(spec.max_exclusive, c) || c >= 0))
        return ELMX_VALUE_EXCEEDS_MAX;
    return ELMX_OK;
}

// The checks of the built-in type and the value facets, on normalised text.
elmx_error check_atomic(const std::string &v, const s_validation_spec &spec) {
    const e_xsd_type t = spec.type;
    if (t == XSD_STRING) return check_length(code_points(v), spec);
    if (t == XSD_BOOLEAN) return is_valid_bool(v) ? ELMX_OK : ELMX_VALUE_BAD_FORMAT;
    if (t == XSD_DECIMAL || int_bounds(t)) {
        const s_int_bounds *ib = int_bounds(t);
        c_decimal d;
        if ((ib && v.find('.') != std::string::npos) || !d.parse(v)) return ELMX_VALUE_BAD_FORMAT;
        if (spec.total_digits >= 0 && d.total_digits() > size_t(spec.total_digits))
            return ELMX_TOTAL_DIGITS_EXCEEDED;
        if (spec.fraction_digits >= 0 && d.fraction_digits() > size_t(spec.fraction_digits))
            return ELMX_FRACTION_DIGITS_EXCEEDED;
        return check_bounds(spec, ib ? ib->min : nullptr, ib ? ib->max : nullptr,
                            [&](const char *b, int &c) {
                                c_decimal bound;
                                if (!bound.parse(b)) return false;
                                c = d.compare(bound);
                                return true;
                            });
    }
    if (t == XSD_FLOAT || t == XSD_DOUBLE) {
        double d;
        if (convert(v, d)) return ELMX_VALUE_BAD_FORMAT;
        return check_bounds(spec, nullptr, nullptr, [&](const char *b, int &c) {
            double bound;
            if (convert(b, bound) || std::isnan(d) || std::isnan(bound)) return false;
            c = cmp(d, bound);
            return true;
        });
    }
    if (t == XSD_DURATION) {
        c_duration du;
        return du.parse(v) ? ELMX_OK : ELMX_VALUE_BAD_FORMAT;
    }
    if (t >= XSD_DATETIME && t <= XSD_GDAY) {
        c_datetime_base dt;
        return dt.parse(v, e_datetime_form(t - XSD_DATETIME)) ? ELMX_OK : ELMX_VALUE_BAD_FORMAT;
    }
    if (t == XSD_HEX_BINARY || t == XSD_BASE64_BINARY) {
        c_binary b;
        if (!(t == XSD_HEX_BINARY ? b.from_hex(v) : b.from_base64(v))) return ELMX_VALUE_BAD_FORMAT;
        return check_length(b.bytes().size(), spec);
    }
    return ELMX_UNDEFINED_ERROR;
}

} // namespace

void apply_whitespace(std::string &s, e_whitespace mode) {
    if (mode == WS_PRESERVE) return;
    for (char &c : s)
        if (is_space(c)) c = ' ';
    if (mode == WS_REPLACE) return;
    size_t out = 0;
    bool pending = false;
    for (char c : s) {
        if (c == ' ') {
            pending = out > 0;
            continue;
        }
        if (pending) s[out++] = ' ';
        pending = false;
        s[out++] = c;
    }
    s.resize(out);
}

elmx_error validate(std::string_view text, const s_validation_spec &spec, std::string *normalised) {
    std::string v(text);
    // Every type but a string collapses white space whatever the schema says.
    apply_whitespace(v, spec.type == XSD_STRING || spec.type == XSD_UNION ? spec.whitespace
                                                                          : WS_COLLAPSE);
    elmx_error e = ELMX_OK;
    if (spec.type == XSD_UNION) {
        e = ELMX_VALUE_BAD_FORMAT;
        for (const s_validation_spec *const *m = spec.members; m && *m && e; ++m)
            e = validate(v, **m);
    } else if (spec.type == XSD_LIST) {
        size_t items = 0;
        for (size_t i = 0; i < v.size() && !e;) {
            const size_t end = std::min(v.find(' ', i), v.size());
            if (spec.item) e = validate(std::string_view(v).substr(i, end - i), *spec.item);
            ++items;
            i = end + 1;
        }
        if (!e) e = check_length(items, spec);
    }
    if (!e && spec.patterns) {
        e = ELMX_NO_PATTERN_MATCHED;
        for (const c_regex *const *p = spec.patterns; *p && e; ++p)
            if ((*p)->is_match(v)) e = ELMX_OK;
    }
    if (!e && spec.type != XSD_UNION && spec.type != XSD_LIST) e = check_atomic(v, spec);
    if (!e && spec.enumeration) {
        e = ELMX_VALUE_NOT_ENUMERATED;
        for (const char *const *en = spec.enumeration; *en && e; ++en)
            if (v == *en) e = ELMX_OK;
    }
    if (!e && spec.fixed && v != spec.fixed) e = ELMX_VALUE_NOT_FIXED;
    if (normalised) *normalised = std::move(v);
    return e;
}

bool is_valid_bool(std::string_view s) {
    return s == "true" || s == "false" || s == "1" || s == "0";
}

bool is_valid_integer(std::string_view s) {
    c_big_int i;
    return i.parse(s);
}

bool is_valid_float(std::string_view s) {
    if (s == "INF" || s == "-INF" || s == "+INF" || s == "NaN") return true;
    size_t i = 0;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
    size_t digits = 0;
    while (i < s.size() && s[i] >= '0' && s[i] <= '9') ++i, ++digits;
    if (i < s.size() && s[i] == '.')
        for (++i; i < s.size() && s[i] >= '0' && s[i] <= '9';) ++i, ++digits;
    if (!digits) return false;
    if (i < s.size() && (s[i] == 'e' || s[i] == 'E')) {
        ++i;
        if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
        const size_t e = i;
        while (i < s.size() && s[i] >= '0' && s[i] <= '9') ++i;
        if (i == e) return false;
    }
    return i == s.size();
}

elmx_error convert(std::string_view s, bool &v) {
    if (!is_valid_bool(s)) return ELMX_VALUE_BAD_FORMAT;
    v = s == "true" || s == "1";
    return ELMX_OK;
}

elmx_error convert(std::string_view s, double &v) {
    if (!is_valid_float(s)) return ELMX_VALUE_BAD_FORMAT;
    if (s == "NaN")
        v = std::nan("");
    else if (s.size() >= 3 && s.substr(s.size() - 3) == "INF")
        v = s[0] == '-' ? -HUGE_VAL : HUGE_VAL;
    else
        v = std::strtod(std::string(s).c_str(), nullptr);
    return ELMX_OK;
}

elmx_error convert(std::string_view s, int64_t &v) {
    const char *b = s.data() + (!s.empty() && s[0] == '+');
    auto r = std::from_chars(b, s.data() + s.size(), v);
    if (r.ec == std::errc::result_out_of_range)
        return s[0] == '-' ? ELMX_VALUE_EXCEEDS_MIN : ELMX_VALUE_EXCEEDS_MAX;
    return r.ec == std::errc() && r.ptr == s.data() + s.size() && b != r.ptr
               ? ELMX_OK
               : ELMX_VALUE_BAD_FORMAT;
}

elmx_error convert(std::string_view s, uint64_t &v) {
    const char *b = s.data() + (!s.empty() && s[0] == '+');
    auto r = std::from_chars(b, s.data() + s.size(), v);
    if (r.ec == std::errc::result_out_of_range) return ELMX_VALUE_EXCEEDS_MAX;
    return r.ec == std::errc() && r.ptr == s.data() + s.size() && b != r.ptr
               ? ELMX_OK
               : ELMX_VALUE_BAD_FORMAT;
}

} // namespace lmx
