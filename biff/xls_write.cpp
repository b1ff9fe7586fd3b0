// Xls: writing a compound file.  Order behind the header: workbook stream,
// kept streams in directory order, mini FAT, DIFAT, FAT, directory; every
// stream in one contiguous run of 512-byte sectors.
#include "biff/xls.h"

#include "biff/cfb_fat.h"
#include "book/tberror.h"

namespace tabrix {

namespace {
const char *kWriteError = "stream error, perhaps it's too small writing buffer";
const uint32_t kWriteSector = 512;
const uint32_t kMinWorkbook = 4096;

uint32_t sectorsFor(uint64_t bytes) { return uint32_t((bytes + kWriteSector - 1) / kWriteSector); }
} // namespace

void XlsCore::writeRaw(const void *buffer, size_t length) {
    if (!stream_) throw tberror(kWriteError);
    stream_->write(static_cast<const char *>(buffer), std::streamsize(length));
    if (!*stream_) throw tberror(kWriteError);
}

void XlsCore::writeFill(size_t count, uint8_t fill) {
    std::vector<char> pad(count, char(fill));
    if (count) writeRaw(pad.data(), count);
}

void XlsCore::writeHeader() {
    static const char zeros[kHeaderSize] = {0};
    if (!stream_) throw tberror("stream error");
    stream_->seekp(0);
    stream_->write(zeros, kHeaderSize);
    if (!*stream_) throw tberror("stream error");
}

void XlsCore::write(const void *buffer, size_t length) {
    if (written_ == 0 && stream_) stream_->seekp(kHeaderSize);
    writeRaw(buffer, length);
    written_ += length;
}

uint32_t XlsCore::writePos() {
    std::streamoff pos = stream_ ? std::streamoff(stream_->tellp()) : std::streamoff(-1);
    if (pos < 0) throw tberror("can't get the current write position");
    return uint32_t(pos - kHeaderSize);
}

uint32_t XlsCore::writeTail(uint32_t size, uint8_t fill) {
    uint32_t rest = size % kWriteSector;
    if (rest) writeFill(kWriteSector - rest, fill);
    return sectorsFor(size);
}

void XlsCore::close() {
    if (!stream_ || workbook_ >= dir_.size()) throw tberror(kWriteError);
    uint64_t n = 0;
    DirEntry &wb = dir_[workbook_];
    if (written_ > 0) {
        if (written_ < kMinWorkbook) {
            writeFill(size_t(kMinWorkbook - written_), 0);
            written_ = kMinWorkbook;
        }
        if (written_ > 0xFFFFFFFFull) throw tberror("compound file is too big");
        wb.startingSectorLocation = 0;
        wb.streamSize = written_;
        n = writeTail(uint32_t(written_), 0);
    } else {
        wb.startingSectorLocation = kEndOfChain;
        wb.streamSize = 0;
        stream_->seekp(kHeaderSize);
    }

    for (auto &k : kept_) {
        DirEntry &e = dir_[k.first];
        e.startingSectorLocation = uint32_t(n);
        e.streamSize = k.second.size();
        if (!k.second.empty()) writeRaw(k.second.data(), k.second.size());
        n += writeTail(uint32_t(k.second.size()), 0);
    }

    if (!miniFat_.empty()) {
        header_.miniFatSectorLocation = uint32_t(n);
        std::vector<uint8_t> bytes(miniFat_.size() * 4);
        for (size_t i = 0; i < miniFat_.size(); ++i) putLE32(&bytes[4 * i], miniFat_[i]);
        writeRaw(bytes.data(), bytes.size());
        uint32_t sectors = writeTail(uint32_t(bytes.size()), 0);
        header_.numMiniFatSectors = sectors;
        n += sectors;
    }

    // The streams left in the mini stream are those below this cutoff.
    header_.miniStreamCutoff = keepCutoff_;
    uint32_t d = uint32_t((dir_.size() + 3) / 4);
    FatLayout layout = computeFatLayout(n, d);
    uint32_t f = layout.fatSectors, g = layout.difatSectors;
    header_.numFatSectors = f;
    header_.numDifatSectors = g;
    fat_ = buildFat(uint32_t(n), layout, d);

    // Each stream is one run of the data chain; end the run before the next.
    if (!miniFat_.empty()) {
        uint32_t loc = header_.miniFatSectorLocation;
        if (loc > n) throw tberror("miniFatSectorLocation is out of range");
        if (loc > 0) fat_[loc - 1] = kEndOfChain;
    }
    for (auto &k : kept_) {
        uint32_t start = dir_[k.first].startingSectorLocation;
        if (start > n) throw tberror("startingSectorLocation is out of range");
        if (start > 0) fat_[start - 1] = kEndOfChain;
    }

    uint32_t firstFat = uint32_t(n) + g;
    for (uint32_t i = 0; i < kHeaderDifatCount; ++i)
        header_.difat[i] = i < f ? firstFat + i : kSectorFree;
    if (g) {
        header_.firstDifatSector = uint32_t(n);
        std::vector<uint32_t> rest(size_t(g) * 127, kSectorFree);
        for (uint32_t i = kHeaderDifatCount; i < f; ++i) rest[i - kHeaderDifatCount] = firstFat + i;
        std::vector<uint8_t> sector(kWriteSector);
        for (uint32_t k = 0; k < g; ++k) {
            for (uint32_t i = 0; i < 127; ++i) putLE32(&sector[4 * i], rest[size_t(k) * 127 + i]);
            putLE32(&sector[508], k + 1 < g ? uint32_t(n) + k + 1 : kEndOfChain);
            writeRaw(sector.data(), sector.size());
        }
    }
    difat_.assign(header_.difat, header_.difat + kHeaderDifatCount);

    std::vector<uint8_t> fatBytes(fat_.size() * 4);
    for (size_t i = 0; i < fat_.size(); ++i) putLE32(&fatBytes[4 * i], fat_[i]);
    writeRaw(fatBytes.data(), fatBytes.size());

    header_.firstDirSector = uint32_t(n) + g + f;
    std::vector<uint8_t> dirBytes(size_t(d) * kWriteSector, 0);
    for (size_t i = 0; i < dir_.size(); ++i) dir_[i].toBytes(&dirBytes[i * kDirEntrySize]);
    writeRaw(dirBytes.data(), dirBytes.size());

    std::streamoff end = stream_->tellp();
    fileSize_ = end < 0 ? 0 : uint32_t(end);
    uint8_t head[kHeaderSize];
    header_.toBytes(head);
    stream_->seekp(0);
    writeRaw(head, kHeaderSize);
    stream_->flush();
}

} // namespace tabrix
