// Reads arbitrary bytes as a sheet's record substream and saves the sheet.
// With the low bit of the first byte set, a worksheet BOF is put in front,
// so that the rest reaches the worksheet dispatch; with the second bit the
// sheet belongs to a book of the older format.  What loads must save,
// and what was saved must load again.
#include "biff/sheet_impl.h"
#include "biff/sheet_owner.h"
#include "book/tberror.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace tabrix;
using namespace fuzzinput;

namespace {

class Owner : public ISheetOwner<char> {
public:
    Owner() { _styles.init(); }
    XString &message() override { return _message; }
    bool utf8Mode() const override { return true; }
    MemPool &pool() override { return _pool; }
    SST &sst() override { return _sst; }
    StyleTable<char> &styles() override { return _styles; }
    int sheetCount() override { return 0; }
    SheetImplT<char> *sheetAt(int) override { return nullptr; }
    int getTabIndex(const SheetImplT<char> *) override { return 0; }
    bool refR1C1() override { return false; }
    bool isDate1904() override { return false; }
    int globalsVersion() override { return version; }
    unsigned codePage() override { return 1251; }
    int version = 0x0600;

private:
    XString _message;
    MemPool _pool;
    SST _sst{_pool};
    StyleTable<char> _styles;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data || size < 1) return 0;
    std::vector<uint8_t> wb;
    if (data[0] & 1) {
        put16(wb, 2057);
        put16(wb, 16);
        const uint16_t bof[8] = {0x0600, 16, 8346, 1997, 0, 0, 0, 0};
        for (uint16_t w : bof) put16(wb, w);
    }
    wb.insert(wb.end(), data + 1, data + size);
    Owner owner;
    // The second bit: the book's globals are of the older format.
    if (data[0] & 2) owner.version = 0x0500;
    BinarySheetT<char> sheet(owner, L"Fuzz");
    if (!readFile(container(wb), [&](Xls<char> &x) { sheet.read(x); })) return 0;
    // Cell reads over the loaded sheet must not fail other than by message.
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            sheet.readStr(r, c, nullptr);
            sheet.readNum(r, c, nullptr);
            sheet.cellFormat(r, c);
        }
    sheet.lastRow();
    std::string saved;
    try {
        saved = written([&](Xls<char> &x) { sheet.write(x); });
    } catch (const tberror &) {
        return 0; // a sheet of an older format is refused
    }
    BinarySheetT<char> again(owner, L"Again");
    if (!readFile(saved, [&](Xls<char> &x) { again.read(x); })) std::abort();
    return 0;
}
