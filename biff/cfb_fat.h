// Allocation table arithmetic for the files this library writes: 512-byte
// sectors, 128 FAT entries and 127 DIFAT entries (plus a next pointer) each.
#ifndef TABRIX_BIFF_CFB_FAT_H
#define TABRIX_BIFF_CFB_FAT_H

#include <cstdint>
#include <vector>

namespace tabrix {

struct FatLayout {
    uint32_t fatSectors = 0;   // f
    uint32_t difatSectors = 0; // g
};

// The least f and g such that the FAT has an entry for every sector it
// describes: `dataSectors` + `dirSectors` + f + g <= 128 * f, with
// g = ceil((f - 109) / 127) once f passes the header's 109 slots.
FatLayout computeFatLayout(uint64_t dataSectors, uint64_t dirSectors);

// The FAT of a written file: one chain over the data sectors, the DIFAT and
// FAT markers, then the directory chain; the rest free.
std::vector<uint32_t> buildFat(uint32_t dataSectors, const FatLayout &layout, uint32_t dirSectors);

} // namespace tabrix

#endif
