// Pictures on a worksheet: the cell-anchor arithmetic in pixels, placing a
// book picture as a shape of the sheet's drawing, and reading the placed
// pictures back.  Every shape gets an id of its own from the book's
// clusters; the drawing's container, group and drawing record are patched
// in place, so that the rest of a loaded drawing stays as it was read.
#include "biff/sheet_frame.h"

#include "biff/records/obj.h"
#include "book/units.h"
#include "officeart/drawing_clusters.h"
#include "officeart/drawing_group.h"

#include <algorithm>

namespace tabrix {

namespace {

const int kLastRow = 65535, kLastCol = 255;

int roundPx(double x) { return int(x + 0.5); }

} // namespace

template <class C> int SheetImplT<C>::rowHeightInt(int row) const {
    int i = rowIndexOf(row);
    return (i >= 0 ? _rowList[size_t(i)].height : _defaultRowHeight) / 15;
}

template <class C> int SheetImplT<C>::colWidthPx(int col) const {
    const int w = _owner->styles().maxDigWidth();
    for (const ColInfo &ci : _colInfos)
        if (ci.covers(col)) return ci.hidden() ? 0 : int(ci.coldx * double(w) / 256 + 0.5);
    return ExcelUnitsConverter::defaultColWidthPx(_defColWidth, w);
}

template <class C>
OfficeArtCoord SheetImplT<C>::calcCoord(int row, int col, int width, int height, int offsetX,
                                        int offsetY) {
    checkRanges(row, col);
    if (width < -1 || height < -1 || offsetX < 0 || offsetY < 0)
        throw tberror("picture size is incorrect");
    int rowFirst = row, rowLast = row, colFirst = col, colLast = col;
    int mr0 = 0, mr1 = 0, mc0 = 0, mc1 = 0;
    if ((width == -1 || height == -1) && getMerge(row, col, &mr0, &mr1, &mc0, &mc1)) {
        if (height == -1) rowFirst = mr0, rowLast = mr1;
        if (width == -1) colFirst = mc0, colLast = mc1;
    }
    int restX = width == -1 ? -1 : width + offsetX;
    while (restX != -1 && colLast < kLastCol && restX >= colWidthPx(colLast))
        restX -= colWidthPx(colLast++);
    int restY = height == -1 ? -1 : height + offsetY;
    while (restY != -1 && rowLast < kLastRow && restY >= rowHeightInt(rowLast))
        restY -= rowHeightInt(rowLast++);
    // At the sheet's edge the box ends with the last cell.
    if (restX != -1) restX = std::min(restX, colWidthPx(colLast));
    if (restY != -1) restY = std::min(restY, rowHeightInt(rowLast));

    auto part = [](int amount, int whole, int units) {
        return whole > 0 ? uint16_t(std::min<int64_t>(int64_t(amount) * units / whole, 0xFFFF))
                         : uint16_t(0);
    };
    OfficeArtCoord c;
    c.colFirst = uint16_t(colFirst);
    c.rwFirst = uint16_t(rowFirst);
    c.colLast = uint16_t(colLast);
    c.rwLast = uint16_t(rowLast);
    c.dxLast = restX == -1 ? 32767 : part(restX, colWidthPx(colLast), 1024);
    c.dyLast = restY == -1 ? 32767 : part(restY, rowHeightInt(rowLast), 256);
    c.dyFirst = part(offsetY, rowHeightInt(rowFirst), 256);
    c.dxFirst = part(offsetX, colWidthPx(colFirst), 1024);
    return c;
}

template <class C> MsoDrawingGroup &SheetImplT<C>::drawingGroup() { return _owner->drawingGroup(); }

template <class C> uint16_t SheetImplT<C>::nextObjectId(const DrawingRun &run) const {
    uint16_t last = 0;
    for (size_t i = 0; i < _objects.size(); ++i) {
        ObjCommon common;
        if (_objects[i].id == rid::Obj && run.topLevel(i) && common.read(_objects[i]))
            last = std::max(last, common.id);
    }
    if (last == 0xFFFF) throw tberror("too many objects on the sheet");
    return uint16_t(last + 1);
}

template <class C> std::vector<uint32_t> SheetImplT<C>::otherDrawingIds() {
    std::vector<uint32_t> used;
    for (int i = 0; i < _owner->sheetCount(); ++i) {
        SheetImplT *other = _owner->sheetAt(i);
        if (!other || other == this || other->_objects.empty()) continue;
        DrawingRun theirs(other->_objects);
        try {
            used.push_back(scanDrawing(theirs.stream()).dgid);
        } catch (const tberror &) {
            // A drawing that can't be read claims no id.
        }
    }
    return used;
}

template <class C> void SheetImplT<C>::renumberDrawing() {
    if (_objects.empty()) return;
    try {
        DrawingRun run(_objects);
        const DrawingLayout layout = scanDrawing(run.stream());
        OfficeArtFDGGBlock &block = drawingGroup().clusters();
        uint32_t last = 0;
        const uint32_t dgid = startDrawing(block, otherDrawingIds(), last);
        for (const DrawingShape &s : layout.shapes) {
            if (!s.spidAt) continue;
            last = claimShapeId(block, dgid, last);
            run.put32(s.spidAt, last);
        }
        // The drawing record: its instance is the drawing id.
        const size_t head = layout.fdgAt - 8;
        run.put16(head, uint16_t((run.get32(head) & 0xF) | dgid << 4));
        run.put32(layout.fdgAt + 4, last);
    } catch (const tberror &) {
        // Kept as it came.
    }
}

template <class C> uint32_t SheetImplT<C>::newShapeId(DrawingRun &run, DrawingLayout &layout) {
    OfficeArtFDGGBlock &block = drawingGroup().clusters();
    if (run.stream().empty()) {
        if (!_objects.empty()) throw tberror("OfficeArtDgContainer: file is corrupt");
        uint32_t last = 0;
        uint32_t dgid = startDrawing(block, otherDrawingIds(), last);
        uint32_t groupId = claimShapeId(block, dgid, last);
        _objects.push_back(drawingRecord(drawingHead(uint16_t(dgid), groupId)));
        run.reindex();
    }
    layout = scanDrawing(run.stream());
    uint32_t spid = claimShapeId(block, layout.dgid, layout.spidCur);
    run.put32(layout.fdgAt, layout.csp + 1);
    run.put32(layout.fdgAt + 4, spid);
    return spid;
}

template <class C>
void SheetImplT<C>::addShape(DrawingRun &run, const DrawingLayout &layout,
                             std::vector<Biff> pieces) {
    uint32_t added = 0;
    for (const Biff &b : pieces)
        if (b.id == rid::MsoDrawing) added += uint32_t(b.data.size());
    run.insert(layout.spgrEnd, std::move(pieces));
    run.put32(4, run.get32(4) + added);
    run.put32(layout.spgrAt + 4, run.get32(layout.spgrAt + 4) + added);
}

template <class C>
void SheetImplT<C>::setPicture(int row, int col, int pictureId, double scale, int offsetX,
                               int offsetY) {
    MsoDrawingGroup &group = drawingGroup();
    if (pictureId < 0 || size_t(pictureId) >= group.pictureCount())
        throw tberror("pictureId is out of range");
    const OfficeArtBlip *blip = group.picture(size_t(pictureId)).blip();
    int width = blip ? blip->width() : 0, height = blip ? blip->height() : 0;
    setPicture2(row, col, pictureId, int(width * scale), int(height * scale), offsetX, offsetY);
}

template <class C>
void SheetImplT<C>::setPicture2(int row, int col, int pictureId, int width, int height, int offsetX,
                                int offsetY) {
    checkRanges(row, col);
    MsoDrawingGroup &group = drawingGroup();
    if (pictureId < 0 || size_t(pictureId) >= group.pictureCount())
        throw tberror("pictureId is out of range");
    const bool clampX = offsetX > colWidthPx(col), clampY = offsetY > rowHeightInt(row);
    if (clampX) offsetX = colWidthPx(col);
    if (clampY) offsetY = rowHeightInt(row);
    OfficeArtCoord anchor = calcCoord(row, col, width, height, offsetX, offsetY);

    DrawingRun run(_objects);
    const uint16_t objId = nextObjectId(run);
    DrawingLayout layout;
    const uint32_t spid = newShapeId(run, layout);
    std::vector<Biff> pieces;
    pieces.push_back(drawingRecord(pictureShape(spid, pictureId + 1, anchor)));
    pieces.push_back(pictureObj(objId));
    addShape(run, layout, std::move(pieces));
    group.addPicRef(pictureId + 1);
    _dirty = true;
    if (clampX || clampY)
        _owner->message().assign(clampX && clampY
                                     ? "warning: offset_x and offset_y exceed cell's size"
                                 : clampX ? "warning: offset_x exceed cell's width"
                                          : "warning: offset_y exceed cell's height");
}

template <class C> int SheetImplT<C>::pictureSize() {
    if (_objects.empty()) return 0;
    DrawingRun run(_objects);
    int n = 0;
    for (const DrawingShape &s : scanDrawing(run.stream()).shapes)
        if (s.hasAnchor && s.pib >= 0) ++n;
    return n;
}

template <class C>
int SheetImplT<C>::getPicture(int index, int *rowTop, int *colLeft, int *rowBottom, int *colRight,
                              int *width, int *height, int *offsetX, int *offsetY) {
    std::vector<DrawingShape> shapes;
    if (!_objects.empty()) {
        DrawingRun run(_objects);
        shapes = scanDrawing(run.stream()).shapes;
    }
    int n = 0;
    for (const DrawingShape &s : shapes) {
        if (!s.hasAnchor || s.pib < 0 || n++ != index) continue;
        const OfficeArtCoord &a = s.anchor;
        const int ox = roundPx(a.dxFirst * colWidthPx(a.colFirst) / 1024.0);
        const int oy = roundPx(a.dyFirst * rowHeightInt(a.rwFirst) / 256.0);
        int w = -ox + roundPx(a.dxLast * colWidthPx(std::min<int>(a.colLast, kLastCol)) / 1024.0);
        for (int c = a.colFirst; c < a.colLast && c <= kLastCol; ++c) w += colWidthPx(c);
        int h = -oy + roundPx(a.dyLast * rowHeightInt(a.rwLast) / 256.0);
        for (int r = a.rwFirst; r < a.rwLast; ++r) h += rowHeightInt(r);
        if (rowTop) *rowTop = a.rwFirst;
        if (colLeft) *colLeft = a.colFirst;
        if (rowBottom) *rowBottom = a.rwLast;
        if (colRight) *colRight = a.colLast;
        if (width) *width = w;
        if (height) *height = h;
        if (offsetX) *offsetX = ox;
        if (offsetY) *offsetY = oy;
        return s.pib - 1;
    }
    throw tberror("picture not found");
}

template class SheetImplT<char>;
template class SheetImplT<wchar_t>;

} // namespace tabrix
