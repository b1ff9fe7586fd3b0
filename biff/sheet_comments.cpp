// Comments on a worksheet: a NoteSh names the cell, its author and the id
// of a note object; the note's shape in the drawing holds the box, and the
// TxO behind it the text.  A second comment on a cell rewrites the first
// one's text, box and author in place.
#include "biff/sheet_frame.h"

#include "biff/records/obj.h"
#include "biff/records/txo.h"
#include "book/code_page.h"
#include "officeart/drawing_group.h"

namespace tabrix {

namespace {

// The index of the TxO that holds the text of note object `objId`, or
// the run's size; `obj` gets the index of the note object.
size_t noteText(const DrawingRun &run, const std::vector<Biff> &records, uint16_t objId,
                size_t &obj) {
    obj = records.size();
    for (size_t i = 0; i < records.size(); ++i) {
        if (!run.topLevel(i)) continue;
        ObjCommon common;
        if (obj == records.size()) {
            if (records[i].id == rid::Obj && common.read(records[i]) &&
                common.ot == ObjCommon::kNote && common.id == objId)
                obj = i;
        } else if (records[i].id == rid::TxO) {
            return i;
        }
    }
    return records.size();
}

} // namespace

template <class C> int SheetImplT<C>::findNote(int row, int col, NoteSh &note) const {
    for (size_t i = 0; i < _notes.size(); ++i) {
        // Row and column lead both forms: other cells are passed unread.
        const std::vector<uint8_t> &d = _notes[i].data;
        if (d.size() >= 4 && (d[0] | d[1] << 8) != row) continue;
        if (d.size() >= 4 && (d[2] | d[3] << 8) != col) continue;
        note.read(_notes[i], oldFormat());
        if (note.row == row && note.col == col) return int(i);
    }
    return -1;
}

template <class C> const C *SheetImplT<C>::readComment(int row, int col) {
    checkRanges(row, col);
    NoteSh note;
    if (findNote(row, col, note) < 0) return nullptr;
    if (oldFormat()) {
        std::wstring bytes(note.oldText.begin(), note.oldText.end());
        for (wchar_t &c : bytes) c = wchar_t(uint8_t(c));
        std::wstring units = codePageToUnits(bytes.c_str(), bytes.size(), _owner->codePage());
        return textResult(units.c_str());
    }
    DrawingRun run(_objects);
    size_t obj = 0, txo = noteText(run, _objects, note.objId, obj);
    if (txo == _objects.size()) return nullptr;
    std::wstring text = txoText(_objects, txo, nullptr);
    return textResult(text.c_str());
}

template <class C>
void SheetImplT<C>::writeComment(int row, int col, const C *value, const C *author, int width,
                                 int height) {
    checkRanges(row, col);
    if (oldFormat()) throw tberror("comments of the older format are read only");
    drawingGroup().initDefaults();
    const OfficeArtCoord anchor = calcCoord(row, col, width, height, 0, 0);
    const std::wstring text = wideArg(value);
    NoteSh note;
    const int existing = findNote(row, col, note);
    note.row = uint16_t(row);
    note.col = uint16_t(col);
    note.flags = 0;
    if (author) {
        note.author = wideArg(author);
    } else {
        std::string fallback = commentAuthor();
        note.author.assign(fallback.begin(), fallback.end());
    }

    DrawingRun run(_objects);
    size_t obj = 0,
           txo = existing >= 0 ? noteText(run, _objects, note.objId, obj) : _objects.size();
    if (txo < _objects.size()) {
        // The cell's comment is there: its text, box and author change.
        size_t next = 0;
        txoText(_objects, txo, &next);
        run.replace(txo, next, txoRecords(text));
        for (const DrawingShape &s : scanDrawing(run.stream()).shapes)
            if (s.hasAnchor && s.dataEnd == run.offsetOf(obj)) {
                std::vector<uint8_t> bytes;
                putCoord(bytes, anchor);
                for (size_t i = 0; i < 8; ++i)
                    run.put16(s.anchorAt + 2 * i, uint16_t(bytes[2 * i] | bytes[2 * i + 1] << 8));
            }
    } else {
        note.objId = nextObjectId(run);
        DrawingLayout layout;
        const uint32_t spid = newShapeId(run, layout);
        std::vector<Biff> pieces;
        pieces.push_back(drawingRecord(commentShape(spid, anchor)));
        pieces.push_back(noteObj(note.objId));
        pieces.push_back(drawingRecord(clientTextbox()));
        for (Biff &b : txoRecords(text)) pieces.push_back(std::move(b));
        addShape(run, layout, std::move(pieces));
    }
    if (existing >= 0)
        _notes[size_t(existing)] = note.record();
    else
        _notes.push_back(note.record());
    _dirty = true;
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
