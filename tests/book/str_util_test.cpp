// StrUtil's XML escapes, Converter, case-insensitive comparison and MemPool.
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "book/converter.h"
#include "book/mem_pool.h"
#include "book/str_util.h"
#include "book/tberror.h"

using namespace tabrix;

namespace {

TEST(StrUtilTest, XmlEscapes) {
    struct Case {
        std::wstring plain, escaped;
    };
    const Case cases[] = {
        {L"plain text", L"plain text"},
        {std::wstring(1, wchar_t(1)), L"_x0001_"},
        {L"a\tb\nc\rd", L"a\tb\nc\rd"},
        {std::wstring{L'x', wchar_t(0x1F), L'y'}, L"x_x001F_y"},
        {std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}, L"_xD83D__xDE00_"},
        {std::wstring{wchar_t(0xFFFE), wchar_t(0xFFFD)},
         std::wstring(L"_xFFFE_") + wchar_t(0xFFFD)},
        {L"", L""},
    };
    for (const Case &c : cases) {
        EXPECT_EQ(StrUtil::xmlEsc(c.plain), c.escaped);
        EXPECT_EQ(StrUtil::xmlUnEsc(c.escaped), c.plain);
    }
    struct Raw {
        std::wstring in, out;
    };
    const Raw raws[] = {
        {L"_x0041_", L"A"},       {L"_x00e9_x", std::wstring(1, wchar_t(0xE9)) + L"x"},
        {L"_x004_", L"_x004_"},   // too few digits
        {L"_x00G1_", L"_x00G1_"}, // not hexadecimal
        {L"_x0041", L"_x0041"},   // no closing underscore
        {L"__x0041_", L"_A"},
    };
    for (const Raw &r : raws) EXPECT_EQ(StrUtil::xmlUnEsc(r.in), r.out);
}

TEST(Compare, CaseInsensitive) {
    EXPECT_EQ(sicmp(std::string("Sheet1"), std::string("sHEET1")), 0);
    EXPECT_NE(sicmp(std::string("Sheet1"), std::string("Sheet2")), 0);
    EXPECT_NE(sicmp(std::string("Sheet"), std::string("Sheet1")), 0);
    EXPECT_EQ(sicmp(std::wstring(L"DATA"), std::wstring(L"data")), 0);
    EXPECT_LT(sicmp2(L"abc", L"ABD"), 0);
    EXPECT_GT(sicmp2(L"b", L"A"), 0);
    EXPECT_LT(sicmp2(L"ab", L"AB c"), 0);
    EXPECT_EQ(sicmp2(L"Names", L"nAMES"), 0);
    std::set<std::wstring, CaseInsensitiveLess> names{L"Print_Area", L"print_area", L"Data"};
    EXPECT_EQ(names.size(), 2u);
    EXPECT_EQ(names.count(L"PRINT_AREA"), 1u);
}

TEST(ConverterTest, Numbers) {
    EXPECT_EQ(Converter::doubleToString(0.1), L"0.10000000000000001");
    EXPECT_EQ(Converter::doubleToString(-2), L"-2");
    EXPECT_EQ(Converter::doubleToString(1e300), L"1.0000000000000001e+300");
    EXPECT_EQ(Converter::intToString(-2147483647 - 1), L"-2147483648");
    EXPECT_EQ(Converter::intToHexString(255), L"FF");
    EXPECT_EQ(Converter::intToAnsiString(42), "42");
    EXPECT_EQ(Converter::stringToDouble(L"2.5e3"), 2500.0);
    EXPECT_EQ(Converter::stringToDouble(L"abc"), 0.0);
    EXPECT_EQ(Converter::ansiStringToInt("17x"), 17);
    EXPECT_EQ(Converter::ansiStringToInt("x"), 0);
    EXPECT_EQ(Converter::stringToInt(L" 123"), 123);
    EXPECT_EQ(Converter::hexStringToInt(L"1f"), 31);
    for (const wchar_t *bad : {L"", L"abc", L"-"}) {
        try {
            Converter::stringToInt(bad);
            ADD_FAILURE() << "no exception";
        } catch (const tberror &e) {
            EXPECT_STREQ(e.what(), "can't convert string to int");
        }
    }
    EXPECT_THROW(Converter::hexStringToInt(L"xyz"), tberror);
}

class Counted : public BaseClass {
public:
    explicit Counted(int &live) : _live(live) { ++_live; }
    ~Counted() override { --_live; }

private:
    int &_live;
};

TEST(MemPoolTest, BlockBoundaries) {
    MemPool pool;
    EXPECT_EQ(pool.allocA(0), nullptr);
    EXPECT_EQ(pool.allocW(0), nullptr);
    EXPECT_EQ(pool.blockCountA(), 0u);

    // exactly one block's worth fits into one block
    char *a = pool.allocA(MemPool::kBlockSize);
    ASSERT_NE(a, nullptr);
    a[0] = 'x';
    a[MemPool::kBlockSize - 1] = 'y';
    EXPECT_EQ(pool.blockCountA(), 1u);
    // one more opens a new block
    char *b = pool.allocA(1);
    EXPECT_EQ(pool.blockCountA(), 2u);
    // requests are never split: what doesn't fit the rest opens a block
    char *c = pool.allocA(MemPool::kBlockSize - 2);
    EXPECT_EQ(c, b + 1);
    EXPECT_EQ(pool.blockCountA(), 2u);
    pool.allocA(2);
    EXPECT_EQ(pool.blockCountA(), 3u);

    wchar_t *w1 = pool.allocW(3);
    wchar_t *w2 = pool.allocW(4);
    EXPECT_EQ(w2, w1 + 3);
    EXPECT_EQ(pool.blockCountW(), 1u);

    EXPECT_THROW(pool.allocA(MemPool::kBlockSize + 1), tberror);

    int live = 0;
    pool.addPointer(new Counted(live));
    pool.addPointer(new Counted(live));
    EXPECT_EQ(live, 2);
    pool.free();
    EXPECT_EQ(live, 0);
    EXPECT_EQ(pool.blockCountA(), 0u);
    EXPECT_EQ(pool.blockCountW(), 0u);
    // after free the offset is at the limit again: the next request allocates
    pool.allocW(1);
    EXPECT_EQ(pool.blockCountW(), 1u);
}

} // namespace
