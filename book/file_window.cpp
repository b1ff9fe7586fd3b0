#include "book/file_window.h"

#include "book/tberror.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tabrix {

FileWindowBuf::~FileWindowBuf() {
    if (_fd >= 0) ::close(_fd);
}

bool FileWindowBuf::open(const char *path) {
    int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0) return false;
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return false;
    }
    if (uint64_t(st.st_size) >= (uint64_t(1) << 32)) {
        ::close(fd);
        throw tberror("file is too large for a binary workbook");
    }
    if (_fd >= 0) ::close(_fd);
    _fd = fd;
    _size = uint64_t(st.st_size);
    _base = 0;
    _window.resize(kWindow);
    setg(_window.data(), _window.data(), _window.data());
    return true;
}

// The window moves to start at the read position.
FileWindowBuf::int_type FileWindowBuf::underflow() {
    if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
    const uint64_t pos = position();
    if (_fd < 0 || pos >= _size) return traits_type::eof();
    const size_t want = size_t(std::min<uint64_t>(_window.size(), _size - pos));
    size_t got = 0;
    while (got < want) {
        ssize_t n = ::pread(_fd, _window.data() + got, want - got, off_t(pos + got));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        got += size_t(n);
    }
    _base = pos;
    setg(_window.data(), _window.data(), _window.data() + got);
    return got ? traits_type::to_int_type(*gptr()) : traits_type::eof();
}

FileWindowBuf::pos_type FileWindowBuf::seekoff(off_type off, std::ios_base::seekdir dir,
                                               std::ios_base::openmode which) {
    if (!(which & std::ios_base::in) || _fd < 0) return pos_type(off_type(-1));
    const off_type from = dir == std::ios_base::beg   ? 0
                          : dir == std::ios_base::cur ? off_type(position())
                                                      : off_type(_size);
    const off_type to = from + off;
    if (to < 0 || uint64_t(to) > _size) return pos_type(off_type(-1));
    const uint64_t target = uint64_t(to);
    const uint64_t held = uint64_t(egptr() - eback());
    if (target >= _base && target - _base <= held) {
        // Inside the window: no read.
        setg(eback(), eback() + (target - _base), egptr());
    } else {
        _base = target;
        setg(_window.data(), _window.data(), _window.data());
    }
    return pos_type(to);
}

FileWindowBuf::pos_type FileWindowBuf::seekpos(pos_type pos, std::ios_base::openmode which) {
    return seekoff(off_type(pos), std::ios_base::beg, which);
}

} // namespace tabrix
