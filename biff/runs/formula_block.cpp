#include "biff/runs/formula_block.h"

#include "biff/strings/xl_unicode_string.h"

namespace tabrix {

namespace {

// A whole raw record at the stream's position, header included.
Biff readRaw(XlsRecords &xls) {
    Biff b;
    uint16_t size = 0;
    xls.readInt16(b.id);
    xls.readInt16(size);
    b.read(xls, size);
    if (b.data.size() != size) throw tberror("Formula: file is corrupt");
    return b;
}

bool next(XlsRecords &xls, uint16_t id) { return !xls.eof() && xls.peekInt16() == id; }

} // namespace

void FormulaBlock::read(XlsRecords &xls, uint16_t size, MemPool &pool) {
    formula.read(xls, size);
    // Followers in the order writers put them: a shared formula, array or
    // table definition, then the String record of a text result.
    for (;;) {
        if (xls.eof()) break;
        uint16_t id = xls.peekInt16();
        if (id == kShrFmlaId && !hasSharedFormula) {
            shrFmla = readRaw(xls);
            hasSharedFormula = true;
        } else if ((id == kArrayId || id == kTableId) && !hasFollowing) {
            following = readRaw(xls);
            hasFollowing = true;
        } else if (id == kStringId && !hasString) {
            string = readRaw(xls);
            hasString = true;
            while (next(xls, XlsRecords::kContinueId)) continues.push_back(readRaw(xls));
            cachedText = decodeStringRecord(string, continues, pool);
        } else {
            break;
        }
    }
}

void FormulaBlock::write(XlsRecords &xls) const {
    if (hasPreceding && preceding.id == 94) preceding.write(xls);
    formula.write(xls);
    if (hasFollowing) following.write(xls);
    if (hasSharedFormula) shrFmla.write(xls);
    if (hasString) {
        string.write(xls);
        for (const Biff &c : continues) c.write(xls);
    }
}

bool FormulaBlock::sharedRange(int &rowFirst, int &rowLast, int &colFirst, int &colLast) const {
    if (!hasSharedFormula || shrFmla.data.size() < 6) return false;
    const std::vector<uint8_t> &d = shrFmla.data;
    rowFirst = d[0] | d[1] << 8;
    rowLast = d[2] | d[3] << 8;
    colFirst = d[4];
    colLast = d[5];
    return true;
}

const wchar_t *decodeStringRecord(const Biff &record, const std::vector<Biff> &continues,
                                  MemPool &pool) {
    const std::vector<uint8_t> &d = record.data;
    if (d.size() < 3) return poolCopy(L"", 0, pool);
    size_t cch = d[0] | d[1] << 8;
    std::wstring out;
    out.reserve(cch);
    bool wide = d[2] & 1;
    size_t pos = 3;
    const std::vector<uint8_t> *seg = &d;
    size_t next = 0;
    while (out.size() < cch) {
        if (pos >= seg->size()) {
            // Characters go on in the next CONTINUE, which restarts with a
            // flags byte.
            if (next >= continues.size()) break;
            seg = &continues[next++].data;
            if (seg->empty()) continue;
            wide = (*seg)[0] & 1;
            pos = 1;
            continue;
        }
        if (wide) {
            if (pos + 1 >= seg->size()) {
                pos = seg->size();
                continue;
            }
            out.push_back(wchar_t((*seg)[pos] | (*seg)[pos + 1] << 8));
            pos += 2;
        } else {
            out.push_back(wchar_t((*seg)[pos]));
            pos += 1;
        }
    }
    return poolCopy(out.c_str(), out.size(), pool);
}

} // namespace tabrix
