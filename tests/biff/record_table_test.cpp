// Every fixed-layout record in one table: read from sample bytes and
// written back byte for byte, each bad size failing with the record's size
// message, and the padded sizes producers write read without complaint;
// then the RK number form, decoded and chosen only when exact.
#include "biff/records/blank.h"
#include "biff/records/bof.h"
#include "biff/records/book_ext.h"
#include "biff/records/bool_err.h"
#include "biff/records/dimensions.h"
#include "biff/records/label.h"
#include "biff/records/label_sst.h"
#include "biff/records/mul_blank.h"
#include "biff/records/mul_rk.h"
#include "biff/records/number.h"
#include "biff/records/obj_protect.h"
#include "biff/records/page_breaks.h"
#include "biff/records/page_setup.h"
#include "biff/records/pane.h"
#include "biff/records/password.h"
#include "biff/records/prot4rev.h"
#include "biff/records/prot4rev_pass.h"
#include "biff/records/protect.h"
#include "biff/records/rk.h"
#include "biff/records/row.h"
#include "biff/records/scenario_protect.h"
#include "biff/records/scl.h"
#include "biff/records/selection.h"
#include "biff/records/win_protect.h"
#include "biff/records/window2.h"
#include "biff/records/write_access.h"
#include "support/record_trip.h"

using namespace tabrix;
using namespace bifftest;

namespace {

struct Sample {
    const char *name;
    Bytes good; // comes back byte for byte
    Bytes (*trip)(const Bytes &);
    std::string (*error)(const Bytes &);
    std::vector<Bytes> bad;    // each fails with "<name> size is incorrect"
    std::vector<Bytes> padded; // read without complaint
};

#define RECORD(R) roundTrip<R>, readError<R>

// A BookExt of `size` bytes: its cb field holds the record's own size.
Bytes bookExt(uint8_t size) {
    Bytes v = seq(size);
    v[12] = size;
    v[13] = v[14] = v[15] = 0;
    return v;
}

} // namespace

TEST(RecordTable, RecordsRoundTripAndCheckTheirSizes) {
    const Sample rows[] = {
        // Cells.
        {"RK", seq(10), RECORD(RK), {seq(9), {}, seq(12)}, {}},
        {"Number", seq(14), RECORD(Number), {seq(13), {}, seq(16)}, {}},
        {"Row", seq(16), RECORD(Row), {seq(15), {}, seq(18)}, {}},
        {"Dimensions", seq(14), RECORD(Dimensions), {seq(13), {}}, {seq(16)}},
        {"LabelSst", seq(10), RECORD(LabelSst), {seq(9), {}, seq(12)}, {}},
        {"Blank", seq(6), RECORD(Blank), {seq(5), {}, seq(8)}, {}},
        {"BoolErr", seq(8), RECORD(BoolErr), {seq(7), {}}, {seq(10)}},
        // Label: its text ends with the record; zeros behind it are dropped.
        {"Label",
         {1, 0, 2, 0, 15, 0, 2, 0, 0, 'h', 'i'},
         RECORD(Label),
         {{1, 0, 2, 0, 15, 0, 2, 0}, {1, 0, 2, 0, 15, 0, 3, 0, 0, 'h', 'i'}},
         {{1, 0, 2, 0, 15, 0, 2, 0, 0, 'h', 'i', 0, 0}}},
        {"Label", {1, 0, 2, 0, 15, 0, 1, 0, 1, 0x3A, 0x04}, RECORD(Label), {}, {}},
        // Runs: one cell short, one byte too long, no cells at all.
        {"MulRk", seq(18), RECORD(MulRk), {seq(17), seq(19), seq(6)}, {}},
        {"MulBlank", seq(10), RECORD(MulBlank), {seq(9), seq(11), seq(6)}, {}},
        // Workbook globals.
        {"WinProtect", seq(2), RECORD(WinProtect), {seq(1), seq(3)}, {}},
        {"Protect", seq(2), RECORD(Protect), {seq(1), seq(3)}, {}},
        {"Password", seq(2), RECORD(Password), {seq(1), seq(3)}, {}},
        {"Prot4Rev", seq(2), RECORD(Prot4Rev), {seq(1), seq(3)}, {}},
        {"Prot4RevPass", seq(2), RECORD(Prot4RevPass), {seq(1), seq(3)}, {}},
        {"ScenarioProtect", seq(2), RECORD(ScenarioProtect), {seq(1), seq(3)}, {}},
        {"ObjProtect", seq(2), RECORD(ObjProtect), {seq(1), seq(3)}, {}},
        // A BOF may stop after any of its fields.
        {"Bof",
         seq(16),
         RECORD(Bof),
         {seq(5), seq(9), seq(10), seq(14), seq(15)},
         {{}, seq(4), seq(8), seq(12), seq(20)}},
        {"WriteAccess", seq(112), RECORD(WriteAccess), {}, {}},
        {"BookExt", bookExt(20), RECORD(BookExt), {bookExt(19), bookExt(23)}, {}},
        {"BookExt", bookExt(21), RECORD(BookExt), {}, {}},
        {"BookExt", bookExt(22), RECORD(BookExt), {}, {}},
        // Page setup, window and breaks.
        {"Header", textBytes("&CPage &P", false), RECORD(Header), {}, {}},
        {"Footer", textBytes("Total", true), RECORD(Footer), {}, {}},
        {"Header", {}, RECORD(Header), {}, {}},
        {"HCenter", words({1}), RECORD(HCenter), {{}, seq(1), seq(3)}, {}},
        {"VCenter", words({0}), RECORD(VCenter), {seq(4)}, {}},
        {"LeftMargin", seq(8), RECORD(Margin<38>), {seq(7), seq(9)}, {}},
        {"RightMargin", seq(8), RECORD(Margin<39>), {seq(4)}, {}},
        {"TopMargin", seq(8), RECORD(Margin<40>), {{}}, {}},
        {"BottomMargin", seq(8), RECORD(Margin<41>), {seq(16)}, {}},
        {"Setup", seq(34), RECORD(SetupBIFF), {seq(33), seq(35), {}}, {}},
        {"Window2", seq(18), RECORD(Window2), {seq(9), seq(12), seq(19)}, {}},
        {"Window2", seq(10), RECORD(Window2), {}, {}},
        {"Scl", words({3, 2}), RECORD(Scl), {seq(3), seq(5)}, {}},
        {"Pane", seq(10), RECORD(Pane), {seq(8), seq(11)}, {}},
        {"Selection",
         {3, 4, 0, 2, 0, 1, 0, 2, 0, 1, 0, 5, 0, 1, 2, 7, 0, 9, 0, 3, 3},
         RECORD(Selection),
         {seq(8), {}},
         {}},
        {"HorizontalPageBreaks",
         breakBytes({4, 9}),
         RECORD(HorizontalPageBreaks),
         {seq(1), words({2, 1, 0, 255})},
         {}},
        {"VerticalPageBreaks", breakBytes({}), RECORD(VerticalPageBreaks), {{}, words({0, 0})}, {}},
        {"Pls", seq(40), RECORD(Pls), {{}, seq(1)}, {}},
    };
    for (const Sample &r : rows) {
        SCOPED_TRACE(r.name);
        EXPECT_EQ(r.trip(r.good), r.good);
        for (const Bytes &b : r.bad)
            EXPECT_EQ(r.error(b), std::string(r.name) + " size is incorrect") << b.size();
        for (const Bytes &b : r.padded) EXPECT_EQ(r.error(b), "") << b.size();
    }
    // The word records dump their one named field.
    EXPECT_EQ(readBack<Protect>({1, 0}).dumpText(), L"[Protect fLock=1]\n");
}

TEST(CellRecordsTest, RkDecodesAllFourForms) {
    struct Case {
        uint32_t rk;
        double value;
    };
    const Case cases[] = {
        {0x3FF00000u, 1.0},          // double
        {0x3FF00001u, 0.01},         // double / 100
        {0x00000006u, 1.0},          // integer 1
        {0xFFFFFFFEu, -1.0},         // integer -1
        {0x80000002u, -536870912.0}, // most negative integer
        {0x7FFFFFFEu, 536870911.0},  // most positive integer
        {0x00004E23u, 50.0},         // integer 5000 / 100
        {0xFFFFFFFBu, -0.02},        // integer -2 / 100 (bits 0 and 1)
        {0xC0000000u, -2.0},         // negative double
        {0x00000000u, 0.0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.rk);
        RK r;
        r.rk = c.rk;
        EXPECT_DOUBLE_EQ(r.value(), c.value);
    }
}
