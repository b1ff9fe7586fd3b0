#include "biff/drawing_run.h"

#include "biff/record_ids.h"
#include "biff/sheet_header.h"
#include "book/tberror.h"

namespace tabrix {

Biff drawingRecord(std::vector<uint8_t> bytes) {
    Biff b;
    b.id = rid::MsoDrawing;
    b.data = std::move(bytes);
    return b;
}

DrawingRun::DrawingRun(std::vector<Biff> &records) : _records(records) { reindex(); }

void DrawingRun::reindex() {
    _stream.clear();
    _start.assign(_records.size(), 0);
    _drawing.assign(_records.size(), false);
    _top.assign(_records.size(), false);
    int depth = 0;
    bool inDrawing = false;
    for (size_t i = 0; i < _records.size(); ++i) {
        const Biff &r = _records[i];
        _start[i] = _stream.size();
        _top[i] = depth == 0 && r.id != SubstreamHeader::kId;
        if (r.id == SubstreamHeader::kId) ++depth;
        if (r.id == rid::Eof && depth > 0) --depth;
        bool drawing = _top[i] && (r.id == rid::MsoDrawing || (r.id == rid::Continue && inDrawing));
        if (_top[i]) inDrawing = drawing;
        _drawing[i] = drawing;
        if (drawing) _stream.insert(_stream.end(), r.data.begin(), r.data.end());
    }
}

uint8_t &DrawingRun::at(size_t offset) {
    for (size_t i = 0; i < _records.size(); ++i)
        if (_drawing[i] && offset >= _start[i] && offset - _start[i] < _records[i].data.size())
            return _records[i].data[offset - _start[i]];
    throw tberror("OfficeArtDgContainer: file is corrupt");
}

uint32_t DrawingRun::get32(size_t offset) const {
    if (offset + 4 > _stream.size()) throw tberror("OfficeArtDgContainer: file is corrupt");
    uint32_t v = 0;
    for (int i = 3; i >= 0; --i) v = v << 8 | _stream[offset + size_t(i)];
    return v;
}

void DrawingRun::put16(size_t offset, uint16_t value) {
    for (size_t i = 0; i < 2; ++i) at(offset + i) = _stream[offset + i] = uint8_t(value >> (8 * i));
}

void DrawingRun::put32(size_t offset, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) at(offset + i) = _stream[offset + i] = uint8_t(value >> (8 * i));
}

void DrawingRun::insert(size_t offset, std::vector<Biff> pieces) {
    size_t where = _records.size();
    for (size_t i = 0; i < _records.size() && offset < _stream.size(); ++i) {
        if (!_drawing[i]) continue;
        size_t size = _records[i].data.size();
        if (offset < _start[i] || offset - _start[i] >= size) continue;
        if (offset == _start[i]) {
            where = i;
            break;
        }
        // The offset falls inside record i: its tail follows the pieces.
        std::vector<uint8_t> &data = _records[i].data;
        Biff tail = drawingRecord(
            std::vector<uint8_t>(data.begin() + long(offset - _start[i]), data.end()));
        data.resize(offset - _start[i]);
        where = i + 1;
        while (where < _records.size() && !_drawing[where]) ++where;
        pieces.push_back(std::move(tail));
        break;
    }
    // Drawing bytes that went on in a CONTINUE record now follow the
    // pieces' text records: they open a drawing record of their own.
    if (where < _records.size() && _records[where].id == rid::Continue)
        _records[where].id = rid::MsoDrawing;
    _records.insert(_records.begin() + long(where), pieces.begin(), pieces.end());
    reindex();
}

void DrawingRun::replace(size_t first, size_t last, std::vector<Biff> pieces) {
    _records.erase(_records.begin() + long(first), _records.begin() + long(last));
    _records.insert(_records.begin() + long(first), pieces.begin(), pieces.end());
    reindex();
}

} // namespace tabrix
