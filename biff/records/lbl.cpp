#include "biff/records/lbl.h"
#include "book/tberror.h"

#include <algorithm>

#include <cwctype>

namespace tabrix {

namespace {

const wchar_t *const kBuiltinNames[] = {
    L"Consolidate_Area", // 0
    L"Auto_Open",        // 1
    L"Auto_Close",       // 2
    L"Extract",          // 3
    L"Database",         // 4
    L"Criteria",         // 5
    L"Print_Area",       // 6
    L"Print_Titles",     // 7
    L"Recorder",         // 8
    L"Data_Form",        // 9
    L"Auto_Activate",    // 10
    L"Auto_Deactivate",  // 11
    L"Sheet_Title",      // 12
    L"_FilterDatabase",  // 13
};
const unsigned kBuiltinCount = sizeof kBuiltinNames / sizeof kBuiltinNames[0];

bool sameText(const std::wstring &a, const wchar_t *b) {
    size_t i = 0;
    for (; i < a.size(); ++i) {
        if (!b[i] || std::towlower(wint_t(a[i])) != std::towlower(wint_t(b[i]))) return false;
    }
    return b[i] == 0;
}

void readByte(XlsRecords &xls, uint8_t &b, unsigned short &remaining) {
    xls.readWithContinueRecords(&b, 1, remaining);
}

// Writes bytes with CONTINUE records declared at 8224 wherever the record
// is full.
void writeBytes(XlsRecords &xls, const std::vector<uint8_t> &b, unsigned short &remaining,
                bool &continued) {
    size_t done = 0;
    while (done < b.size()) {
        if (remaining == 0) {
            writeContinue(xls, remaining);
            continued = true;
        }
        size_t n = std::min<size_t>(remaining, b.size() - done);
        xls.write(b.data() + done, n);
        done += n;
        remaining = static_cast<unsigned short>(remaining - n);
    }
}

} // namespace

const wchar_t *Lbl::builtinName(unsigned code) {
    return code < kBuiltinCount ? kBuiltinNames[code] : nullptr;
}

int Lbl::builtinCode(const wchar_t *text) {
    if (!text) return -1;
    for (unsigned i = 0; i < kBuiltinCount; ++i)
        if (sameText(kBuiltinNames[i], text)) return int(i);
    return -1;
}

std::wstring Lbl::nameText() const {
    if (!name.text || name.cch == 0) return std::wstring();
    if (builtin() && name.cch == 1) {
        const wchar_t *t = builtinName(unsigned(name.text[0]));
        if (t) return t;
    }
    return std::wstring(name.text, name.cch);
}

bool Lbl::isContains(const wchar_t *text) const { return text && sameText(nameText(), text); }

void Lbl::setName(const wchar_t *text, MemPool &pool) {
    int code = builtinCode(text);
    wchar_t one[2] = {wchar_t(code), 0};
    if (code >= 0) text = one;
    if (std::wcslen(text ? text : L"") > 255) throw tberror("string is too long");
    setBuiltin(code >= 0);
    name.setString(text ? text : L"", pool);
    cch = uint8_t(name.cch);
}

uint8_t Lbl::nameLength() const { return name.text ? uint8_t(name.cch) : 0; }

uint32_t Lbl::size() const {
    uint32_t n = kFixedSize;
    if (nameLength()) n += name.noFlags ? name.cch : name.size();
    return n + uint32_t(rgce.size() + extra.size());
}

void Lbl::read(XlsRecords &xls, uint16_t size, MemPool &pool, bool old) {
    if (size < kFixedSize) sizeError();
    reset();
    unsigned short remaining = size;
    xls.readInt16(flags, remaining);
    readByte(xls, chKey, remaining);
    readByte(xls, cch, remaining);
    xls.readInt16(cce, remaining);
    xls.readInt16(reserved, remaining);
    xls.readInt16(itab, remaining);
    for (uint8_t &b : reserved4) readByte(xls, b, remaining);
    name.noFlags = old;
    if (cch) name.read(xls, cch, pool, old, remaining);
    // The tokens may run on in a CONTINUE; without one they must end with
    // the record.
    rgce.assign(cce, 0);
    try {
        xls.readWithContinueRecords(rgce.data(), cce, remaining);
    } catch (const tberror &) {
        sizeError();
    }
    extra.assign(remaining, 0);
    if (remaining) xls.read(extra.data(), remaining);
}

void Lbl::write(XlsRecords &xls) const {
    const uint32_t total = size();
    unsigned short remaining =
        static_cast<unsigned short>(std::min<uint32_t>(total, XlsRecords::kMaxRecordData));
    bool continued = false;
    xls.write(kId, remaining);
    xls.writeInt16(flags);
    uint8_t keys[2] = {chKey, nameLength()};
    xls.write(keys, 2);
    xls.writeInt16(uint16_t(rgce.size()));
    xls.writeInt16(reserved);
    xls.writeInt16(itab);
    xls.write(reserved4, 4);
    remaining = static_cast<unsigned short>(remaining - kFixedSize);
    // At most 14 + 511 bytes: the name always fits in the first record.
    if (nameLength()) name.write(xls, remaining);
    writeBytes(xls, rgce, remaining, continued);
    writeBytes(xls, extra, remaining, continued);
    if (continued) {
        xls.patchInt16(xls.writePos() - (XlsRecords::kMaxRecordData - remaining) - 2u,
                       uint16_t(XlsRecords::kMaxRecordData - remaining));
    }
}

void Lbl::dumpTo(std::wostream &os) const {
    os << L" flags=" << flags << L" chKey=" << unsigned(chKey) << L" cch=" << unsigned(cch)
       << L" cce=" << cce << L" reserved=" << reserved << L" itab=" << itab << L" name="
       << nameText() << L" rgce=(";
    for (size_t i = 0; i < rgce.size(); ++i) os << (i ? L" " : L"") << unsigned(rgce[i]);
    os << L")";
    if (!extra.empty()) os << L" extra=" << extra.size();
}

} // namespace tabrix
