#include "biff/records/header_footer.h"

#include <algorithm>
#include <vector>

namespace tabrix {

namespace {
// Bytes of a record's data that the text may take: count and flags first.
const unsigned kTextRoom = XlsRecords::kMaxRecordData - 3;
} // namespace

template <class D> void PageText<D>::rebind(MemPool &pool) {
    _pool = &pool;
    if (text.text) text.text = poolCopy(text.text, text.cch, pool);
}

template <class D> void PageText<D>::setString(const char *s, bool utf8) {
    if (!s) return;
    text.setString(s, *_pool, utf8);
    _bare = text.cch == 0;
}

template <class D> void PageText<D>::setString(const wchar_t *s) {
    if (!s) return;
    text.setString(s, *_pool);
    _bare = text.cch == 0;
}

template <class D> void PageText<D>::read(XlsRecords &xls, uint16_t size, bool old) {
    reset();
    if (size == 0) return;
    unsigned short remaining = size;
    text.read(xls, old, old, *_pool, remaining);
    // Written back in the current form: 16-bit count, flags, and one byte a
    // character while every character fits in one.
    text.noFlags = false;
    text.shortCount = false;
    text.flags = old ? 0 : uint8_t(text.flags & 1);
    _bare = false;
    uint8_t skip[64];
    while (remaining > 0) {
        size_t n = std::min<size_t>(remaining, sizeof skip);
        if (xls.read(skip, n) < n) break;
        remaining = static_cast<unsigned short>(remaining - n);
    }
}

template <class D> void PageText<D>::write(XlsRecords &xls) const {
    if (_bare && text.cch == 0) {
        xls.write(D::kId, 0);
        return;
    }
    XLUnicodeString out = text;
    out.noFlags = false;
    out.shortCount = false;
    if (!out.text) out.cch = 0;
    unsigned width = (out.flags & 1) ? 2 : 1;
    out.cch = uint16_t(std::min<unsigned>(out.cch, kTextRoom / width));
    xls.write(D::kId, uint16_t(out.size()));
    out.write(xls);
}

template <class D> void PageText<D>::dumpTo(std::wostream &os) const {
    os << L" text=" << string();
}

template class PageText<Header>;
template class PageText<Footer>;

} // namespace tabrix
