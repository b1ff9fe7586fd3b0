// MemoryStream: a read-only std::iostream over a caller's bytes, so that a
// book loads from memory without copying the file first.  Seeking works
// within the bytes; writing fails.
#ifndef TABRIX_MEMORY_STREAM_H
#define TABRIX_MEMORY_STREAM_H

#include <istream>
#include <streambuf>

namespace tabrix {

class MemoryBuf : public std::streambuf {
public:
    MemoryBuf(const char *data, size_t size) {
        char *p = const_cast<char *>(data); // never written: no put area
        setg(p, p, p + size);
    }
    // The bytes the buffer reads, for readers that can take them in place.
    const char *bytes() const { return eback(); }
    size_t size() const { return size_t(egptr() - eback()); }

protected:
    pos_type seekoff(off_type off, std::ios_base::seekdir dir,
                     std::ios_base::openmode which) override {
        if (!(which & std::ios_base::in)) return pos_type(off_type(-1));
        off_type base = dir == std::ios_base::beg   ? 0
                        : dir == std::ios_base::cur ? off_type(gptr() - eback())
                                                    : off_type(egptr() - eback());
        off_type to = base + off;
        if (to < 0 || to > off_type(egptr() - eback())) return pos_type(off_type(-1));
        setg(eback(), eback() + to, egptr());
        return pos_type(to);
    }
    pos_type seekpos(pos_type pos, std::ios_base::openmode which) override {
        return seekoff(off_type(pos), std::ios_base::beg, which);
    }
};

class MemoryStream : public std::iostream {
public:
    MemoryStream(const char *data, size_t size) : std::iostream(nullptr), _buf(data, size) {
        rdbuf(&_buf);
    }

private:
    MemoryBuf _buf;
};

} // namespace tabrix

#endif
