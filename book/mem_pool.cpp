#include "book/mem_pool.h"

#include "book/mapped_memory.h"
#include "book/tberror.h"

namespace tabrix {

namespace {

template <class C> C *take(std::vector<C *> &blocks, size_t &offset, size_t count) {
    if (count == 0) return nullptr;
    if (count > MemPool::kBlockSize) throw tberror("memory pool request is larger than a block");
    if (offset + count > MemPool::kBlockSize) {
        // Mapped, so that a block takes memory only as it fills, a huge
        // page at a time.
        blocks.reserve(blocks.size() + 1);
        blocks.push_back(static_cast<C *>(mapZeroed(MemPool::kBlockSize * sizeof(C))));
        offset = 0;
    }
    C *p = blocks.back() + offset;
    offset += count;
    return p;
}

} // namespace

char *MemPool::allocA(size_t count) { return take(_blocksA, _offsetA, count); }

wchar_t *MemPool::allocW(size_t count) { return take(_blocksW, _offsetW, count); }

void MemPool::addPointer(BaseClass *object) { _objects.push_back(object); }

void MemPool::free() {
    for (char *b : _blocksA) unmapRegion(b, kBlockSize * sizeof(char));
    for (wchar_t *b : _blocksW) unmapRegion(b, kBlockSize * sizeof(wchar_t));
    for (BaseClass *o : _objects) delete o;
    _blocksA.clear();
    _blocksW.clear();
    _objects.clear();
    _offsetA = _offsetW = kBlockSize;
}

} // namespace tabrix
