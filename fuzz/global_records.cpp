// Reads arbitrary bytes as one workbook-global record: the first byte picks
// Bof, a protection word, BookExt, WriteAccess, BoundSheet8, ExternSheet,
// Lbl or a SupBook block (whose bytes are the records of the block).  What
// loads writes back to bytes that load and write again the same; where the
// class keeps every byte, to the bytes it was read from.
#include "biff/records/bof.h"
#include "biff/records/book_ext.h"
#include "biff/records/bound_sheet8.h"
#include "biff/records/extern_sheet.h"
#include "biff/records/lbl.h"
#include "biff/records/obj_protect.h"
#include "biff/records/password.h"
#include "biff/records/prot4rev.h"
#include "biff/records/prot4rev_pass.h"
#include "biff/records/protect.h"
#include "biff/records/scenario_protect.h"
#include "biff/records/sup_book_block.h"
#include "biff/records/win_protect.h"
#include "biff/records/write_access.h"
#include "book/tberror.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

using namespace tabrix;
using namespace fuzzinput;

namespace {

// Each class read from a stream positioned at its header.
template <class R> void readOne(XlsRecords &x, R &r) { r.read(x); }

uint16_t header(XlsRecords &x) {
    uint16_t id = 0, size = 0;
    x.readInt16(id);
    x.readInt16(size);
    return size;
}

template <> void readOne<BoundSheet8>(XlsRecords &x, BoundSheet8 &r) {
    r.read(x, header(x), pool());
}
template <> void readOne<Lbl>(XlsRecords &x, Lbl &r) { r.read(x, header(x), pool(), false); }
template <> void readOne<SupBookBlock>(XlsRecords &x, SupBookBlock &r) {
    uint16_t id = x.peekInt16();
    uint16_t size = header(x);
    if (id != SupBookBlock::kSupBookId) throw tberror("not a SupBook");
    r.read(x, size);
}

// Whether a loaded record is written back byte for byte.
template <class R> bool lossless(const R &, size_t) { return true; }
template <> bool lossless<Bof>(const Bof &, size_t n) { return n == Bof::kSize; }
template <> bool lossless<BookExt>(const BookExt &r, size_t n) { return r.cb == n; }
template <> bool lossless<WriteAccess>(const WriteAccess &, size_t n) {
    return n == WriteAccess::kSize;
}
template <> bool lossless<BoundSheet8>(const BoundSheet8 &r, size_t n) { return r.size() == n; }
template <> bool lossless<ExternSheet>(const ExternSheet &r, size_t n) {
    return n == 2 + 6 * r.rgXTI.size();
}
template <> bool lossless<Lbl>(const Lbl &r, size_t n) { return r.size() == n; }
template <> bool lossless<SupBookBlock>(const SupBookBlock &, size_t) { return false; }

template <class R> bool load(const std::string &file, R &r) {
    return readFile(file, [&](Xls<char> &x) { readOne(x, r); });
}

template <class R> std::string save(const R &r) {
    return written([&](Xls<char> &x) { r.write(x); });
}

template <class R> void check(const std::string &file, size_t n) {
    R r;
    if (!load(file, r)) return;
    std::string once = save(r);
    if (lossless(r, n) && once != file) std::abort();
    R again;
    if (!load(once, again)) std::abort();
    if (save(again) != once) std::abort();
}

template <class R> void checkRecord(const uint8_t *body, size_t n) {
    check<R>(container(record(R::kId, body, n)), n);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data || size < 1) return 0;
    const uint8_t *body = data + 1;
    size_t n = size - 1;
    if (n > 8224) n = 8224;
    pool().free();
    switch (data[0] % 14) {
    case 0: checkRecord<Bof>(body, n); break;
    case 1: checkRecord<WinProtect>(body, n); break;
    case 2: checkRecord<Protect>(body, n); break;
    case 3: checkRecord<Password>(body, n); break;
    case 4: checkRecord<Prot4Rev>(body, n); break;
    case 5: checkRecord<Prot4RevPass>(body, n); break;
    case 6: checkRecord<ScenarioProtect>(body, n); break;
    case 7: checkRecord<ObjProtect>(body, n); break;
    case 8: checkRecord<BookExt>(body, n); break;
    case 9: checkRecord<WriteAccess>(body, n); break;
    case 10: checkRecord<BoundSheet8>(body, n); break;
    case 11: checkRecord<ExternSheet>(body, n); break;
    case 12: checkRecord<Lbl>(body, n); break;
    default: check<SupBookBlock>(container(std::vector<uint8_t>(body, body + n)), n); break;
    }
    return 0;
}
