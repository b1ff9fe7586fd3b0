#include "biff/strings/hash_filter.h"

#include <utility>

namespace tabrix {

namespace {

void zeroed(PodVector<uint64_t> &slots, size_t n) {
    slots.clear();
    slots.reserve(n);
    for (size_t i = 0; i < n; ++i) slots.emplace_back();
}

// Stores `key`; false when it was there already.
bool place(PodVector<uint64_t> &slots, uint64_t key) {
    const size_t mask = slots.size() - 1;
    size_t i = size_t(key) & mask;
    while (slots[i] != 0 && slots[i] != key) i = (i + 1) & mask;
    if (slots[i] == key) return false;
    slots[i] = key;
    return true;
}

} // namespace

void HashFilter::grow() {
    PodVector<uint64_t> old;
    std::swap(old, _slots);
    zeroed(_slots, old.empty() ? 1024 : 2 * old.size());
    for (uint64_t key : old)
        if (key) place(_slots, key);
}

void HashFilter::put(uint64_t hash) {
    if (2 * (_count + 1) > _slots.size()) grow();
    if (place(_slots, hash | 1u)) ++_count;
}

void HashFilter::clear() {
    _slots = PodVector<uint64_t>();
    _count = 0;
}

} // namespace tabrix
