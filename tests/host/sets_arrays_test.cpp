// Sets and arrays of the reference host, driven through its C table.
#include "refhost.h"

#include <gtest/gtest.h>

using namespace qdhost;

namespace {

const qd_host &H = *hostTable();

TEST(HostSet, PositionsDuplicatesAndRefusals) {
    struct Case {
        const char *name;
        int base;
        bool lock;
        bool finalise;
        std::vector<qd_int> adds;
        std::vector<int> positions; // -1: refused
        std::vector<std::string> contents;
    };
    const Case cases[] = {
        {"fresh", 0, false, false, {7, 3, 7, 9}, {0, 1, 0, 2}, {"7", "3", "9"}},
        {"base one", 1, false, false, {7, 3, 3}, {1, 2, 2}, {"7", "3"}},
        {"locked keeps old", 0, true, false, {1, 5}, {0, -1}, {"1", "2"}},
        {"finalised keeps old", 0, false, true, {2, 5, 1}, {1, -1, 0}, {"1", "2"}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Context ctx;
        SetOptions opt;
        opt.base = c.base;
        Set *s = ctx.newSet(QD_INT, opt);
        if (c.lock || c.finalise) {
            s->add(qdInt(1));
            s->add(qdInt(2));
        }
        if (c.lock) {
            ASSERT_EQ(H.lockSet(&ctx, s), 0);
        }
        if (c.finalise) {
            ASSERT_EQ(H.finaliseSet(&ctx, s), 0);
        }
        for (size_t i = 0; i < c.adds.size(); ++i) {
            qd_value v = qdInt(c.adds[i]);
            int pos = -99;
            int rc = H.setAdd(&ctx, s, &v, &pos);
            if (c.positions[i] < 0) {
                EXPECT_NE(rc, 0) << i;
            } else {
                EXPECT_EQ(rc, 0) << i;
                EXPECT_EQ(pos, c.positions[i]) << i;
            }
        }
        EXPECT_EQ(s->texts(), c.contents);
        EXPECT_EQ(H.setSize(s), (int)c.contents.size());
        EXPECT_EQ(H.setFirstIndex(s), c.base);
        EXPECT_EQ(H.setLastIndex(s), c.base + (int)c.contents.size() - 1);
    }
}

TEST(HostSet, ElementTypesAndValues) {
    Context ctx;
    SetOptions declared;
    declared.declared = true;
    Set *s = ctx.newSet(QD_STRING, declared);
    Set *r = ctx.newSet(QD_REAL);
    Set *b = ctx.newSet(QD_BOOL, {qdBool(true)});
    EXPECT_EQ(H.setElementType(s), QD_STRING | QD_DECLARED_SET);
    EXPECT_EQ(H.setElementType(r), QD_REAL);
    EXPECT_EQ(s->type(), QD_STRING | QD_SET | QD_DYNAMIC);

    char text[] = "abc";
    qd_value v = qdStr(text);
    int pos = -1;
    ASSERT_EQ(H.setAdd(&ctx, s, &v, &pos), 0);
    text[0] = 'x'; // the set keeps its own copy
    qd_value out{};
    ASSERT_EQ(H.setElement(&ctx, s, pos, &out), 0);
    EXPECT_STREQ(out.s, "abc");
    EXPECT_NE(H.setElement(&ctx, s, pos + 1, &out), 0);
    EXPECT_NE(H.setElement(&ctx, s, -1, &out), 0);

    qd_value z = qdReal(0.0), nz = qdReal(-0.0), h = qdReal(0.5);
    ASSERT_EQ(H.setAdd(&ctx, r, &z, &pos), 0);
    ASSERT_EQ(H.setAdd(&ctx, r, &nz, &pos), 0);
    EXPECT_EQ(pos, 0);
    ASSERT_EQ(H.setAdd(&ctx, r, &h, &pos), 0);
    EXPECT_EQ(pos, 1);

    qd_value t = qdBool(true);
    t.i = 5; // any non-zero word is true
    ASSERT_EQ(H.setAdd(&ctx, b, &t, &pos), 0);
    EXPECT_EQ(pos, 0);
    EXPECT_EQ(H.setSize(b), 1);
}

TEST(HostSet, LockBalance) {
    Context ctx;
    Set *s = ctx.newSet(QD_INT);
    EXPECT_NE(H.unlockSet(&ctx, s), 0);
    EXPECT_EQ(H.lockSet(&ctx, s), 0);
    EXPECT_EQ(H.lockSet(&ctx, s), 0);
    EXPECT_EQ(H.unlockSet(&ctx, s), 0);
    qd_value v = qdInt(1);
    int pos;
    EXPECT_NE(H.setAdd(&ctx, s, &v, &pos), 0);
    EXPECT_EQ(H.unlockSet(&ctx, s), 0);
    EXPECT_EQ(H.setAdd(&ctx, s, &v, &pos), 0);
    EXPECT_NE(H.setAdd(&ctx, nullptr, &v, &pos), 0);
}

// Builds index sets of the given sizes with elements 10, 20, ...
std::vector<Set *> indexSets(Context &ctx, const std::vector<int> &sizes, int base) {
    std::vector<Set *> sets;
    SetOptions opt;
    opt.base = base;
    for (int n : sizes) {
        Set *s = ctx.newSet(QD_INT, opt);
        for (int i = 1; i <= n; ++i)
            s->add(qdInt(10 * i));
        sets.push_back(s);
    }
    return sets;
}

std::vector<std::vector<int>> walk(void *a, int dims, bool entries) {
    std::vector<std::vector<int>> out;
    std::vector<int> at(dims);
    int rc = entries ? H.arrayFirstEntry(a, at.data()) : H.arrayFirstCell(a, at.data());
    while (rc == 0 && out.size() < 1000) {
        out.push_back(at);
        rc = entries ? H.arrayNextEntry(a, at.data()) : H.arrayNextCell(a, at.data());
    }
    return out;
}

TEST(HostArray, WalkOrders) {
    using Tuples = std::vector<std::vector<int>>;
    struct Case {
        const char *name;
        std::vector<int> sizes;
        int base;
        Tuples stored; // in any order
        Tuples cells;
        Tuples entries;
    };
    const Case cases[] = {
        {"one dim", {3}, 0, {{2}, {0}}, {{0}, {1}, {2}}, {{0}, {2}}},
        {"two dims last fastest", {2, 2}, 1, {{2, 1}, {1, 2}},
         {{1, 1}, {1, 2}, {2, 1}, {2, 2}}, {{1, 2}, {2, 1}}},
        {"three dims", {2, 1, 2}, 0, {{1, 0, 0}, {0, 0, 1}},
         {{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {1, 0, 1}}, {{0, 0, 1}, {1, 0, 0}}},
        {"empty set", {2, 0}, 0, {}, {}, {}},
        {"nothing stored", {2}, 0, {}, {{0}, {1}}, {}},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Context ctx;
        Array *a = ctx.newArray(QD_REAL, indexSets(ctx, c.sizes, c.base));
        for (const auto &t : c.stored) {
            qd_value v = qdReal(1.5);
            ASSERT_EQ(H.arraySet(&ctx, a, t.data(), &v), 0);
        }
        int dims = (int)c.sizes.size();
        EXPECT_EQ(H.arrayDimensions(a), dims);
        EXPECT_EQ(H.arrayEntryCount(a), (int)c.stored.size());
        EXPECT_EQ(walk(a, dims, false), c.cells);
        EXPECT_EQ(walk(a, dims, true), c.entries);
    }
}

TEST(HostArray, NextEntryFromAnyTuple) {
    Context ctx;
    Array *a = ctx.newArray(QD_INT, indexSets(ctx, {3, 3}, 0));
    a->set({0, 2}, qdInt(1));
    a->set({2, 0}, qdInt(2));
    int at[2] = {1, 2}; // not stored: the next stored entry follows it
    ASSERT_EQ(H.arrayNextEntry(a, at), 0);
    EXPECT_EQ(at[0], 2);
    EXPECT_EQ(at[1], 0);
    EXPECT_NE(H.arrayNextEntry(a, at), 0);
}

TEST(HostArray, GetSetDefaultsAndRange) {
    Context ctx;
    auto sets = indexSets(ctx, {2}, 0);
    struct Case {
        qd_type elem;
        qd_value deflt;
        qd_value stored;
        std::string defaultText, storedText;
    };
    const Case cases[] = {
        {QD_INT, qdInt(0), qdInt(-4), "0", "-4"},
        {QD_INT, qdInt(9), qdInt(1), "9", "1"},
        {QD_REAL, qdReal(0), qdReal(2.25), "0", "2.25"},
        {QD_STRING, qd_value{}, qdStr("x y"), "", "x y"},
        {QD_BOOL, qdBool(false), qdBool(true), "false", "true"},
    };
    for (const Case &c : cases) {
        ArrayOptions opt;
        opt.deflt = c.deflt;
        Array *a = ctx.newArray(c.elem, sets, opt);
        int at[1] = {1}, bad[1] = {2};
        qd_value v = c.stored, out{};
        ASSERT_EQ(H.arrayGet(a, at, &out), 0);
        EXPECT_EQ(valueText(c.elem, out), c.defaultText);
        ASSERT_EQ(H.arraySet(&ctx, a, at, &v), 0);
        ASSERT_EQ(H.arrayGet(a, at, &out), 0);
        EXPECT_EQ(valueText(c.elem, out), c.storedText);
        EXPECT_NE(H.arraySet(&ctx, a, bad, &v), 0);
        EXPECT_NE(H.arrayGet(a, bad, &out), 0);
        EXPECT_EQ(H.arrayElementType(a), c.elem);
        EXPECT_EQ(a->entries().size(), 1u);
    }
}

TEST(HostArray, DenseCountsEveryCell) {
    Context ctx;
    ArrayOptions opt;
    opt.dense = true;
    opt.dynamic = false;
    Array *a = ctx.newArray(QD_INT, indexSets(ctx, {2, 3}, 0), opt);
    EXPECT_EQ(H.arrayEntryCount(a), 6);
    EXPECT_EQ(walk(a, 2, true).size(), 6u);
    EXPECT_EQ(a->type(), QD_INT | QD_ARRAY);
    std::map<std::vector<std::string>, std::string> e = a->entries();
    EXPECT_EQ(e.size(), 6u);
    EXPECT_EQ((e[{"20", "30"}]), "0");
}

TEST(HostArray, LoadBracketsAndIndexSets) {
    Context ctx;
    auto sets = indexSets(ctx, {1, 1}, 0);
    Array *a = ctx.newArray(QD_INT, sets);
    void *got[2] = {nullptr, nullptr};
    H.arrayIndexSets(a, got);
    EXPECT_EQ(got[0], sets[0]);
    EXPECT_EQ(got[1], sets[1]);
    ASSERT_EQ(H.arrayBeginLoad(&ctx, a), 0);
    EXPECT_NE(H.arrayBeginLoad(&ctx, a), 0); // already loading
    EXPECT_EQ(H.arrayEndLoad(&ctx, a, 7), 7);
    EXPECT_EQ(ctx.beginLoads(), 1);
    EXPECT_EQ(ctx.endLoads(), 1);
}

TEST(HostArray, CompareIndices) {
    struct Case {
        std::vector<int> a, b;
        int sign;
    };
    const Case cases[] = {
        {{1, 2}, {1, 2}, 0}, {{1, 2}, {1, 3}, -1}, {{2, 0}, {1, 9}, 1}, {{}, {}, 0}};
    for (const Case &c : cases) {
        int r = H.compareIndices((int)c.a.size(), c.a.data(), c.b.data());
        EXPECT_EQ((r > 0) - (r < 0), c.sign);
    }
}

} // namespace
