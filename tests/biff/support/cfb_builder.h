// Test-side compound file builder, written independently of the library's
// writer so that reading tests do not share its mistakes.  Small streams go
// into the mini stream, large ones into the FAT.  Layout: FAT sectors,
// directory sectors, mini FAT, mini stream, large streams.
#ifndef TABRIX_TESTS_BIFF_CFB_BUILDER_H
#define TABRIX_TESTS_BIFF_CFB_BUILDER_H

#include <cstdint>
#include <string>
#include <vector>

namespace cfbtest {

struct StreamSpec {
    std::string name;
    std::vector<uint8_t> bytes;
};

struct Built {
    std::vector<uint8_t> file;
    // Sector numbers of interest for corrupting tests.
    uint32_t firstFat = 0, firstDir = 0, miniFatSector = 0xFFFFFFFE;
    std::vector<uint32_t> starts; // start sector (or mini sector) of each stream

    void put32(size_t offset, uint32_t v);
    // Offset of FAT entry `n` (first FAT sector only) and of directory entry `i`.
    size_t fatEntry(uint32_t n) const { return 512 + size_t(firstFat) * 512 + 4 * n; }
    size_t dirEntry(uint32_t i) const { return 512 + size_t(firstDir) * 512 + 128 * i; }
    std::string str() const { return std::string(file.begin(), file.end()); }
};

// `miniCutoff` decides which streams go to the mini stream.
Built buildCfb(const std::vector<StreamSpec> &streams, uint32_t miniCutoff = 4096);

// Deterministic test bytes.
std::vector<uint8_t> pattern(size_t n, uint32_t seed);

} // namespace cfbtest

#endif
