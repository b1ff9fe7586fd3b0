// Opening an archive and extracting members.
#include <algorithm>
#include <cstring>

#include "zip/zip_archive.h"
#include "zip/zip_codec.h"
#include "zip/zip_exception.h"
#include "zip/zip_format.h"

namespace tabrix {

using namespace zipfmt;

CZipArchive::~CZipArchive() {
    try {
        Close(1);
    } catch (...) {}
}

void CZipArchive::fail(int code) const {
    throw CZipException(code, _file && _file->HasFilePath() ? _file->GetFilePath() : std::string());
}

bool CZipArchive::Open(CZipAbstractFile &file, int mode, bool autoClose) {
    if (_file || (mode != zipOpen && mode != zipOpenReadOnly && mode != zipCreate &&
                  mode != zipCreateAppend))
        return false;
    _file = &file;
    _autoClose = autoClose;
    _entries.clear();
    _comment.clear();
    _bytesBefore = 0;
    _inflatedTotal = 0;
    _writing = mode == zipCreate || mode == zipCreateAppend;
    try {
        if (mode == zipCreate) {
            file.SetLength(0);
            file.Seek(0);
        } else if (mode == zipCreateAppend) {
            _bytesBefore = file.GetLength();
            file.Seek(_bytesBefore);
        } else {
            readCentralDir();
        }
    } catch (...) {
        _file = nullptr;
        _ownFile.reset();
        _entries.clear();
        throw;
    }
    return true;
}

bool CZipArchive::Open(const std::string &path, int mode, int) {
    if (_file) return false;
    auto f = std::make_unique<CZipFile>();
    f->Open(path, mode == zipCreate);
    CZipFile &ref = *f;
    _ownFile = std::move(f);
    _file = nullptr;
    return Open(ref, mode == zipCreateAppend ? zipCreateAppend : mode, true);
}

void CZipArchive::readExact(void *buf, size_t n, int code) {
    if (_file->Read(buf, n) != n) fail(code);
}

void CZipArchive::readCentralDir() {
    const uint64_t length = _file->GetLength();
    // The end record is searched backwards within the window of the record
    // plus the longest comment.
    const size_t window = static_cast<size_t>(std::min<uint64_t>(length, kEndWindow));
    std::vector<unsigned char> tail(window);
    _file->Seek(length - window);
    readExact(tail.data(), window, CZipException::cdirNotFound);
    size_t at = window < kEndSize ? 0 : window - kEndSize + 1;
    bool found = false;
    while (at > 0 && !found) found = get32(&tail[--at]) == kEndSig;
    if (!found) fail(CZipException::cdirNotFound);
    const unsigned char *e = &tail[at];
    const uint64_t eocdPos = length - window + at;
    uint16_t thisDisk = get16(e + 4), cdDisk = get16(e + 6);
    uint64_t diskEntries = get16(e + 8), total = get16(e + 10);
    uint64_t cdSize = get32(e + 12), cdOffset = get32(e + 16);
    size_t commentLen = std::min<size_t>(get16(e + 20), window - at - kEndSize);
    _comment.assign(reinterpret_cast<const char *>(e + kEndSize), commentLen);
    if (thisDisk != cdDisk || diskEntries != total) fail(CZipException::badZipFile);

    if (thisDisk == 0xFFFF || total == 0xFFFF || cdSize == 0xFFFFFFFF || cdOffset == 0xFFFFFFFF) {
        // Zip64: the locator stands right before the end record.
        if (eocdPos < kLocator64Size) fail(CZipException::noZip64);
        unsigned char loc[kLocator64Size];
        _file->Seek(eocdPos - kLocator64Size);
        readExact(loc, sizeof loc, CZipException::noZip64);
        if (get32(loc) != kLocator64Sig) fail(CZipException::noZip64);
        uint64_t end64 = get64(loc + 8);
        if (end64 + kEnd64Size + kLocator64Size > eocdPos)
            fail(end64 + kEnd64Size + kLocator64Size < eocdPos ? CZipException::bytesBeforeZip64
                                                               : CZipException::noZip64);
        unsigned char rec[kEnd64Size];
        _file->Seek(end64);
        readExact(rec, sizeof rec, CZipException::noZip64);
        if (get32(rec) != kEnd64Sig) fail(CZipException::noZip64);
        // Bytes before a Zip64 archive would shift every offset it holds.
        if (end64 + get64(rec + 4) + 12 + kLocator64Size != eocdPos)
            fail(CZipException::bytesBeforeZip64);
        total = get64(rec + 32);
        cdSize = get64(rec + 40);
        cdOffset = get64(rec + 48);
        if (get64(rec + 24) != total || cdOffset + cdSize > end64) fail(CZipException::badZipFile);
    } else {
        // Bytes glued before the archive (a self-extractor stub) shift every offset.
        if (cdOffset + cdSize > eocdPos) fail(CZipException::badZipFile);
        _bytesBefore = eocdPos - cdOffset - cdSize;
    }
    readHeaders(cdOffset + _bytesBefore, cdSize, total);
}

void CZipArchive::readHeaders(uint64_t offset, uint64_t size, uint64_t count) {
    if (count > size / kCentralSize) fail(CZipException::badZipFile);
    std::vector<unsigned char> dir(static_cast<size_t>(size));
    _file->Seek(offset);
    readExact(dir.data(), dir.size(), CZipException::badZipFile);
    const uint64_t length = _file->GetLength();
    const uint64_t cap = length * kMaxRatio + (1u << 20);
    uint64_t total = 0;
    _entries.reserve(static_cast<size_t>(count));
    size_t p = 0;
    for (uint64_t i = 0; i < count; ++i) {
        if (dir.size() - p < kCentralSize || get32(&dir[p]) != kCentralSig)
            fail(CZipException::badZipFile);
        const unsigned char *c = &dir[p];
        CZipFileHeader h;
        h.versionMadeBy = get16(c + 4);
        h.versionNeeded = get16(c + 6);
        h.flags = get16(c + 8);
        h.method = get16(c + 10);
        h.modTime = get16(c + 12);
        h.modDate = get16(c + 14);
        h.crc = get32(c + 16);
        h.compressedSize = get32(c + 20);
        h.uncompressedSize = get32(c + 24);
        size_t nameLen = get16(c + 28), extraLen = get16(c + 30), commentLen = get16(c + 32);
        h.diskStart = get16(c + 34);
        h.internalAttr = get16(c + 36);
        h.externalAttr = get32(c + 38);
        h.localOffset = get32(c + 42);
        if (dir.size() - p - kCentralSize < nameLen + extraLen + commentLen)
            fail(CZipException::badZipFile);
        const char *v = reinterpret_cast<const char *>(c + kCentralSize);
        h.name.assign(v, nameLen);
        h.extra.assign(v + nameLen, extraLen);
        h.comment.assign(v + nameLen + extraLen, commentLen);
        p += kCentralSize + nameLen + extraLen + commentLen;
        // Zip64 extra: the fields whose 32-bit form holds the marker, in order.
        for (size_t x = 0; x + 4 <= h.extra.size();) {
            const unsigned char *f = reinterpret_cast<const unsigned char *>(h.extra.data()) + x;
            size_t len = get16(f + 2);
            if (x + 4 + len > h.extra.size()) break;
            if (get16(f) == kZip64Extra) {
                size_t q = 4;
                auto take = [&](uint64_t &field) {
                    if (field != 0xFFFFFFFF) return;
                    if (q + 8 > len + 4) fail(CZipException::badZipFile);
                    field = get64(f + q);
                    q += 8;
                };
                take(h.uncompressedSize);
                take(h.compressedSize);
                take(h.localOffset);
            }
            x += 4 + len;
        }
        // Bounded inflation: no member, and not all members together, may
        // claim more than a fixed multiple of the archive's size.
        if (h.uncompressedSize != 0xFFFFFFFF) {
            if (h.uncompressedSize > h.compressedSize * kMaxRatio + (1u << 16) ||
                h.uncompressedSize > cap)
                fail(CZipException::zipBomb);
            total += h.uncompressedSize;
            if (total > cap) fail(CZipException::zipBomb);
        }
        _entries.push_back(std::move(h));
    }
}

const CZipFileHeader *CZipArchive::GetFileInfo(size_t index) const {
    return index < _entries.size() ? &_entries[index] : nullptr;
}

bool CZipArchive::ExtractFile(size_t index, CZipMemFile &out, bool rewind, size_t) {
    if (!_file || _writing || index >= _entries.size()) return false;
    const CZipFileHeader &h = _entries[index];
    if (h.method != 0 && h.method != 8 && h.method != 12) return false;
    // The local header must agree with the central entry in name, method and
    // flags; its sizes may be zero (data descriptor) or in a Zip64 extra.
    unsigned char loc[kLocalSize];
    const uint64_t length = _file->GetLength();
    const uint64_t at = h.localOffset + _bytesBefore;
    if (at > length) fail(CZipException::badZipFile);
    _file->Seek(at);
    readExact(loc, sizeof loc, CZipException::badZipFile);
    size_t nameLen = get16(loc + 26), extraLen = get16(loc + 28);
    if (get32(loc) != kLocalSig || get16(loc + 6) != h.flags || get16(loc + 8) != h.method ||
        nameLen != h.name.size())
        fail(CZipException::badZipFile);
    std::string name(nameLen, '\0');
    readExact(&name[0], nameLen, CZipException::badZipFile);
    if (name != h.name) fail(CZipException::badZipFile);
    if (h.IsEncrypted()) fail(CZipException::badPassword);
    const uint64_t dataAt = at + kLocalSize + nameLen + extraLen;
    if (dataAt > length || h.compressedSize > length - dataAt) fail(CZipException::badZipFile);
    if (h.method == 0 && h.compressedSize != h.uncompressedSize) fail(CZipException::badZipFile);
    _inflatedTotal += h.uncompressedSize;
    if (_inflatedTotal > length * kMaxRatio + (1u << 20)) fail(CZipException::zipBomb);

    std::vector<unsigned char> packed;
    out.SetLengthUnfilled(h.uncompressedSize); // every byte is written below, or we fail
    out.Seek(0);
    unsigned char *dst = out.data();
    _file->Seek(dataAt);
    if (h.method == 0) {
        readExact(dst, static_cast<size_t>(h.uncompressedSize), CZipException::badZipFile);
    } else {
        packed.resize(static_cast<size_t>(h.compressedSize));
        readExact(packed.data(), packed.size(), CZipException::badZipFile);
        if (h.method == 8)
            zipInflate(packed.data(), packed.size(), dst, static_cast<size_t>(h.uncompressedSize));
        else
            zipBunzip(packed.data(), packed.size(), dst, static_cast<size_t>(h.uncompressedSize));
    }
    if (zipCrc32(dst, static_cast<size_t>(h.uncompressedSize)) != h.crc)
        fail(CZipException::badCrc);
    out.Seek(rewind ? 0 : h.uncompressedSize);
    return true;
}

} // namespace tabrix
