// FileWindow: a read-only std::iostream over a file that reads it through
// one window of 256 KiB with pread.  A load walks the workbook stream
// sector by sector; the sectors come from the window, which stays in the
// processor's cache, so the file is neither copied whole into memory nor
// read with one call per sector.  A file that shrinks during the load reads
// as truncated: the read fails with a message, never a crash.
#ifndef TABRIX_FILE_WINDOW_H
#define TABRIX_FILE_WINDOW_H

#include <cstdint>
#include <istream>
#include <streambuf>
#include <vector>

namespace tabrix {

class FileWindowBuf : public std::streambuf {
public:
    static const size_t kWindow = size_t(256) << 10;

    FileWindowBuf() = default;
    ~FileWindowBuf() override;
    FileWindowBuf(const FileWindowBuf &) = delete;
    FileWindowBuf &operator=(const FileWindowBuf &) = delete;

    // False when the file can't be opened or is not a regular file; throws
    // tberror for a file too large for the container format (4 GiB on).
    bool open(const char *path);

protected:
    int_type underflow() override;
    pos_type seekoff(off_type off, std::ios_base::seekdir dir,
                     std::ios_base::openmode which) override;
    pos_type seekpos(pos_type pos, std::ios_base::openmode which) override;

private:
    uint64_t position() const { return _base + uint64_t(gptr() - eback()); }

    int _fd = -1;
    uint64_t _size = 0; // as the file was when opened
    uint64_t _base = 0; // file offset of the window's first byte
    std::vector<char> _window;
};

class FileWindow : public std::iostream {
public:
    FileWindow() : std::iostream(nullptr) { rdbuf(&_buf); }
    bool open(const char *path) { return _buf.open(path); }

private:
    FileWindowBuf _buf;
};

} // namespace tabrix

#endif
