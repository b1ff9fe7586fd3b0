#include "book/date_serial.h"

#include <cmath>

namespace tabrix {

namespace {
// Julian day number of the serial 0 in each system.
const long long kEpoch1900 = 2415019;
const long long kEpoch1904 = 2416481;
} // namespace

double datePack(bool date1904, int year, int month, int day, int hour, int min, int sec, int msec) {
    long long serial = 0;
    if (!(year < 1 && month < 1 && day < 1)) {
        long long y = year, m = month, d = day;
        long long a = (m - 14) / 12;
        long long jdn = d + 1461 * (y + 4800 + a) / 4 + 367 * (m - 2 - 12 * a) / 12 -
                        3 * ((y + 4900 + a) / 100) / 4 - 32075;
        serial = jdn - (date1904 ? kEpoch1904 : kEpoch1900);
    }
    return double(serial) + hour / 24.0 + min / 1440.0 + sec / 86400.0 + msec / 8.64e7;
}

bool dateUnpack(bool date1904, double value, int *year, int *month, int *day, int *hour, int *min,
                int *sec, int *msec) {
    if (value <= -657435.0 || value >= 2958466.0) return false;
    // A NaN gets here; treat it as the time 0 rather than converting it.
    double whole = std::isnan(value) ? 0.0 : std::trunc(value);
    double frac = std::isnan(value) ? 0.0 : value - whole + 1e-11;
    if (frac >= 1.0) frac -= 1e-11;

    int y = 0, mo = 0, d = 0;
    if (whole > 0) {
        long long l = (long long)whole + (date1904 ? kEpoch1904 : kEpoch1900) + 68569;
        long long n = 4 * l / 146097;
        l = l - (146097 * n + 3) / 4;
        long long i = 4000 * (l + 1) / 1461001;
        l = l - 1461 * i / 4 + 31;
        long long j = 80 * l / 2447;
        d = int(l - 2447 * j / 80);
        l = j / 11;
        mo = int(j + 2 - 12 * l);
        y = int(100 * (n - 49) + i + l);
    }
    if (year) *year = y;
    if (month) *month = mo;
    if (day) *day = d;
    if (hour) {
        frac *= 24;
        *hour = int(frac);
        frac -= *hour;
    }
    if (min) {
        frac *= 60;
        *min = int(frac);
        frac -= *min;
    }
    if (sec) {
        frac *= 60;
        *sec = int(frac);
        frac -= *sec;
    }
    if (msec) *msec = int(frac * 1000 + 0.5);
    return true;
}

} // namespace tabrix
