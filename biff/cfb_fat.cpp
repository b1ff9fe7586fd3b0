#include "biff/cfb_fat.h"

#include "biff/cfb_header.h"
#include "book/tberror.h"

namespace tabrix {

namespace {
const uint64_t kFatPerSector = 128;
const uint64_t kDifatPerSector = 127;
// Sector numbers must stay below the markers.
const uint64_t kMaxSectors = 0xFFFFFFFAull;

uint64_t ceilDiv(uint64_t a, uint64_t b) { return (a + b - 1) / b; }
} // namespace

FatLayout computeFatLayout(uint64_t dataSectors, uint64_t dirSectors) {
    // Growing f to the need it implies reaches the least fixed point, since
    // the need only grows with f.
    uint64_t f = 0, g = 0;
    for (;;) {
        g = f > kHeaderDifatCount ? ceilDiv(f - kHeaderDifatCount, kDifatPerSector) : 0;
        uint64_t total = dataSectors + dirSectors + f + g;
        if (total > kMaxSectors) throw tberror("compound file is too big");
        uint64_t need = ceilDiv(total, kFatPerSector);
        if (need <= f) break;
        f = need;
    }
    FatLayout l;
    l.fatSectors = uint32_t(f);
    l.difatSectors = uint32_t(g);
    return l;
}

std::vector<uint32_t> buildFat(uint32_t dataSectors, const FatLayout &layout, uint32_t dirSectors) {
    std::vector<uint32_t> fat(size_t(layout.fatSectors) * kFatPerSector, kSectorFree);
    uint32_t pos = 0;
    for (uint32_t i = 0; i < dataSectors; ++i, ++pos)
        fat[pos] = i + 1 < dataSectors ? pos + 1 : kEndOfChain;
    for (uint32_t i = 0; i < layout.difatSectors; ++i) fat[pos++] = kDifatSector;
    for (uint32_t i = 0; i < layout.fatSectors; ++i) fat[pos++] = kFatSector;
    for (uint32_t i = 0; i < dirSectors; ++i, ++pos)
        fat[pos] = i + 1 < dirSectors ? pos + 1 : kEndOfChain;
    return fat;
}

} // namespace tabrix
