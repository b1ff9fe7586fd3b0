// Adding members and finishing an archive.
#include <ctime>

#include "zip/zip_archive.h"
#include "zip/zip_codec.h"
#include "zip/zip_exception.h"
#include "zip/zip_format.h"

namespace tabrix {

using namespace zipfmt;

namespace {

constexpr uint64_t k32 = 0xFFFFFFFF;

void dosTime(uint16_t &time, uint16_t &date) {
    std::time_t now = std::time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    time = static_cast<uint16_t>(t.tm_hour << 11 | t.tm_min << 5 | t.tm_sec / 2);
    date = static_cast<uint16_t>((t.tm_year < 80 ? 0 : t.tm_year - 80) << 9 | (t.tm_mon + 1) << 5 |
                                 t.tm_mday);
}

bool nonAscii(const std::string &s) {
    for (unsigned char c : s)
        if (c >= 0x80) return true;
    return false;
}

} // namespace

void CZipArchive::AddNewFile(const unsigned char *bytes, size_t size, const std::string &name,
                             int level, int smartLevel, size_t) {
    if (!_file || !_writing) fail(CZipException::internalError);
    if (name.size() > 0xFFFF) fail(CZipException::tooLongData);
    if (_entries.size() >= k32) fail(CZipException::tooManyFiles);
    CZipFileHeader h;
    h.name = name;
    dosTime(h.modTime, h.modDate);
    h.flags = nonAscii(name) ? 0x800 : 0; // UTF-8 names
    h.externalAttr = 0x81A40000;          // a regular file, rw-r--r--
    h.versionMadeBy = 3 << 8 | 45;
    h.crc = zipCrc32(bytes, size);
    h.uncompressedSize = size;
    // Tiny members are stored: compression can't pay below 5 bytes.
    std::vector<unsigned char> packed;
    bool deflated =
        level != 0 && !((smartLevel & 4) && size < 5) && zipDeflate(bytes, size, level, packed);
    h.method = deflated ? 8 : 0;
    h.compressedSize = deflated ? packed.size() : size;
    const bool big = h.uncompressedSize >= k32 || h.compressedSize >= k32;
    h.versionNeeded = big ? 45 : (deflated ? 20 : 10);
    h.localOffset = _file->GetPosition() - _bytesBefore;

    std::string local;
    put32(local, kLocalSig);
    put16(local, h.versionNeeded);
    put16(local, h.flags);
    put16(local, h.method);
    put16(local, h.modTime);
    put16(local, h.modDate);
    put32(local, h.crc);
    put32(local, big ? uint32_t(k32) : uint32_t(h.compressedSize));
    put32(local, big ? uint32_t(k32) : uint32_t(h.uncompressedSize));
    put16(local, static_cast<uint16_t>(name.size()));
    put16(local, big ? 20 : 0);
    local += name;
    if (big) {
        put16(local, kZip64Extra);
        put16(local, 16);
        put64(local, h.uncompressedSize);
        put64(local, h.compressedSize);
    }
    _file->Write(local.data(), local.size());
    _file->Write(deflated ? packed.data() : bytes, static_cast<size_t>(h.compressedSize));
    _entries.push_back(std::move(h));
}

void CZipArchive::writeCentralDir() {
    const uint64_t start = _file->GetPosition() - _bytesBefore;
    std::string out;
    for (const CZipFileHeader &h : _entries) {
        std::string extra;
        if (h.uncompressedSize >= k32) put64(extra, h.uncompressedSize);
        if (h.compressedSize >= k32) put64(extra, h.compressedSize);
        if (h.localOffset >= k32) put64(extra, h.localOffset);
        if (!extra.empty()) {
            std::string head;
            put16(head, kZip64Extra);
            put16(head, static_cast<uint16_t>(extra.size()));
            extra = head + extra;
        }
        put32(out, kCentralSig);
        put16(out, h.versionMadeBy);
        put16(out, extra.empty() ? h.versionNeeded : 45);
        put16(out, h.flags);
        put16(out, h.method);
        put16(out, h.modTime);
        put16(out, h.modDate);
        put32(out, h.crc);
        put32(out, uint32_t(std::min(h.compressedSize, k32)));
        put32(out, uint32_t(std::min(h.uncompressedSize, k32)));
        put16(out, static_cast<uint16_t>(h.name.size()));
        put16(out, static_cast<uint16_t>(extra.size()));
        put16(out, 0);
        put16(out, 0);
        put16(out, h.internalAttr);
        put32(out, h.externalAttr);
        put32(out, uint32_t(std::min(h.localOffset, k32)));
        out += h.name;
        out += extra;
        if (out.size() >= (1u << 20)) {
            _file->Write(out.data(), out.size());
            out.clear();
        }
    }
    const uint64_t end = _file->GetPosition() + out.size() - _bytesBefore;
    const uint64_t size = end - start, count = _entries.size();
    if (count >= 0xFFFF || size >= k32 || start >= k32) {
        put32(out, kEnd64Sig);
        put64(out, kEnd64Size - 12);
        put16(out, 3 << 8 | 45);
        put16(out, 45);
        put32(out, 0);
        put32(out, 0);
        put64(out, count);
        put64(out, count);
        put64(out, size);
        put64(out, start);
        put32(out, kLocator64Sig);
        put32(out, 0);
        put64(out, end);
        put32(out, 1);
    }
    put32(out, kEndSig);
    put16(out, 0);
    put16(out, 0);
    put16(out, uint16_t(std::min<uint64_t>(count, 0xFFFF)));
    put16(out, uint16_t(std::min<uint64_t>(count, 0xFFFF)));
    put32(out, uint32_t(std::min(size, k32)));
    put32(out, uint32_t(std::min(start, k32)));
    put16(out, static_cast<uint16_t>(_comment.size()));
    out += _comment;
    _file->Write(out.data(), out.size());
}

void CZipArchive::Close(int afterException, bool) {
    if (!_file) return;
    CZipAbstractFile *file = _file;
    _file = nullptr;
    std::unique_ptr<CZipFile> own = std::move(_ownFile);
    if (_writing && !afterException) {
        _file = file;
        try {
            writeCentralDir();
            file->Flush();
        } catch (...) {
            _file = nullptr;
            throw;
        }
        _file = nullptr;
    }
    _entries.clear();
    _writing = false;
    if (_autoClose && !afterException) file->Close();
}

} // namespace tabrix
