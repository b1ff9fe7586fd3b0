#include "biff/sheet_string_cache.h"

#include <algorithm>
#include <cstring>

namespace tabrix {

template <class C> uint32_t StringCache<C>::hash(const C *text, size_t len) {
    uint32_t h = 2166136261u;
    for (size_t i = 0; i < len; ++i) {
        h ^= uint32_t(text[i]);
        h *= 16777619u;
    }
    return h;
}

template <class C> int64_t StringCache<C>::find(const C *text, size_t len, uint32_t hash) {
    if (_slots.empty()) return -1;
    const size_t mask = _slots.size() - 1;
    for (size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot &s = _slots[i];
        if (!s.used) return -1;
        if (s.hash == hash && s.len == len &&
            std::memcmp(&_keys[s.offset], text, len * sizeof(C)) == 0) {
            ++_hits;
            return s.index;
        }
    }
}

template <class C>
void StringCache<C>::put(const C *text, size_t len, uint32_t hash, uint32_t index) {
    if (len > kMaxKey) return;
    if (_count >= kMaxEntries || _keys.size() + len > kMaxUnits) {
        // A fill that hit less than once in eight puts did not pay: rest,
        // twice as long after each such fill in a row.
        if (_hits * 8 < _count) {
            _restLength = _restLength ? std::min(2 * _restLength, kMaxRest) : kMaxEntries;
            _rest = _restLength;
        } else {
            _restLength = 0;
        }
        clear();
    }
    if (_slots.empty()) _slots.resize(1024);
    if ((_count + 1) * 2 > _slots.size()) {
        // Grow to keep the table at most half full.
        std::vector<Slot> old;
        old.swap(_slots);
        _slots.resize(old.size() * 2);
        const size_t mask = _slots.size() - 1;
        for (const Slot &s : old) {
            if (!s.used) continue;
            size_t i = s.hash & mask;
            while (_slots[i].used) i = (i + 1) & mask;
            _slots[i] = s;
        }
    }
    const size_t mask = _slots.size() - 1;
    size_t i = hash & mask;
    for (; _slots[i].used; i = (i + 1) & mask)
        if (_slots[i].hash == hash && _slots[i].len == len &&
            std::memcmp(&_keys[_slots[i].offset], text, len * sizeof(C)) == 0) {
            _slots[i].index = index;
            return;
        }
    Slot &s = _slots[i];
    s.used = true;
    s.hash = hash;
    s.index = index;
    s.offset = uint32_t(_keys.size());
    s.len = uint32_t(len);
    _keys.insert(_keys.end(), text, text + len);
    ++_count;
}

template <class C> void StringCache<C>::clear() {
    _slots.clear();
    _keys.clear();
    _count = 0;
    _hits = 0;
}

template class StringCache<char>;
template class StringCache<wchar_t>;

} // namespace tabrix
