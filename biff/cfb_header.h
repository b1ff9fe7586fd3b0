// The 512-byte header of a compound file and the sector markers shared by
// the allocation tables.
#ifndef TABRIX_BIFF_CFB_HEADER_H
#define TABRIX_BIFF_CFB_HEADER_H

#include <cstdint>
#include <iosfwd>
#include <string>

namespace tabrix {

const uint32_t kSectorFree = 0xFFFFFFFFu;
const uint32_t kEndOfChain = 0xFFFFFFFEu;
const uint32_t kFatSector = 0xFFFFFFFDu;
const uint32_t kDifatSector = 0xFFFFFFFCu;
const uint32_t kHeaderDifatCount = 109;
const uint32_t kHeaderSize = 512;

// Every value below the free marker, the end of chain included.
inline bool notFree(uint32_t n) { return n < kSectorFree; }

struct XlsHeader {
    uint8_t signature[8];
    uint8_t clsid[16];
    uint16_t minorVersion;
    uint16_t majorVersion;
    uint16_t byteOrder;
    uint16_t sectorShift;
    uint16_t miniSectorShift;
    uint8_t reserved[6];
    uint32_t numDirSectors;
    uint32_t numFatSectors;
    uint32_t firstDirSector;
    uint32_t transactionSignature;
    uint32_t miniStreamCutoff;
    uint32_t miniFatSectorLocation;
    uint32_t numMiniFatSectors;
    uint32_t firstDifatSector;
    uint32_t numDifatSectors;
    uint32_t difat[kHeaderDifatCount];

    XlsHeader() { reset(); }
    // The values of a new file; computed fields at 0 or their marker.
    void reset();
    bool hasSignature() const;
    // Serialises to / parses from exactly kHeaderSize bytes, in file order.
    void toBytes(uint8_t *out) const;
    void fromBytes(const uint8_t *in);
    std::string dump() const;
};

// Little-endian helpers used by the container code.
inline uint16_t getLE16(const uint8_t *p) { return uint16_t(p[0] | (p[1] << 8)); }
inline uint32_t getLE32(const uint8_t *p) {
    return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}
inline void putLE16(uint8_t *p, uint16_t v) {
    p[0] = uint8_t(v);
    p[1] = uint8_t(v >> 8);
}
inline void putLE32(uint8_t *p, uint32_t v) {
    for (int i = 0; i < 4; ++i) p[i] = uint8_t(v >> (8 * i));
}

} // namespace tabrix

#endif
