#include "biff/file_bytes.h"

#include "book/mapped_memory.h"
#include "book/tberror.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <new>

namespace tabrix {

FileBytes::~FileBytes() {
    unmapRegion(_data, _mapped);
}

bool FileBytes::read(const char *path) {
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
    size_t want = size_t(st.st_size);
    if (want) {
        try {
            _data = static_cast<char *>(mapZeroed(want));
        } catch (const std::bad_alloc &) {
            ::close(fd);
            return false;
        }
        _mapped = want;
    }
    // The file may shrink while it is read: what was read is what loads.
    size_t got = 0;
    while (got < want) {
        ssize_t n = ::read(fd, _data + got, want - got);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        got += size_t(n);
    }
    ::close(fd);
    _size = got;
    return true;
}

} // namespace tabrix
