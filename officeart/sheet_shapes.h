// A sheet's drawing as one byte stream (the bodies of its drawing records
// joined): where its container, drawing record and group lie, and the shapes
// with their anchors and pictures; and the bytes of the shapes the library
// places itself.  Offsets are positions in the joined stream.
#ifndef TABRIX_OFFICEART_SHEET_SHAPES_H
#define TABRIX_OFFICEART_SHEET_SHAPES_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tabrix {

// A shape's cell anchor: first column, its offset in 1024ths, first row,
// its offset in 256ths, then the same for the last cell.
struct OfficeArtCoord {
    uint16_t colFirst = 0, dxFirst = 0, rwFirst = 0, dyFirst = 0;
    uint16_t colLast = 0, dxLast = 0, rwLast = 0, dyLast = 0;
};

struct DrawingShape {
    uint32_t spid = 0;
    size_t spidAt = 0; // offset of the shape id, 0 without one
    bool hasAnchor = false;
    OfficeArtCoord anchor;
    size_t anchorAt = 0; // offset of the anchor's eight values
    int32_t pib = -1;    // property 260, the one-based picture, -1 without
    size_t dataEnd = 0;  // offset just behind the client data, 0 without
};

struct DrawingLayout {
    uint16_t dgid = 0;
    size_t fdgAt = 0; // offset of the drawing record's body
    uint32_t csp = 0, spidCur = 0;
    size_t spgrAt = 0, spgrEnd = 0; // the group container's header and end
    std::vector<DrawingShape> shapes;
};

// Throws "OfficeArtDgContainer: file is corrupt" for a stream that is not
// one drawing container with a drawing record and a group, or whose records
// overrun it.
DrawingLayout scanDrawing(const std::vector<uint8_t> &stream);

// A drawing's beginning: container, drawing record (one shape, the group's
// own with id groupSpid) and the group holding that shape.  Lengths cover
// these bytes.
std::vector<uint8_t> drawingHead(uint16_t dgid, uint32_t groupSpid);

// A picture shape of picture `pib` (one-based).
std::vector<uint8_t> pictureShape(uint32_t spid, int32_t pib, const OfficeArtCoord &anchor);

// A comment's box up to its client data; its container's length counts the
// client text box (clientTextbox()) that follows in a later record.
std::vector<uint8_t> commentShape(uint32_t spid, const OfficeArtCoord &anchor);
std::vector<uint8_t> clientTextbox();

void putCoord(std::vector<uint8_t> &out, const OfficeArtCoord &c);

} // namespace tabrix

#endif
