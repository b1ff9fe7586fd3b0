// WordRecord<Derived>: the records whose whole content is one 16-bit word
// (the protection flags and the password hash of the book and the sheets).
// The derived class gives kId, kName, kField (the word's name in dumps) and
// word(), the reference to its named field.
#ifndef TABRIX_BIFF_RECORDS_WORD_RECORD_H
#define TABRIX_BIFF_RECORDS_WORD_RECORD_H

#include "biff/biff_record.h"

#include <cstdint>

namespace tabrix {

template <class Derived> class WordRecord : public Record<Derived> {
public:
    static constexpr uint16_t kSize = 2;

    void reset() { self().word() = 0; }
    using Record<Derived>::read;
    void read(XlsRecords &xls, uint16_t size) {
        Record<Derived>::checkSize(size, kSize);
        uint16_t v = 0;
        xls.readInt16(v);
        self().word() = v;
    }
    void write(XlsRecords &xls) const {
        xls.write(Derived::kId, kSize);
        xls.writeInt16(self().word());
    }
    void dumpTo(std::wostream &os) const { os << L" " << Derived::kField << L"=" << self().word(); }

private:
    Derived &self() { return static_cast<Derived &>(*this); }
    const Derived &self() const { return static_cast<const Derived &>(*this); }
};

} // namespace tabrix

#endif
