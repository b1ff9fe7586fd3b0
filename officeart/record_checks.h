// What each known drawing record must look like: which header fields are
// compared (mask bit 0 version, bit 1 type, bit 2 instance, bit 3 length)
// and the values they must hold.  A header that fails its check does not
// belong to the record class and is left to the next reader.
#ifndef TABRIX_OFFICEART_RECORD_CHECKS_H
#define TABRIX_OFFICEART_RECORD_CHECKS_H

#include "officeart/record_header.h"

#include <cstdint>

namespace tabrix {

enum class OfficeArtBody { Container, Atom, Properties, Blip, FBSE, BStore, FDGG };

struct OfficeArtRecordCheck {
    uint16_t type;
    const char *name;
    unsigned mask;
    uint16_t ver;
    uint16_t instance;
    uint32_t fixedLength;
    OfficeArtBody body;
};

// The row of a record type, or nullptr for a type no class models.
const OfficeArtRecordCheck *findRecordCheck(uint16_t type);

bool passesCheck(const OfficeArtRecordCheck &check, const OfficeArtRecordHeader &header);

} // namespace tabrix

#endif
