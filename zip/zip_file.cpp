#include "zip/zip_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

#include "book/mapped_memory.h"
#include "zip/zip_exception.h"

namespace tabrix {

CZipFile::~CZipFile() {
    if (_file) fclose(_file);
}

void CZipFile::fail() const { throw CZipException(errno ? errno : 5, _path); }

void CZipFile::Open(const std::string &path, bool create) {
    Close();
    _path = path;
    errno = 0;
    _file = fopen(path.c_str(), create ? "w+b" : "rb");
    if (!_file) fail();
}

size_t CZipFile::Read(void *buf, size_t n) {
    size_t got = fread(buf, 1, n, _file);
    if (got < n && ferror(_file)) fail();
    return got;
}

void CZipFile::Write(const void *buf, size_t n) {
    if (n && fwrite(buf, 1, n, _file) != n) fail();
}

void CZipFile::Seek(uint64_t pos) {
    if (fseeko(_file, static_cast<off_t>(pos), SEEK_SET) != 0) fail();
}

void CZipFile::SetLength(uint64_t n) {
    fflush(_file);
    if (ftruncate(fileno(_file), static_cast<off_t>(n)) != 0) fail();
}

uint64_t CZipFile::GetLength() const {
    off_t here = ftello(_file);
    fseeko(_file, 0, SEEK_END);
    off_t end = ftello(_file);
    fseeko(_file, here, SEEK_SET);
    return end < 0 ? 0 : static_cast<uint64_t>(end);
}

uint64_t CZipFile::GetPosition() const {
    off_t here = ftello(_file);
    return here < 0 ? 0 : static_cast<uint64_t>(here);
}

void CZipFile::Flush() {
    if (_file && fflush(_file) != 0) fail();
}

void CZipFile::Close() {
    if (_file) {
        FILE *f = _file;
        _file = nullptr;
        if (fclose(f) != 0) throw CZipException(errno ? errno : 5, _path);
    }
}

CZipMemFile::CZipMemFile(const void *bytes, size_t size)
    : _data(static_cast<unsigned char *>(const_cast<void *>(bytes))), _size(size), _capacity(size),
      _owner(false) {}

CZipMemFile::~CZipMemFile() {
    if (_owner) free(_data);
}

size_t CZipMemFile::Read(void *buf, size_t n) {
    if (n == 0 || _pos >= _size) return 0;
    size_t got = static_cast<size_t>(std::min<uint64_t>(n, _size - _pos));
    memcpy(buf, _data + _pos, got);
    _pos += got;
    return got;
}

void CZipMemFile::Grow(uint64_t need) {
    if (need <= _capacity) return;
    if (!_owner || need > SIZE_MAX / 2) throw CZipException(CZipException::noMemory);
    size_t cap = std::max<size_t>(static_cast<size_t>(need), _capacity + _capacity / 2);
    void *p = nullptr;
    if (!_data && cap >= kHugePageBytes) {
        // A large buffer made at once (an inflated member) starts on a huge
        // page, so that all of it can take huge pages.
        if (posix_memalign(&p, kHugePageBytes, cap) != 0) p = nullptr;
    } else {
        p = realloc(_data, cap);
    }
    if (!p) throw CZipException(CZipException::noMemory);
    _data = static_cast<unsigned char *>(p);
    // A large inflated member is written once from end to end: huge pages
    // spare most of its page faults.
    if (cap - _capacity >= kHugePageBytes) adviseHugePages(_data + _capacity, cap - _capacity);
    _capacity = cap;
}

void CZipMemFile::Write(const void *buf, size_t n) {
    if (!n) return;
    Grow(_pos + n);
    if (_pos > _size) memset(_data + _size, 0, static_cast<size_t>(_pos - _size));
    memcpy(_data + _pos, buf, n);
    _pos += n;
    _size = std::max<size_t>(_size, static_cast<size_t>(_pos));
}

void CZipMemFile::SetLength(uint64_t n) { resize(n, true); }

void CZipMemFile::resize(uint64_t n, bool zeroed) {
    if (n > _size) {
        Grow(n);
        if (zeroed) memset(_data + _size, 0, static_cast<size_t>(n - _size));
    }
    _size = static_cast<size_t>(n);
    if (_pos > _size) _pos = _size;
}

unsigned char *CZipMemFile::Detach(size_t &size) {
    unsigned char *p = _data;
    size = _size;
    _data = nullptr;
    _size = _capacity = 0;
    _pos = 0;
    _owner = true;
    return p;
}

} // namespace tabrix
