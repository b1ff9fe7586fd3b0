#include "biff/records/txo.h"

#include "biff/record_ids.h"
#include "officeart/byte_cursor.h"

#include <algorithm>

namespace tabrix {

namespace {

const char *const kError = "error in record TextObject";
const size_t kMaxText = 32767;
const size_t kMaxData = 8224;
const uint16_t kFlags = 530; // left aligned, top aligned, locked text
const uint16_t kFont = 5;

} // namespace

std::wstring txoText(const std::vector<Biff> &run, size_t at, size_t *next) {
    const Biff &txo = run[at];
    ByteCursor in(txo.data.data(), txo.data.size());
    in.bytes(10, kError); // flags, rotation, reserved
    size_t cch = in.u16(kError);
    size_t cbRuns = in.u16(kError);
    std::wstring text;
    size_t i = at + 1;
    while (text.size() < cch && i < run.size() && run[i].id == rid::Continue) {
        const Biff &c = run[i++];
        ByteCursor piece(c.data.data(), c.data.size());
        bool wide = (piece.u8(kError) & 1) != 0;
        while (text.size() < cch && piece.left() >= (wide ? 2u : 1u))
            text += wchar_t(wide ? piece.u16(kError) : piece.u8(kError));
    }
    // The runs follow in records of their own.
    for (size_t runBytes = 0; runBytes < cbRuns && i < run.size() && run[i].id == rid::Continue;)
        runBytes += run[i++].data.size();
    if (next) *next = i;
    return text;
}

std::vector<Biff> txoRecords(const std::wstring &units) {
    const size_t cch = std::min(units.size(), kMaxText);
    bool wide = false;
    for (size_t i = 0; i < cch; ++i) wide = wide || units[i] > 0xFF;
    std::vector<Biff> out(1);
    Biff &txo = out[0];
    txo.id = rid::TxO;
    putU16(txo.data, kFlags);
    putU16(txo.data, 0);
    for (int i = 0; i < 3; ++i) putU16(txo.data, 0);
    putU16(txo.data, uint16_t(cch));
    putU16(txo.data, cch ? 16 : 0);
    putU16(txo.data, 0);
    putU16(txo.data, 0); // no formula
    if (cch == 0) return out;
    const size_t perRecord = (kMaxData - 1) / (wide ? 2 : 1);
    for (size_t at = 0; at < cch; at += perRecord) {
        Biff piece;
        piece.id = rid::Continue;
        putU8(piece.data, wide ? 1 : 0);
        for (size_t i = at; i < std::min(cch, at + perRecord); ++i)
            wide ? putU16(piece.data, uint16_t(units[i])) : putU8(piece.data, uint8_t(units[i]));
        out.push_back(std::move(piece));
    }
    Biff runs;
    runs.id = rid::Continue;
    for (uint16_t v : {uint16_t(0), kFont, uint16_t(0), uint16_t(0), uint16_t(cch), uint16_t(0)})
        putU16(runs.data, v);
    putU32(runs.data, 0);
    out.push_back(std::move(runs));
    return out;
}

} // namespace tabrix
