#include "biff/records/sup_book_block.h"
#include "book/tberror.h"

namespace tabrix {

namespace {
const uint16_t kMemberIds[] = {89, 35, 90, ExternSheet::kId, XlsRecords::kContinueId};
}

bool SupBookBlock::isMember(uint16_t id) {
    for (uint16_t m : kMemberIds)
        if (id == m) return true;
    return false;
}

void SupBookBlock::read(XlsRecords &xls, uint16_t supBookSize) {
    *this = SupBookBlock();
    uint64_t total = 4u + uint64_t(supBookSize);
    auto checkTotal = [&] {
        if (total > xls.fileSize()) throw tberror("SupBookBlock: file is corrupt");
    };
    checkTotal();
    supBook.read(xls, supBookSize);
    while (!xls.eof()) {
        // peekInt16 reads the id under a checkpoint: a foreign record is
        // left for the caller to read again.
        uint16_t id = xls.peekInt16();
        if (xls.eof() || !isMember(id)) return;
        uint16_t size = 0;
        xls.readInt16(id);
        xls.readInt16(size);
        if (xls.eof()) return;
        total += 4u + size;
        checkTotal();
        if (id == ExternSheet::kId) {
            externSheet.read(xls, size);
            hasExternSheet = true;
            continue;
        }
        Biff b;
        b.id = id;
        b.read(xls, size);
        (id == XlsRecords::kContinueId ? continues : followers).push_back(std::move(b));
    }
}

void SupBookBlock::write(XlsRecords &xls) const {
    supBook.write(xls);
    for (const Biff &b : followers) b.write(xls);
    if (hasExternSheet) externSheet.write(xls);
    for (const Biff &b : continues) b.write(xls);
}

bool SupBookBlock::isSelfRef() const {
    const std::vector<uint8_t> &d = supBook.data;
    return d.size() == 4 && d[2] == 1 && d[3] == 4;
}

void SupBookBlock::dump() const {
    std::wcout << L"[SupBook size=" << supBook.data.size() << L" selfRef=" << isSelfRef()
               << L" followers=" << followers.size() << L" continues=" << continues.size() << L"]"
               << std::endl;
    if (hasExternSheet) externSheet.dump();
}

} // namespace tabrix
