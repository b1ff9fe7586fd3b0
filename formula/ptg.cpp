#include "formula/ptg.h"

#include "book/tberror.h"

#include <cwchar>

namespace tabrix {

namespace {

// Payload length of each opcode of the reference class and below; -1 for
// an unknown opcode, -2 for the ones whose length depends on their bytes.
const int8_t kLength[0x40] = {
    -1, 4,  4,  0,  0,  0,  0,  0,  0,  0,  0,  0,  0, 0,  0,  0,  // 0x00
    0,  0,  0,  0,  0,  0,  0,  -2, -2, -2, -1, -1, 1, 1,  2,  8,  // 0x10
    7,  2,  3,  4,  4,  8,  6,  6,  6,  2,  4,  8,  4, 8,  -1, -1, // 0x20
    -1, -1, -1, -1, -1, -1, -1, -1, -1, 6,  6,  10, 6, 10, -1, -1, // 0x30
};

struct ErrorName {
    uint8_t code;
    const wchar_t *text;
};
const ErrorName kErrors[] = {{0x00, L"#NULL!"}, {0x07, L"#DIV/0!"}, {0x0F, L"#VALUE!"},
                             {0x17, L"#REF!"},  {0x1D, L"#NAME?"},  {0x24, L"#NUM!"},
                             {0x2A, L"#N/A"}};

[[noreturn]] void moveError() { throw tberror("GetFormula move1 error"); }

uint16_t get16(const uint8_t *p) { return uint16_t(p[0] | p[1] << 8); }

void put16(std::vector<uint8_t> &out, uint16_t v) {
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}

} // namespace

namespace ptg {

size_t payloadLength(const uint8_t *p, size_t n) {
    const uint8_t op = base(p[0]);
    const int fixed = op < 0x40 ? kLength[op] : -1;
    if (fixed == -1) throw tberror("can't recognize formula block: unknown ptg");
    if (fixed >= 0) return size_t(fixed);
    if (n < 2) moveError();
    const uint8_t sub = p[1];
    switch (op) {
    case kStr: {
        if (n < 3) moveError();
        const size_t cch = sub;
        return 2 + ((p[2] & 1) ? 2 * cch : cch);
    }
    case kExtend:
        switch (sub) {
        case 0x01:
        case 0x02:
        case 0x03:
        case 0x06:
        case 0x07:
        case 0x0A:
        case 0x0B:
        case 0x0D:
        case 0x0F:
        case 0x10:
        case 0x1D: return 6;
        default: throw tberror("unknown Ptg 0x18");
        }
    default: // kAttr
        switch (sub) {
        case 0x01:
        case 0x02:
        case 0x08:
        case 0x10:
        case 0x40: return 3;
        case 0x20:
        case 0x21:
        case 0x41: return 4;
        case kAttrChoose:
            // One byte, a 16-bit count of bytes, then that many bytes and one
            // more.
            if (n < 5) moveError();
            return 4 + size_t(get16(p + 3)) + 1;
        default: throw tberror("unknown Ptg 0x19");
        }
    }
}

const wchar_t *errorText(uint8_t code) {
    for (const ErrorName &e : kErrors)
        if (e.code == code) return e.text;
    return nullptr;
}

int errorCode(const wchar_t *text, size_t len) {
    for (const ErrorName &e : kErrors)
        if (std::wcslen(e.text) == len && std::wmemcmp(e.text, text, len) == 0) return e.code;
    return -1;
}

} // namespace ptg

RgceLoc::RgceLoc(int row, int col, bool rowRelative, bool colRelative) {
    if (col >= 256) throw tberror("RgceLoc: col must be less than 256");
    _row = uint16_t(row);
    _col = uint16_t((col & 0x3FFF) | (colRelative ? 0x4000 : 0) | (rowRelative ? 0x8000 : 0));
}

void RgceLoc::read(const uint8_t *p) {
    _row = get16(p);
    _col = get16(p + 2);
}

void RgceLoc::write(std::vector<uint8_t> &out) const {
    put16(out, _row);
    put16(out, _col);
}

RgceArea::RgceArea(int rowFirst, int rowLast, int colFirst, int colLast, bool rowFirstRelative,
                   bool rowLastRelative, bool colFirstRelative, bool colLastRelative)
    : _rowFirst(uint16_t(rowFirst)), _rowLast(uint16_t(rowLast)),
      _colFirst(uint16_t((colFirst & 0x3FFF) | (colFirstRelative ? 0x4000 : 0) |
                         (rowFirstRelative ? 0x8000 : 0))),
      _colLast(uint16_t((colLast & 0x3FFF) | (colLastRelative ? 0x4000 : 0) |
                        (rowLastRelative ? 0x8000 : 0))) {}

void RgceArea::read(const uint8_t *p) {
    _rowFirst = get16(p);
    _rowLast = get16(p + 2);
    _colFirst = get16(p + 4);
    _colLast = get16(p + 6);
}

void RgceArea::write(std::vector<uint8_t> &out) const {
    put16(out, _rowFirst);
    put16(out, _rowLast);
    put16(out, _colFirst);
    put16(out, _colLast);
}

} // namespace tabrix
