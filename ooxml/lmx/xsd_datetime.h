// The XML Schema date, time and duration forms.
#pragma once

#include <cstdint>
#include <string_view>

namespace lmx {

enum e_datetime_form {
    DT_DATETIME,
    DT_DATE,
    DT_TIME,
    DT_GYEAR,
    DT_GYEARMONTH,
    DT_GMONTH,
    DT_GMONTHDAY,
    DT_GDAY
};

// One value of the date/time family; fields a form lacks stay at zero.
struct c_datetime_base {
    e_datetime_form form = DT_DATETIME;
    int64_t year = 0;
    int month = 0, day = 0, hour = 0, minute = 0;
    double second = 0;
    bool has_tz = false;
    int tz_minutes = 0; // offset east of UTC

    // Parses the lexical form of `f`; false when the text or a field is out of range.
    bool parse(std::string_view text, e_datetime_form f);
    // Sets the time zone offset; false when beyond ±14:00.
    bool set_tz(int minutes);
    // Whether an offset is within ±14:00.
    static bool is_valid_tz(int minutes) { return minutes >= -840 && minutes <= 840; }
};

// xs:duration: signed, with fields by unit.
struct c_duration {
    bool negative = false;
    uint64_t years = 0, months = 0, days = 0, hours = 0, minutes = 0;
    double seconds = 0;

    // Parses "-?PnYnMnDTnHnMnS" with at least one field; false otherwise.
    bool parse(std::string_view text);
    // Whether comparing with `o` depends on the month lengths (the order is partial).
    bool p_is_indeterminate(const c_duration &o) const;
};

} // namespace lmx
