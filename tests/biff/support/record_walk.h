// A record walker over the workbook stream of a binary book: the stream
// cut into its substreams (the globals, then each sheet, an embedded chart
// staying inside its sheet), each a list of records with their bytes.  The
// interop tests compare the records a save must carry over unchanged.
#ifndef TABRIX_TESTS_BIFF_RECORD_WALK_H
#define TABRIX_TESTS_BIFF_RECORD_WALK_H

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace bifftest {

struct WalkedRecord {
    uint16_t id = 0;
    std::vector<uint8_t> data;
    bool operator<(const WalkedRecord &o) const { return id != o.id ? id < o.id : data < o.data; }
    bool operator==(const WalkedRecord &o) const { return id == o.id && data == o.data; }
};

struct Substream {
    uint16_t dt = 0; // the type of its BOF
    std::vector<WalkedRecord> records;
};

struct WalkedBook {
    std::string error; // empty when the container and the stream were read
    std::vector<Substream> substreams;
};

// Reads the compound file `file` and walks its workbook stream.  A
// substream runs from a BOF at depth 0 to its matching EOF; records between
// substreams are dropped, as readers ignore them.
WalkedBook walkBook(const std::string &file);

// The same for the file at `path`.
WalkedBook walkFile(const std::string &path);
// A sheet's drawing: its records from the first MsoDrawing up to its notes
// or its window record, embedded charts included.
std::vector<WalkedRecord> drawingRun(const Substream &s);
// The records of `s` whose id is not in `modelled`, sorted: what a save
// must keep byte for byte, though perhaps at another place.
std::vector<WalkedRecord> keptRecords(const Substream &s, const std::set<uint16_t> &modelled);

// "id:size" of each record, for messages.
std::string describe(const std::vector<WalkedRecord> &records);

} // namespace bifftest

#endif
