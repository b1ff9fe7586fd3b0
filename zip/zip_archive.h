// CZipArchive: reads the central directory of a file or memory image and
// extracts members whole; creates an archive and adds members from memory.
// Members are compressed and extracted in one piece, the sizes are known
// before a local header is written, so no data descriptor is ever written.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "zip/zip_file.h"

namespace tabrix {

// One central directory entry, in the fields of the format (Zip64 values
// already merged in).
struct CZipFileHeader {
    uint16_t versionMadeBy = 0;
    uint16_t versionNeeded = 0;
    uint16_t flags = 0;
    uint16_t method = 0;
    uint16_t modTime = 0;
    uint16_t modDate = 0;
    uint32_t crc = 0;
    uint64_t compressedSize = 0;
    uint64_t uncompressedSize = 0;
    uint32_t diskStart = 0;
    uint16_t internalAttr = 0;
    uint32_t externalAttr = 0;
    uint64_t localOffset = 0;
    std::string name;
    std::string extra;
    std::string comment;

    std::string GetFileName(bool = true) const { return name; }
    bool IsEncrypted() const { return flags & 1; }
};

class CZipArchive {
public:
    enum Mode { zipOpen = 1, zipOpenReadOnly = 3, zipCreate = 4, zipCreateAppend = 12 };
    // Archives above this multiple of their own size when inflated are refused.
    static constexpr uint64_t kMaxRatio = 1100;

    CZipArchive() = default;
    ~CZipArchive();
    CZipArchive(const CZipArchive &) = delete;
    CZipArchive &operator=(const CZipArchive &) = delete;

    // False for an unknown mode or when an archive is open already.
    bool Open(CZipAbstractFile &file, int mode, bool autoClose);
    bool Open(const std::string &path, int mode, int volumeSize);
    bool IsOpen() const { return _file != nullptr; }

    size_t GetCount() const { return _entries.size(); }
    const CZipFileHeader *GetFileInfo(size_t index) const;
    // Extracts a member whole into `out` (resized to the member's size);
    // with `rewind` its position goes back to 0. False for a bad index or an
    // unknown method.
    bool ExtractFile(size_t index, CZipMemFile &out, bool rewind = true,
                     size_t bufferSize = 0x10000);
    // Adds a member from memory: below 5 bytes or when deflate doesn't pay
    // it is stored, else deflated at `level` (-1 the default).
    void AddNewFile(const unsigned char *bytes, size_t size, const std::string &name,
                    int level = -1, int smartLevel = 7, size_t bufferSize = 0x10000);
    // Writes the central directory (when creating) and releases the stream.
    void Close(int afterException = 0, bool updateTime = false);

private:
    void readCentralDir();
    void readZip64(uint64_t eocdPos, bool &found);
    void readHeaders(uint64_t offset, uint64_t size, uint64_t count);
    void readExact(void *buf, size_t n, int code);
    void writeCentralDir();
    [[noreturn]] void fail(int code) const;

    CZipAbstractFile *_file = nullptr;
    std::unique_ptr<CZipFile> _ownFile;
    bool _autoClose = false;
    bool _writing = false;
    uint64_t _bytesBefore = 0;
    uint64_t _inflatedTotal = 0;
    std::string _comment;
    std::vector<CZipFileHeader> _entries;
};

} // namespace tabrix
