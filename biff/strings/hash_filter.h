// HashFilter: the set of the 64-bit text hashes of the shared strings, in a
// flat open-addressing table.  A hash it does not hold proves that no string
// of the table has that text, so a new text is appended without a search of
// the string table's own index, which is brought up to date only when a
// look-up needs it.
#ifndef TABRIX_BIFF_STRINGS_HASH_FILTER_H
#define TABRIX_BIFF_STRINGS_HASH_FILTER_H

#include "book/pod_vector.h"

#include <cstddef>
#include <cstdint>

namespace tabrix {

class HashFilter {
public:
    bool mayHold(uint64_t hash) const {
        if (_slots.empty()) return false;
        const uint64_t key = hash | 1u; // 0 marks a free slot
        const size_t mask = _slots.size() - 1;
        for (size_t i = size_t(key) & mask;; i = (i + 1) & mask) {
            if (_slots[i] == key) return true;
            if (_slots[i] == 0) return false;
        }
    }
    void put(uint64_t hash);
    void clear();
    size_t count() const { return _count; }

private:
    void grow();

    PodVector<uint64_t> _slots; // a power of two in size, at most half full
    size_t _count = 0;
};

} // namespace tabrix

#endif
