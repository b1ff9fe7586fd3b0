// NoteSh (id 28): the comment of a cell: row, column, flags (bit 1 shown),
// the id of its note object and the author.  In the older format the
// record holds the text itself: row, column, length and the characters.
#ifndef TABRIX_BIFF_RECORDS_NOTE_SH_H
#define TABRIX_BIFF_RECORDS_NOTE_SH_H
#include "biff/biff_record.h"
#include <cstdint>
#include <string>
namespace tabrix {
struct NoteSh {
    uint16_t row = 0, col = 0, flags = 0, objId = 0;
    std::wstring author;
    std::string oldText; // the older format's bytes, in the book's code page
    // Throws "NoteSh size is incorrect" for a record too short for its fields.
    void read(const Biff &record, bool oldFormat);
    Biff record() const;
};
} // namespace tabrix
#endif
