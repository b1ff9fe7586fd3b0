// Calendar dates to and from the serial number stored in a cell, in the
// 1900 and the 1904 date systems.
#ifndef TABRIX_BOOK_DATE_SERIAL_H
#define TABRIX_BOOK_DATE_SERIAL_H

namespace tabrix {

double datePack(bool date1904, int year, int month, int day, int hour, int min, int sec, int msec);
// False, touching nothing, for values out of the supported range.  The time
// outputs may be null.
bool dateUnpack(bool date1904, double value, int *year, int *month, int *day, int *hour, int *min,
                int *sec, int *msec);

} // namespace tabrix

#endif
