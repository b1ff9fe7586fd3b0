#include "ooxml/package/zip_package.h"

#include <cstdlib>
#include <new>

#include "book/tberror.h"
#include "ooxml/package/file_util.h"
#include "zip/zip_exception.h"

namespace tabrix {

namespace {

// Runs an archive operation, turning its failures into tberror.
template <class F> auto guarded(F &&f) -> decltype(f()) {
    try {
        return f();
    } catch (const CZipException &e) {
        throw tberror(e.GetErrorDescription());
    }
}

} // namespace

ZipReader::ZipReader(const std::wstring &path) {
    guarded([&] { return _zip.Open(packageNarrow(path), CZipArchive::zipOpenReadOnly, 0); });
}

ZipReader::ZipReader(const void *bytes, size_t size)
    : _mem(std::make_unique<CZipMemFile>(bytes, size)) {
    guarded([&] { return _zip.Open(*_mem, CZipArchive::zipOpenReadOnly, false); });
}

size_t ZipReader::size() const { return _zip.IsOpen() ? _zip.GetCount() : 0; }

std::wstring ZipReader::name(size_t index) const {
    const CZipFileHeader *h = _zip.GetFileInfo(index);
    return h ? FileUtil::normalized(packageWide(h->GetFileName(true))) : std::wstring();
}

void ZipReader::data(size_t index, char *&bytes, size_t &length) {
    bytes = nullptr;
    length = 0;
    const CZipFileHeader *h = _zip.GetFileInfo(index);
    if (!h) return;
    if (h->uncompressedSize == 0xFFFFFFFF) throw tberror("incorrect file size in archive");
    CZipMemFile out;
    try {
        // An unknown compression method is damage as far as a package goes.
        if (!guarded([&] { return _zip.ExtractFile(index, out, true, 0x10000); }))
            throw tberror(CZipException::textOf(CZipException::badZipFile));
    } catch (const std::bad_alloc &) {
        throw tberror("Zip Memory Allocation Failure");
    } catch (const tberror &e) {
        if (e.what() == std::string(CZipException::textOf(CZipException::noMemory)))
            throw tberror("Zip Memory Allocation Failure");
        throw;
    }
    bytes = reinterpret_cast<char *>(out.Detach(length));
    if (!bytes && length == 0) bytes = static_cast<char *>(std::malloc(1));
}

ZipWriter::ZipWriter() {
    guarded([&] { return _zip.Open(_mem, CZipArchive::zipCreate, false); });
}

ZipWriter::ZipWriter(const std::wstring &path) {
    guarded([&] { return _zip.Open(packageNarrow(path), CZipArchive::zipCreate, 0); });
}

void ZipWriter::add(const std::wstring &name, const char *bytes, size_t length) {
    if (length == 0) return;
    std::string narrow = packageNarrow(name.empty() ? name : name.substr(1));
    guarded([&] {
        _zip.AddNewFile(reinterpret_cast<const unsigned char *>(bytes), length, narrow, -1, 7,
                        0x10000);
        return true;
    });
}

void ZipWriter::close() {
    guarded([&] {
        _zip.Close(0, false);
        return true;
    });
}

void ZipWriter::getRaw(char *&bytes, size_t &length) {
    bytes = reinterpret_cast<char *>(_mem.Detach(length));
}

} // namespace tabrix
