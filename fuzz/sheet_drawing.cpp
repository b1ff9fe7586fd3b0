// Reads arbitrary bytes as a sheet's drawing run: records of a 16-bit id, a
// 16-bit length and the bytes.  The drawing stream is scanned, every TxO,
// NoteSh and Obj read; a drawing that scans takes one more shape at the end
// of its group, and must then scan again with that shape in it.
#include "biff/drawing_run.h"
#include "biff/record_ids.h"
#include "biff/records/note_sh.h"
#include "biff/records/obj.h"
#include "biff/records/txo.h"
#include "officeart/sheet_shapes.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

using namespace tabrix;

namespace {

std::vector<Biff> records(const uint8_t *data, size_t size) {
    std::vector<Biff> out;
    size_t p = 0;
    while (p + 4 <= size) {
        Biff b;
        b.id = uint16_t(data[p] | data[p + 1] << 8);
        size_t n = std::min(size - p - 4, size_t(data[p + 2] | data[p + 3] << 8));
        b.data.assign(data + p + 4, data + p + 4 + n);
        out.push_back(std::move(b));
        p += 4 + n;
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    std::vector<Biff> run = records(data, size);
    for (size_t i = 0; i < run.size(); ++i) {
        try {
            if (run[i].id == rid::TxO) txoText(run, i, nullptr);
            NoteSh note;
            if (run[i].id == rid::Note) note.read(run[i], (size & 1) != 0);
            ObjCommon common;
            if (run[i].id == rid::Obj) common.read(run[i]);
        } catch (const tberror &) {}
    }
    DrawingRun drawing(run);
    DrawingLayout layout;
    try {
        layout = scanDrawing(drawing.stream());
    } catch (const tberror &) {
        return 0;
    }
    std::vector<uint8_t> shape = pictureShape(layout.spidCur + 1, 1, OfficeArtCoord());
    std::vector<Biff> pieces{drawingRecord(shape), pictureObj(1)};
    drawing.insert(layout.spgrEnd, pieces);
    drawing.put32(4, drawing.get32(4) + uint32_t(shape.size()));
    drawing.put32(layout.spgrAt + 4, drawing.get32(layout.spgrAt + 4) + uint32_t(shape.size()));
    DrawingLayout grown = scanDrawing(drawing.stream());
    if (grown.shapes.size() != layout.shapes.size() + 1) std::abort();
    bool found = false;
    for (const DrawingShape &sp : grown.shapes) found = found || sp.spid == layout.spidCur + 1;
    if (!found) std::abort();
    return 0;
}
