// DrawingRun: a sheet's drawing as it is kept, the records from its first
// MsoDrawing on — drawing records, the Obj, TxO and CONTINUE records behind
// them and embedded chart substreams, in stream order — seen as one
// drawing byte stream (the bodies of the top-level drawing records and
// their CONTINUE records, joined).  Edits go to the records themselves, so
// that what nobody touched is written back byte for byte.
#ifndef TABRIX_BIFF_DRAWING_RUN_H
#define TABRIX_BIFF_DRAWING_RUN_H

#include "biff/biff_record.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tabrix {

class DrawingRun {
public:
    explicit DrawingRun(std::vector<Biff> &records);

    const std::vector<uint8_t> &stream() const { return _stream; }
    std::vector<Biff> &records() { return _records; }
    // Whether record i lies outside embedded substreams.
    bool topLevel(size_t i) const { return _top[i]; }
    // The drawing bytes before record i.
    size_t offsetOf(size_t i) const { return _start[i]; }

    uint32_t get32(size_t offset) const;
    void put16(size_t offset, uint16_t value);
    void put32(size_t offset, uint32_t value);
    // Puts `pieces` where the stream reaches `offset`: before the drawing
    // record that begins there, or, when the offset falls inside a record,
    // after its first part and the records that follow it, the rest of its
    // bytes going into a drawing record of their own behind the pieces.
    void insert(size_t offset, std::vector<Biff> pieces);
    // Replaces records [first, last) with `pieces`; the drawing bytes must
    // stay as they are.
    void replace(size_t first, size_t last, std::vector<Biff> pieces);
    void reindex();

private:
    uint8_t &at(size_t offset);

    std::vector<Biff> &_records;
    std::vector<uint8_t> _stream;
    std::vector<size_t> _start;
    std::vector<bool> _drawing, _top;
};

// A drawing record holding `bytes`.
Biff drawingRecord(std::vector<uint8_t> bytes);

} // namespace tabrix

#endif
