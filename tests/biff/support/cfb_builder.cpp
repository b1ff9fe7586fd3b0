#include "biff/support/cfb_builder.h"

#include <cstring>

namespace cfbtest {

namespace {
const uint32_t kEnd = 0xFFFFFFFE, kFree = 0xFFFFFFFF, kFatMark = 0xFFFFFFFD;

void le32(std::vector<uint8_t> &b, size_t off, uint32_t v) {
    for (int i = 0; i < 4; ++i) b[off + i] = uint8_t(v >> (8 * i));
}
void le16(std::vector<uint8_t> &b, size_t off, uint16_t v) {
    for (int i = 0; i < 2; ++i) b[off + i] = uint8_t(v >> (8 * i));
}
uint32_t sectorsOf(size_t bytes, size_t unit) { return uint32_t((bytes + unit - 1) / unit); }
} // namespace

void Built::put32(size_t offset, uint32_t v) { le32(file, offset, v); }

std::vector<uint8_t> pattern(size_t n, uint32_t seed) {
    std::vector<uint8_t> v(n);
    uint32_t x = seed * 2654435761u + 1;
    for (size_t i = 0; i < n; ++i) {
        x = x * 1103515245u + 12345u;
        v[i] = uint8_t(x >> 16);
    }
    return v;
}

Built buildCfb(const std::vector<StreamSpec> &streams, uint32_t miniCutoff) {
    // Mini stream contents and the mini FAT.
    std::vector<uint8_t> mini;
    std::vector<uint32_t> miniFat;
    std::vector<uint32_t> starts(streams.size(), kEnd);
    for (size_t i = 0; i < streams.size(); ++i) {
        const auto &s = streams[i];
        if (s.bytes.empty() || s.bytes.size() >= miniCutoff) continue;
        uint32_t first = uint32_t(miniFat.size());
        uint32_t n = sectorsOf(s.bytes.size(), 64);
        for (uint32_t k = 0; k < n; ++k) miniFat.push_back(k + 1 < n ? first + k + 1 : kEnd);
        starts[i] = first;
        mini.insert(mini.end(), s.bytes.begin(), s.bytes.end());
        mini.resize(size_t(miniFat.size()) * 64, 0);
    }
    uint32_t dirSectors = sectorsOf((streams.size() + 1) * 128, 512);
    uint32_t miniFatSectors = sectorsOf(miniFat.size() * 4, 512);
    uint32_t miniStreamSectors = sectorsOf(mini.size(), 512);
    uint32_t large = 0;
    for (const auto &s : streams)
        if (s.bytes.size() >= miniCutoff) large += sectorsOf(s.bytes.size(), 512);
    uint32_t body = dirSectors + miniFatSectors + miniStreamSectors + large;
    uint32_t fatSectors = 1;
    while (fatSectors * 128 < body + fatSectors) ++fatSectors;

    Built b;
    b.firstFat = 0;
    b.firstDir = fatSectors;
    uint32_t total = fatSectors + body;
    b.file.assign(512 + size_t(total) * 512, 0);
    std::vector<uint32_t> fat(size_t(fatSectors) * 128, kFree);
    uint32_t next = 0;
    auto chain = [&](uint32_t count) {
        uint32_t first = next;
        for (uint32_t k = 0; k < count; ++k, ++next) fat[next] = k + 1 < count ? next + 1 : kEnd;
        return count ? first : kEnd;
    };
    for (uint32_t k = 0; k < fatSectors; ++k) fat[next++] = kFatMark;
    chain(dirSectors);
    uint32_t miniFatStart = chain(miniFatSectors);
    uint32_t miniStreamStart = chain(miniStreamSectors);
    b.miniFatSector = miniFatStart;
    for (size_t i = 0; i < streams.size(); ++i)
        if (streams[i].bytes.size() >= miniCutoff) {
            starts[i] = chain(sectorsOf(streams[i].bytes.size(), 512));
            std::memcpy(&b.file[512 + size_t(starts[i]) * 512], streams[i].bytes.data(),
                        streams[i].bytes.size());
        }
    b.starts = starts;

    // Header.
    const uint8_t sig[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    std::memcpy(b.file.data(), sig, 8);
    le16(b.file, 24, 0x3E);
    le16(b.file, 26, 3);
    le16(b.file, 28, 0xFFFE);
    le16(b.file, 30, 9);
    le16(b.file, 32, 6);
    le32(b.file, 44, fatSectors);
    le32(b.file, 48, b.firstDir);
    le32(b.file, 56, miniCutoff);
    le32(b.file, 60, miniFatStart);
    le32(b.file, 64, miniFatSectors);
    le32(b.file, 68, kEnd);
    for (uint32_t k = 0; k < 109; ++k) le32(b.file, 76 + 4 * k, k < fatSectors ? k : kFree);
    for (size_t k = 0; k < fat.size(); ++k) le32(b.file, 512 + 4 * k, fat[k]);

    // Directory: root, then each stream as a right-leaning chain of siblings.
    auto entry = [&](uint32_t index, const std::string &name, uint8_t type, uint32_t child,
                     uint32_t right, uint32_t start, uint32_t size) {
        size_t off = 512 + size_t(b.firstDir) * 512 + size_t(index) * 128;
        for (size_t c = 0; c < name.size(); ++c) le16(b.file, off + 2 * c, uint8_t(name[c]));
        le16(b.file, off + 64, uint16_t(2 * name.size() + 2));
        b.file[off + 66] = type;
        b.file[off + 67] = 1;
        le32(b.file, off + 68, kFree);
        le32(b.file, off + 72, right);
        le32(b.file, off + 76, child);
        le32(b.file, off + 116, start);
        le32(b.file, off + 120, size);
    };
    entry(0, "Root Entry", 5, streams.empty() ? kFree : 1, kFree,
          mini.empty() ? kEnd : miniStreamStart, uint32_t(mini.size()));
    for (size_t i = 0; i < streams.size(); ++i)
        entry(uint32_t(i + 1), streams[i].name, 2, kFree,
              i + 1 < streams.size() ? uint32_t(i + 2) : kFree, starts[i],
              uint32_t(streams[i].bytes.size()));
    for (uint32_t k = uint32_t(streams.size() + 1); k < dirSectors * 4; ++k) {
        size_t off = 512 + size_t(b.firstDir) * 512 + size_t(k) * 128;
        le32(b.file, off + 68, kFree);
        le32(b.file, off + 72, kFree);
        le32(b.file, off + 76, kFree);
    }
    for (size_t k = 0; k < miniFat.size(); ++k)
        le32(b.file, 512 + size_t(miniFatStart) * 512 + 4 * k, miniFat[k]);
    if (!mini.empty())
        std::memcpy(&b.file[512 + size_t(miniStreamStart) * 512], mini.data(), mini.size());
    return b;
}

} // namespace cfbtest
