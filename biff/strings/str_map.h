// StrMap: the strings of the shared string table in index order, with a
// hash table from string to index for deduplication while a book is built.
// Strings enter the hash table only at the next look-up that needs it: a
// loaded table (appended with `force`), so that a book that is only read
// never builds it, and new texts that the hash filter proved absent, so
// that a book of distinct texts is written without searching.
#ifndef TABRIX_BIFF_STRINGS_STR_MAP_H
#define TABRIX_BIFF_STRINGS_STR_MAP_H

#include "book/pod_vector.h"
#include "biff/strings/ext_string.h"
#include "biff/strings/hash_filter.h"

#include <sparsehash/sparse_hash_map>

#include <cstddef>
#include <cstdint>

namespace tabrix {

// FNV-1 over the text's characters, multiply first, then XOR; the hash
// a string carries already when it has one.
struct HashFnv {
    static uint64_t of(const wchar_t *text);
    size_t operator()(const ExtString &s) const { return size_t(s.hash ? s.hash : of(s.text)); }
};

// Equal text and equal rich-text/phonetic bits; equal runs when formatted;
// strings with phonetic data are never equal.  The width bit is ignored.
struct EqStr {
    bool operator()(const ExtString &a, const ExtString &b) const {
        // Different hashes mean different texts: most probes end here,
        // without reading the stored text.
        if (a.hash && b.hash && a.hash != b.hash) return false;
        return equal(a, b);
    }
    static bool equal(const ExtString &a, const ExtString &b);
};

class StrMap {
public:
    StrMap();

    unsigned insert(const ExtString &s, bool force, bool &inserted);
    // Finds a plain text (no runs, no phonetic data) without copying it:
    // its index, or -1.  `hash` is HashFnv::of(text).
    int64_t find(const wchar_t *text, uint64_t hash);
    // Appends a string that find() did not find; answers its index.
    unsigned add(const ExtString &s);
    // Replaces the string at `index` (an index outside the table is ignored).
    void insert(unsigned index, const ExtString &s);
    const ExtString &extract(unsigned index) const { return _strings.at(index); }
    unsigned count() const { return unsigned(_strings.size()); }
    void reserve(size_t n) { _strings.reserve(n); }
    void reset();

private:
    // Brings the strings appended since the last look-up into the table; of
    // equal strings the later index wins.
    void sync();
    // Gives the strings not yet filtered their hashes and enters them in
    // the filter.
    void filterAll();
    int64_t lookUp(const ExtString &key);

    PodVector<ExtString> _strings;
    size_t _mapped = 0;
    HashFilter _filter;
    size_t _filtered = 0;
    google::sparse_hash_map<ExtString, unsigned, HashFnv, EqStr> _map;
};

} // namespace tabrix

#endif
