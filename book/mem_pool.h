// MemPool: the book's bump allocator.  Strings taken from it live as long as
// the book and all go in one step; it also owns objects handed to addPointer.
#ifndef TABRIX_MEM_POOL_H
#define TABRIX_MEM_POOL_H

#include <cstddef>
#include <vector>

namespace tabrix {

// Base of objects whose lifetime the pool takes over.
class BaseClass {
public:
    virtual ~BaseClass() {}
};

class MemPool {
public:
    // Elements in one block: narrow blocks hold this many bytes, wide ones
    // this many wide characters.
    static const size_t kBlockSize = 10000000;

    MemPool() = default;
    ~MemPool() { free(); }
    MemPool(const MemPool &) = delete;
    MemPool &operator=(const MemPool &) = delete;

    // `count` elements, never split across blocks; 0 answers null.  A
    // request above kBlockSize throws tberror.
    char *allocA(size_t count);
    wchar_t *allocW(size_t count);
    void addPointer(BaseClass *object);
    // Frees every block and owned object.
    void free();

    size_t blockCountA() const { return _blocksA.size(); }
    size_t blockCountW() const { return _blocksW.size(); }

private:
    std::vector<char *> _blocksA;
    std::vector<wchar_t *> _blocksW;
    size_t _offsetA = kBlockSize;
    size_t _offsetW = kBlockSize;
    std::vector<BaseClass *> _objects;
};

} // namespace tabrix

#endif
