// StringCache: texts recently written to string cells, as the caller gave
// them, with the index of the shared string each became.  It lets a text
// already in the shared string table be found without converting it or
// copying it.  An index found here must still be checked against the table,
// which other sheets may change.
#ifndef TABRIX_BIFF_SHEET_STRING_CACHE_H
#define TABRIX_BIFF_SHEET_STRING_CACHE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tabrix {

template <class C> class StringCache {
public:
    // Longer texts are not kept.
    static constexpr size_t kMaxKey = 255;

    // FNV-1a over the text's units.
    static uint32_t hash(const C *text, size_t len);
    // The index kept for the text, or -1.
    int64_t find(const C *text, size_t len, uint32_t hash);
    // Keeps the text; a full cache starts over empty.
    void put(const C *text, size_t len, uint32_t hash, uint32_t index);
    void clear();
    // False while the cache rests: when a whole fill of it found almost
    // nothing (every text distinct), it is left alone for as many writes
    // as it holds, twice that after a second such fill, and so on.
    bool active() {
        if (_rest == 0) return true;
        --_rest;
        return false;
    }

private:
    static constexpr size_t kMaxEntries = 1u << 16;
    static constexpr size_t kMaxUnits = 1u << 22;
    struct Slot {
        uint32_t hash = 0, index = 0, offset = 0, len = 0;
        bool used = false;
    };
    std::vector<Slot> _slots;
    std::vector<C> _keys;
    size_t _count = 0;
    size_t _hits = 0; // finds that hit since the cache last started over
    size_t _rest = 0; // writes left to pass the cache by
    size_t _restLength = 0;
    static constexpr size_t kMaxRest = kMaxEntries * 64;
};

extern template class StringCache<char>;
extern template class StringCache<wchar_t>;

} // namespace tabrix

#endif
