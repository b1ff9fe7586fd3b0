#include "officeart/sheet_shapes.h"

#include "officeart/property_table.h"
#include "officeart/record_header.h"

namespace tabrix {

namespace {

const char *const kCorrupt = "OfficeArtDgContainer: file is corrupt";
const uint16_t kDg = 0xF002, kSpgr = 0xF003, kSp = 0xF004, kFDG = 0xF008, kFSP = 0xF00A,
               kFOPT = 0xF00B, kAnchor = 0xF010, kClientData = 0xF011, kTextbox = 0xF00D;
const unsigned kPictureProperty = 260;
const int kMaxDepth = 32;

struct Scanner {
    const std::vector<uint8_t> &s;
    DrawingLayout out;

    uint16_t u16(size_t at) const { return uint16_t(s[at] | s[at + 1] << 8); }
    uint32_t u32(size_t at) const { return u16(at) | uint32_t(u16(at + 2)) << 16; }

    // The header at `at` within [at, end): its type and body end.
    OfficeArtRecordHeader header(size_t at, size_t end, size_t &bodyEnd) const {
        if (end - at < 8) throw tberror(kCorrupt);
        ByteCursor c(s.data() + at, 8);
        OfficeArtRecordHeader h;
        h.read(c, kCorrupt);
        if (h.len() > end - at - 8) throw tberror(kCorrupt);
        bodyEnd = at + 8 + h.len();
        return h;
    }

    void shape(size_t at, size_t end) {
        DrawingShape sp;
        while (at < end) {
            size_t next = 0;
            OfficeArtRecordHeader h = header(at, end, next);
            const size_t body = at + 8;
            if (h.type() == kFSP && h.len() >= 4) {
                sp.spid = u32(body);
                sp.spidAt = body;
            }
            if (h.type() == kAnchor && h.len() >= 18) {
                sp.hasAnchor = true;
                sp.anchorAt = body + 2;
                uint16_t *v = &sp.anchor.colFirst;
                for (int i = 0; i < 8; ++i) v[i] = u16(body + 2 + 2 * size_t(i));
            }
            if (h.type() == kClientData) sp.dataEnd = next;
            if (h.type() == kFOPT) {
                unsigned n = h.instance();
                for (unsigned i = 0; i < n && 6 * (i + 1) <= h.len(); ++i) {
                    OfficeArtFOPTEOPID id(u16(body + 6 * i));
                    if (id.opid() == kPictureProperty) sp.pib = int32_t(u32(body + 6 * i + 2));
                }
            }
            at = next;
        }
        out.shapes.push_back(sp);
    }

    void group(size_t at, size_t end, int depth) {
        if (depth > kMaxDepth) throw tberror(kCorrupt);
        while (at < end) {
            size_t next = 0;
            OfficeArtRecordHeader h = header(at, end, next);
            if (h.type() == kSp) shape(at + 8, next);
            if (h.type() == kSpgr) group(at + 8, next, depth + 1);
            at = next;
        }
    }
};

void putHeader(std::vector<uint8_t> &out, uint16_t ver, uint16_t instance, uint16_t type,
               uint32_t len) {
    OfficeArtRecordHeader(ver, instance, type, len).write(out);
}

void putFSP(std::vector<uint8_t> &out, uint16_t shapeType, uint32_t spid, uint32_t flags) {
    putHeader(out, 2, shapeType, kFSP, 8);
    putU32(out, spid);
    putU32(out, flags);
}

void putAnchor(std::vector<uint8_t> &out, const OfficeArtCoord &anchor) {
    putHeader(out, 0, 0, kAnchor, 18);
    putU16(out, 0);
    putCoord(out, anchor);
}

// Wraps the children in a shape container of `len` body bytes.
std::vector<uint8_t> container(const std::vector<uint8_t> &children, uint32_t len) {
    std::vector<uint8_t> out;
    putHeader(out, 15, 0, kSp, len);
    putBytes(out, children);
    return out;
}

} // namespace

void putCoord(std::vector<uint8_t> &out, const OfficeArtCoord &c) {
    for (uint16_t v :
         {c.colFirst, c.dxFirst, c.rwFirst, c.dyFirst, c.colLast, c.dxLast, c.rwLast, c.dyLast})
        putU16(out, v);
}

DrawingLayout scanDrawing(const std::vector<uint8_t> &stream) {
    Scanner sc{stream, {}};
    size_t end = 0;
    OfficeArtRecordHeader dg = sc.header(0, stream.size(), end);
    if (dg.type() != kDg || dg.ver() != 15) throw tberror(kCorrupt);
    bool fdg = false, spgr = false;
    for (size_t at = 8; at < end;) {
        size_t next = 0;
        OfficeArtRecordHeader h = sc.header(at, end, next);
        if (h.type() == kFDG && !fdg && h.len() >= 8) {
            fdg = true;
            sc.out.dgid = h.instance();
            sc.out.fdgAt = at + 8;
            sc.out.csp = sc.u32(at + 8);
            sc.out.spidCur = sc.u32(at + 12);
        } else if (h.type() == kSpgr && !spgr) {
            spgr = true;
            sc.out.spgrAt = at;
            sc.out.spgrEnd = next;
            sc.group(at + 8, next, 0);
        } else if (h.type() == kSp) {
            sc.shape(at + 8, next);
        }
        at = next;
    }
    if (!fdg || !spgr) throw tberror(kCorrupt);
    return sc.out;
}

std::vector<uint8_t> drawingHead(uint16_t dgid, uint32_t groupSpid) {
    std::vector<uint8_t> groupShape;
    putHeader(groupShape, 1, 0, 0xF009, 16);
    for (int i = 0; i < 4; ++i) putU32(groupShape, 0);
    putFSP(groupShape, 0, groupSpid, 5); // a group, the drawing's top one
    std::vector<uint8_t> sp = container(groupShape, uint32_t(groupShape.size()));

    std::vector<uint8_t> out;
    putHeader(out, 15, 0, kDg, uint32_t(16 + 8 + sp.size()));
    putHeader(out, 0, dgid, kFDG, 8);
    putU32(out, 1);
    putU32(out, groupSpid);
    putHeader(out, 15, 0, kSpgr, uint32_t(sp.size()));
    putBytes(out, sp);
    return out;
}

std::vector<uint8_t> pictureShape(uint32_t spid, int32_t pib, const OfficeArtCoord &anchor) {
    std::vector<uint8_t> c;
    putFSP(c, 75, spid, 2560); // a picture frame with an anchor and a shape type
    OfficeArtRGFOPTE props(pib);
    putHeader(c, 3, uint16_t(props.entries().size()), kFOPT, props.size());
    props.write(c);
    putAnchor(c, anchor);
    putHeader(c, 0, 0, kClientData, 0);
    return container(c, uint32_t(c.size()));
}

std::vector<uint8_t> commentShape(uint32_t spid, const OfficeArtCoord &anchor) {
    static const struct {
        unsigned id;
        uint32_t value;
    } kProps[] = {{128, 14223548},   {191, 0x00080008}, {344, 0},
                  {385, 0x08000050}, {387, 0x08000050}, {447, 0x00110010},
                  {513, 0},          {575, 0x00030003}, {959, 0x000A0002}};
    std::vector<uint8_t> c;
    putFSP(c, 202, spid, 2560); // a text box
    putHeader(c, 3, uint16_t(sizeof kProps / sizeof kProps[0]), kFOPT,
              uint32_t(6 * (sizeof kProps / sizeof kProps[0])));
    for (const auto &p : kProps) {
        putU16(c, OfficeArtFOPTEOPID(p.id, false, false).raw());
        putU32(c, p.value);
    }
    putAnchor(c, anchor);
    putHeader(c, 0, 0, kClientData, 0);
    return container(c, uint32_t(c.size() + clientTextbox().size()));
}

std::vector<uint8_t> clientTextbox() {
    std::vector<uint8_t> out;
    putHeader(out, 0, 0, kTextbox, 0);
    return out;
}

} // namespace tabrix
