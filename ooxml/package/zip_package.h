// The two thin archive wrappers of the package: ZipReader lists and
// extracts parts by name, ZipWriter adds parts and finishes the archive.
// Archive failures come out as tberror with the archive's description.
#pragma once

#include <memory>
#include <string>

#include "zip/zip_archive.h"

namespace tabrix {

class ZipReader {
public:
    explicit ZipReader(const std::wstring &path);
    // Reads the caller's buffer, which must outlive the reader.
    ZipReader(const void *bytes, size_t size);
    size_t size() const;
    // The entry's name, wide and normalised ("\" as "/", a leading "/").
    std::wstring name(size_t index) const;
    // A malloc'd buffer of the entry's bytes (the caller frees it); a
    // missing entry gives null and length 0.
    void data(size_t index, char *&bytes, size_t &length);

private:
    std::unique_ptr<CZipMemFile> _mem;
    CZipArchive _zip;
};

class ZipWriter {
public:
    ZipWriter();
    explicit ZipWriter(const std::wstring &path);
    // A part of length 0 leaves no entry; the name loses its leading "/".
    void add(const std::wstring &name, const char *bytes, size_t length);
    void close();
    // After close: the memory archive's buffer, handed over (free it with free).
    void getRaw(char *&bytes, size_t &length);

private:
    CZipMemFile _mem;
    CZipArchive _zip;
};

} // namespace tabrix
