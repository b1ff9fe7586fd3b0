// Obj (id 93): an object record behind a drawing's shape.  Its first
// sub-record, the common data (type 21, length 18), tells the kind of
// object and its id; a loaded record is carried as its bytes, and the two
// kinds the library places itself, pictures and comment notes, are built
// here.
#ifndef TABRIX_BIFF_RECORDS_OBJ_H
#define TABRIX_BIFF_RECORDS_OBJ_H
#include "biff/biff_record.h"
#include <cstdint>
namespace tabrix {
struct ObjCommon {
    static constexpr uint16_t kPicture = 8, kNote = 25;
    uint16_t ot = 0, id = 0, flags = 0;
    // False when the record does not begin with the common data.
    bool read(const Biff &record);
};
// A picture object: common data, clipboard format and picture options.
Biff pictureObj(uint16_t id);
// A comment's note object: common data and the note data.
Biff noteObj(uint16_t id);
} // namespace tabrix
#endif
