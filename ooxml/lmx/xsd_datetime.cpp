// Lexical forms of dates, times and durations.
#include "ooxml/lmx/xsd_datetime.h"

#include <cstdlib>
#include <string>

namespace lmx {

namespace {

// A cursor over the text with the fixed-width steps of the ISO forms.
struct s_cursor {
    std::string_view t;
    size_t i = 0;

    bool at_end() const { return i == t.size(); }
    bool lit(char c) {
        if (i < t.size() && t[i] == c) {
            ++i;
            return true;
        }
        return false;
    }
    bool digits(size_t n, int &v) {
        if (t.size() - i < n) return false;
        v = 0;
        for (size_t k = 0; k < n; ++k) {
            const char c = t[i + k];
            if (c < '0' || c > '9') return false;
            v = v * 10 + (c - '0');
        }
        i += n;
        return true;
    }
};

bool leap(int64_t y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

int days_in(int64_t year, int month) {
    static const int k_days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && leap(year) ? 29 : k_days[month - 1];
}

bool parse_year(s_cursor &c, int64_t &year) {
    const bool neg = c.lit('-');
    const size_t s = c.i;
    while (c.i < c.t.size() && c.t[c.i] >= '0' && c.t[c.i] <= '9') ++c.i;
    const size_t n = c.i - s;
    if (n < 4 || n > 12 || (n > 4 && c.t[s] == '0')) return false;
    year = std::stoll(std::string(c.t.substr(s, n)));
    if (year == 0) return false;
    if (neg) year = -year;
    return true;
}

bool parse_time(s_cursor &c, c_datetime_base &d) {
    int sec;
    if (!c.digits(2, d.hour) || !c.lit(':') || !c.digits(2, d.minute) || !c.lit(':') ||
        !c.digits(2, sec))
        return false;
    d.second = sec;
    if (c.lit('.')) {
        const size_t s = c.i;
        while (c.i < c.t.size() && c.t[c.i] >= '0' && c.t[c.i] <= '9') ++c.i;
        if (c.i == s) return false;
        d.second += std::strtod(("0." + std::string(c.t.substr(s, c.i - s))).c_str(), nullptr);
    }
    if (d.hour == 24) return d.minute == 0 && d.second == 0;
    return d.hour < 24 && d.minute < 60 && d.second < 60;
}

bool parse_tz(s_cursor &c, c_datetime_base &d) {
    if (c.at_end()) return true;
    if (c.lit('Z')) return d.set_tz(0);
    const bool neg = c.t[c.i] == '-';
    if (!c.lit('+') && !c.lit('-')) return false;
    int h, m;
    if (!c.digits(2, h) || !c.lit(':') || !c.digits(2, m) || m > 59) return false;
    return d.set_tz((neg ? -1 : 1) * (h * 60 + m));
}

} // namespace

bool c_datetime_base::set_tz(int minutes) {
    if (!is_valid_tz(minutes)) return false;
    has_tz = true;
    tz_minutes = minutes;
    return true;
}

bool c_datetime_base::parse(std::string_view text, e_datetime_form f) {
    *this = c_datetime_base();
    form = f;
    s_cursor c{text};
    bool ok = true;
    switch (f) {
    case DT_DATETIME:
    case DT_DATE:
    case DT_GYEAR:
    case DT_GYEARMONTH:
        ok = parse_year(c, year);
        if (ok && f != DT_GYEAR) ok = c.lit('-') && c.digits(2, month) && month >= 1 && month <= 12;
        if (ok && (f == DT_DATETIME || f == DT_DATE))
            ok = c.lit('-') && c.digits(2, day) && day >= 1 && day <= days_in(year, month);
        if (ok && f == DT_DATETIME) ok = c.lit('T') && parse_time(c, *this);
        break;
    case DT_TIME: ok = parse_time(c, *this); break;
    case DT_GMONTH:
    case DT_GMONTHDAY:
        ok = c.lit('-') && c.lit('-') && c.digits(2, month) && month >= 1 && month <= 12;
        if (ok && f == DT_GMONTHDAY)
            ok = c.lit('-') && c.digits(2, day) && day >= 1 && day <= days_in(2000, month);
        break;
    case DT_GDAY:
        ok = c.lit('-') && c.lit('-') && c.lit('-') && c.digits(2, day) && day >= 1 && day <= 31;
        break;
    }
    return ok && parse_tz(c, *this) && c.at_end();
}

bool c_duration::parse(std::string_view t) {
    *this = c_duration();
    size_t i = 0;
    if (i < t.size() && t[i] == '-') {
        negative = true;
        ++i;
    }
    if (i >= t.size() || t[i++] != 'P') return false;
    bool any = false, in_time = false, time_field = false;
    const char *order = "YMDHMS";
    size_t next_unit = 0;
    while (i < t.size()) {
        if (t[i] == 'T') {
            if (in_time) return false;
            in_time = true;
            next_unit = 3;
            ++i;
            continue;
        }
        const size_t s = i;
        while (i < t.size() && ((t[i] >= '0' && t[i] <= '9') || t[i] == '.')) ++i;
        if (i == s || i >= t.size()) return false;
        const std::string num(t.substr(s, i - s));
        const char unit = t[i++];
        size_t u = next_unit;
        while (u < 6 && (order[u] != unit || (u < 3) == in_time)) ++u;
        if (u == 6 || (num.find('.') != std::string::npos && u != 5) || num == "." ||
            num.back() == '.' || num.find('.') != num.rfind('.'))
            return false;
        if (num.size() > 18 && u != 5) return false;
        next_unit = u + 1;
        any = true;
        time_field = time_field || in_time;
        const uint64_t n = u == 5 ? 0 : std::stoull(num);
        switch (u) {
        case 0: years = n; break;
        case 1: months = n; break;
        case 2: days = n; break;
        case 3: hours = n; break;
        case 4: minutes = n; break;
        default: seconds = std::strtod(num.c_str(), nullptr); break;
        }
    }
    return any && (!in_time || time_field);
}

bool c_duration::p_is_indeterminate(const c_duration &o) const {
    // Months and days mix only through month lengths of 28 to 31 days.
    const bool mine_months = years || months, theirs_months = o.years || o.months;
    const bool mine_days = days || hours || minutes || seconds,
               theirs_days = o.days || o.hours || o.minutes || o.seconds;
    return (mine_months && theirs_days) || (theirs_months && mine_days);
}

} // namespace lmx
