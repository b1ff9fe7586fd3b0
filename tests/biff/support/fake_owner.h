// FakeOwner: a small book for sheet tests — a message, a pool, a shared
// string table, the default styling, defined names and a list of sheets it
// owns.
#ifndef TABRIX_TESTS_BIFF_FAKE_OWNER_H
#define TABRIX_TESTS_BIFF_FAKE_OWNER_H

#include "biff/sheet_impl.h"
#include "biff/sheet_owner.h"

#include <memory>
#include <string>
#include <vector>

namespace bifftest {

template <class C> class FakeOwner : public tabrix::ISheetOwner<C> {
public:
    FakeOwner();
    ~FakeOwner() override;

    // A new sheet of this owner, kept in its list.
    tabrix::SheetImplT<C> &addSheet(const std::wstring &name);
    // A copy of `src` (of any owner), kept in this owner's list.
    tabrix::SheetImplT<C> &addCopy(const tabrix::SheetImplT<C> &src);
    // The message as narrow text.
    std::string msg() { return _message.template c_str<char>(true); }

    tabrix::XString &message() override { return _message; }
    bool utf8Mode() const override { return true; }
    tabrix::MemPool &pool() override { return _pool; }
    tabrix::SST &sst() override { return _sst; }
    tabrix::StyleTable<C> &styles() override { return _styles; }
    int sheetCount() override { return int(_sheets.size()); }
    tabrix::SheetImplT<C> *sheetAt(int index) override;
    int getTabIndex(const tabrix::SheetImplT<C> *sheet) override;
    bool refR1C1() override { return false; }
    bool isDate1904() override { return false; }
    std::vector<tabrix::Lbl> &names() override { return _names; }
    std::vector<tabrix::SupBookBlock> &supBooks() override { return _supBooks; }

private:
    tabrix::XString _message;
    tabrix::MemPool _pool;
    tabrix::SST _sst{_pool};
    tabrix::StyleTable<C> _styles;
    std::vector<tabrix::Lbl> _names;
    std::vector<tabrix::SupBookBlock> _supBooks;
    std::vector<std::unique_ptr<tabrix::SheetImplT<C>>> _sheets;
};

extern template class FakeOwner<char>;
extern template class FakeOwner<wchar_t>;

} // namespace bifftest

#endif
