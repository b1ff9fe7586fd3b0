// Header (id 20) and Footer (id 21): the text printed at the top and the
// bottom of each page of a sheet.  A record of size 0 is an empty text and
// is written back as size 0.
#ifndef TABRIX_BIFF_RECORDS_HEADER_FOOTER_H
#define TABRIX_BIFF_RECORDS_HEADER_FOOTER_H
#include "biff/record_ids.h"
#include "biff/biff_record.h"
#include "biff/strings/xl_unicode_string.h"
#include "book/mem_pool.h"
#include <cstdint>
namespace tabrix {

// The common body of Header and Footer.  The text lives in the pool given
// at construction.
template <class Derived> class PageText : public Record<Derived> {
public:
    XLUnicodeString text;

    explicit PageText(MemPool &pool) : _pool(&pool) {}
    void reset() {
        text = XLUnicodeString();
        _bare = true;
    }
    // Moves the text into `pool`, which the record uses from now on.
    void rebind(MemPool &pool);

    const wchar_t *string() const { return text.text ? text.text : L""; }
    // Null changes nothing; over 65535 characters fails with "string is too
    // long".
    void setString(const char *s, bool utf8);
    void setString(const wchar_t *s);

    // `old`: the text has an 8-bit count and no flags byte.  Bytes behind
    // the text are skipped.
    void read(XlsRecords &xls, uint16_t size, bool old = false);
    // A text longer than a record holds is cut to what fits.
    void write(XlsRecords &xls) const;
    void dumpTo(std::wostream &os) const;
    using Record<Derived>::read;

private:
    MemPool *_pool;
    bool _bare = true; // written as size 0 while the text is empty
};

class Header : public PageText<Header> {
public:
    static constexpr uint16_t kId = rid::Header;
    static constexpr const char *kName = "Header";
    using PageText<Header>::PageText;
};

class Footer : public PageText<Footer> {
public:
    static constexpr uint16_t kId = rid::Footer;
    static constexpr const char *kName = "Footer";
    using PageText<Footer>::PageText;
};

extern template class PageText<Header>;
extern template class PageText<Footer>;

} // namespace tabrix
#endif
