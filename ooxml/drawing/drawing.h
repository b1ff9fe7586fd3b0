// Drawing: one drawing part of a sheet (the spreadsheet drawing root and its
// anchors).  Pictures are read from and added to it; every other kind of
// anchored object (shapes, group shapes, charts, connectors) and anything
// kept raw stays in the tree as read and is written back unchanged.
#pragma once

#include <cstdint>
#include <string>

#include "ooxml/package/xml_file.h"

namespace tabrix {

// Offsets in a drawing are English Metric Units; the library's are pixels.
constexpr int64_t kEmuPerPixel = 9525;

// A cell corner: column and row, with offsets in EMU.
struct DrawingMarker {
    int col = 0, row = 0;
    int64_t colOff = 0, rowOff = 0;
};

// What an anchor holding a picture says.
struct DrawingPicture {
    enum Kind { TwoCell, OneCell } kind = TwoCell;
    DrawingMarker from, to; // `to` is only set for a two-cell anchor
    int64_t cx = 0, cy = 0; // the extent of a one-cell anchor, EMU
    std::string embed;      // the relation id of the image
};

class Drawing : public XmlFile {
public:
    // An empty drawing.
    explicit Drawing(binding::e_edition edition);
    // A loaded part; throws tberror with the XML layer's description.
    Drawing(binding::e_edition edition, const char *bytes, size_t size);

    // Pictures held by two-cell and one-cell anchors, in document order.
    int pictureSize() const;
    // Picture `index`; throws "picture index is out of range".
    DrawingPicture picture(int index) const;
    // Appends a two-cell anchor holding a picture of the image `relationId`
    // ("rIdN"); offsets in pixels.
    void addAnchor(int rowTop, int colLeft, int rowBottom, int colRight, int colOffTop,
                   int rowOffTop, int colOffBottom, int rowOffBottom,
                   const std::string &relationId);
};

} // namespace tabrix
