#include "biff/cfb_header.h"

#include <cstring>
#include <sstream>

namespace tabrix {

namespace {
const uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
}

void XlsHeader::reset() {
    std::memcpy(signature, kSignature, 8);
    std::memset(clsid, 0, sizeof clsid);
    minorVersion = 0x003E;
    majorVersion = 3;
    byteOrder = 0xFFFE;
    sectorShift = 9;
    miniSectorShift = 6;
    std::memset(reserved, 0, sizeof reserved);
    numDirSectors = 0;
    numFatSectors = 0;
    firstDirSector = kEndOfChain;
    transactionSignature = 0;
    miniStreamCutoff = 4096;
    miniFatSectorLocation = kEndOfChain;
    numMiniFatSectors = 0;
    firstDifatSector = kEndOfChain;
    numDifatSectors = 0;
    for (uint32_t &d : difat) d = kSectorFree;
}

bool XlsHeader::hasSignature() const { return std::memcmp(signature, kSignature, 8) == 0; }

void XlsHeader::toBytes(uint8_t *out) const {
    std::memcpy(out, signature, 8);
    std::memcpy(out + 8, clsid, 16);
    putLE16(out + 24, minorVersion);
    putLE16(out + 26, majorVersion);
    putLE16(out + 28, byteOrder);
    putLE16(out + 30, sectorShift);
    putLE16(out + 32, miniSectorShift);
    std::memcpy(out + 34, reserved, 6);
    const uint32_t words[] = {numDirSectors,        numFatSectors,    firstDirSector,
                              transactionSignature, miniStreamCutoff, miniFatSectorLocation,
                              numMiniFatSectors,    firstDifatSector, numDifatSectors};
    for (size_t i = 0; i < 9; ++i) putLE32(out + 40 + 4 * i, words[i]);
    for (uint32_t i = 0; i < kHeaderDifatCount; ++i) putLE32(out + 76 + 4 * i, difat[i]);
}

void XlsHeader::fromBytes(const uint8_t *in) {
    std::memcpy(signature, in, 8);
    std::memcpy(clsid, in + 8, 16);
    minorVersion = getLE16(in + 24);
    majorVersion = getLE16(in + 26);
    byteOrder = getLE16(in + 28);
    sectorShift = getLE16(in + 30);
    miniSectorShift = getLE16(in + 32);
    std::memcpy(reserved, in + 34, 6);
    uint32_t *words[] = {&numDirSectors,        &numFatSectors,    &firstDirSector,
                         &transactionSignature, &miniStreamCutoff, &miniFatSectorLocation,
                         &numMiniFatSectors,    &firstDifatSector, &numDifatSectors};
    for (size_t i = 0; i < 9; ++i) *words[i] = getLE32(in + 40 + 4 * i);
    for (uint32_t i = 0; i < kHeaderDifatCount; ++i) difat[i] = getLE32(in + 76 + 4 * i);
}

std::string XlsHeader::dump() const {
    std::ostringstream os;
    os << "[Header]\n"
       << "sectorShift=" << sectorShift << "\nminiSectorShift=" << miniSectorShift
       << "\nnumFatSectors=" << numFatSectors << "\nfirstDirSector=" << firstDirSector
       << "\nminiStreamCutoff=" << miniStreamCutoff
       << "\nminiFatSectorLocation=" << miniFatSectorLocation
       << "\nnumMiniFatSectors=" << numMiniFatSectors << "\nfirstDifatSector=" << firstDifatSector
       << "\nnumDifatSectors=" << numDifatSectors << "\n";
    return os.str();
}

} // namespace tabrix
