// Reads arbitrary bytes as the body of one cell record: the first byte
// picks RK, Number, Label, LabelSst, Blank, BoolErr, MulRk, MulBlank, Row or
// Dimensions.  A record that loads must write back to the same bytes.
#include "biff/records/blank.h"
#include "biff/records/bool_err.h"
#include "biff/records/dimensions.h"
#include "biff/records/label.h"
#include "biff/records/label_sst.h"
#include "biff/records/mul_blank.h"
#include "biff/records/mul_rk.h"
#include "biff/records/number.h"
#include "biff/records/rk.h"
#include "biff/records/row.h"
#include "book/tberror.h"

#include "support/workbook_input.h"

#include <cstdint>
#include <cstdlib>
#include <string>

using namespace tabrix;
using namespace fuzzinput;

namespace {

template <class R> R make() { return R(); }
template <> Label make<Label>() { return Label(pool()); }

template <class R> void check(const uint8_t *body, size_t n) {
    std::string file = container(record(R::kId, body, n));
    R r = make<R>();
    if (!readFile(file, [&](Xls<char> &x) { r.read(x); })) return;
    if (written([&](Xls<char> &x) { r.write(x); }) != file) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    if (!data || size < 1) return 0;
    const uint8_t *body = data + 1;
    size_t n = size - 1;
    pool().free();
    switch (data[0] % 10) {
    case 0: check<RK>(body, n); break;
    case 1: check<Number>(body, n); break;
    case 2: check<LabelSst>(body, n); break;
    case 3: check<Blank>(body, n); break;
    case 4: check<BoolErr>(body, n); break;
    case 5: check<MulRk>(body, n); break;
    case 6: check<MulBlank>(body, n); break;
    case 7: check<Row>(body, n); break;
    case 8: check<Dimensions>(body, n); break;
    default: check<Label>(body, n); break;
    }
    return 0;
}
