// FileBytes: a whole file read into memory at once, for loading a book
// through a MemoryStream.  One read of the file is much cheaper than the
// seeks of a sector-by-sector walk over a file stream.  The memory is
// mapped from the kernel in huge pages and goes back when the object dies.
#ifndef TABRIX_BIFF_FILE_BYTES_H
#define TABRIX_BIFF_FILE_BYTES_H

#include <cstddef>

namespace tabrix {

class FileBytes {
public:
    FileBytes() = default;
    ~FileBytes();
    FileBytes(const FileBytes &) = delete;
    FileBytes &operator=(const FileBytes &) = delete;

    // False when the file can't be opened or read; throws tberror for a
    // file too large for the container format (4 GiB and over).
    bool read(const char *path);
    const char *data() const { return _data; }
    size_t size() const { return _size; }

private:
    char *_data = nullptr;
    size_t _size = 0;
    size_t _mapped = 0;
};

} // namespace tabrix

#endif
