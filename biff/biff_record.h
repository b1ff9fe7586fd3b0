// Biff: a record kept as raw bytes because no class understands it; and
// Record<Derived>, the base of the typed record classes.
//
// A typed record is one class with `kId`, `kName`, `reset()`,
// `read(xls, size)`, `write(xls)` and `dumpTo(wostream&)`; the base adds
// `checkBegin(id)`, `read(xls)` (header included, id checked), `dump()` and
// the size checks with the class's own messages.
#ifndef TABRIX_BIFF_BIFF_RECORD_H
#define TABRIX_BIFF_BIFF_RECORD_H

#include "biff/xls.h"
#include "book/tberror.h"

#include <cstdint>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace tabrix {

class Biff {
public:
    uint16_t id = 0;
    std::vector<uint8_t> data;

    // Size 0 does nothing; otherwise the record's bytes.
    void read(XlsRecords &xls, uint16_t size);
    void write(XlsRecords &xls) const;
};

template <class Derived> class Record {
public:
    static bool checkBegin(uint16_t id) { return id == Derived::kId; }

    void read(XlsRecords &xls) {
        uint16_t id = 0, size = 0;
        xls.readInt16(id);
        xls.readInt16(size);
        if (id != Derived::kId) throw tberror(std::string(Derived::kName) + ": unexpected record");
        self().read(xls, size);
    }

    void dump() const { dumpOn(std::wcout); }
    void dumpOn(std::wostream &os) const {
        std::ios::fmtflags saved = os.flags();
        os << L"[" << Derived::kName;
        self().dumpTo(os);
        os << L"]" << std::endl;
        os.flags(saved);
    }
    std::wstring dumpText() const {
        std::wostringstream os;
        dumpOn(os);
        return os.str();
    }

protected:
    [[noreturn]] static void sizeError() {
        throw tberror(std::string(Derived::kName) + " size is incorrect");
    }
    static void checkSize(uint16_t size, uint16_t expected) {
        if (size != expected) sizeError();
    }
    // Producers pad some fixed records: a longer one is read and its extra
    // bytes skipped by `skipExtra`; a shorter one is refused.
    static void checkMinSize(uint16_t size, uint16_t least) {
        if (size < least) sizeError();
    }
    static void skipExtra(XlsRecords &xls, uint16_t size, uint16_t used) {
        uint8_t pad[64];
        for (uint16_t left = uint16_t(size - used); left > 0;) {
            uint16_t n = left < sizeof pad ? left : uint16_t(sizeof pad);
            if (xls.read(pad, n) < n) return;
            left = uint16_t(left - n);
        }
    }

private:
    Derived &self() { return static_cast<Derived &>(*this); }
    const Derived &self() const { return static_cast<const Derived &>(*this); }
};

} // namespace tabrix

#endif
