// Digit-string decimals.
#include "ooxml/lmx/xsd_decimal.h"

namespace lmx {

bool c_decimal::parse(std::string_view t) {
    size_t i = 0;
    _negative = false;
    if (i < t.size() && (t[i] == '+' || t[i] == '-')) _negative = t[i++] == '-';
    const size_t int_start = i;
    while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i;
    const size_t int_end = i;
    size_t frac_start = i, frac_end = i;
    if (i < t.size() && t[i] == '.') {
        frac_start = ++i;
        while (i < t.size() && t[i] >= '0' && t[i] <= '9') ++i;
        frac_end = i;
    }
    if (i != t.size() || (int_end == int_start && frac_end == frac_start)) return false;
    size_t a = int_start;
    while (a < int_end && t[a] == '0') ++a;
    _integer.assign(t.substr(a, int_end - a));
    size_t b = frac_end;
    while (b > frac_start && t[b - 1] == '0') --b;
    _fraction.assign(t.substr(frac_start, b - frac_start));
    if (_integer.empty() && _fraction.empty()) _negative = false;
    return true;
}

int c_decimal::compare(const c_decimal &o) const {
    if (_negative != o._negative) return _negative ? -1 : 1;
    int mag;
    if (_integer.size() != o._integer.size()) {
        mag = _integer.size() < o._integer.size() ? -1 : 1;
    } else {
        int c = _integer.compare(o._integer);
        if (c == 0)
            c = _fraction.compare(o._fraction); // no trailing zeros: string order is numeric order
        mag = c < 0 ? -1 : c > 0 ? 1 : 0;
    }
    return _negative ? -mag : mag;
}

size_t c_decimal::total_digits() const {
    if (_integer.empty()) {
        size_t z = 0;
        while (z < _fraction.size() && _fraction[z] == '0') ++z;
        return _fraction.empty() ? 1 : _fraction.size() - z;
    }
    return _integer.size() + _fraction.size();
}

std::string c_decimal::to_string() const {
    std::string s = _negative ? "-" : "";
    s += _integer.empty() ? "0" : _integer;
    if (!_fraction.empty()) s += "." + _fraction;
    return s;
}

bool c_big_int::parse(std::string_view t) {
    return t.find('.') == std::string_view::npos && c_decimal::parse(t);
}

} // namespace lmx
