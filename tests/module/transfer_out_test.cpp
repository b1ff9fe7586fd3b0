// transferOut over the csv store: the exact text each object kind and layout
// writes, the column checks, grow, and every failure message with its
// position.  The module is driven directly, so that host operations can be
// made to fail at a chosen element.
#include "refhost.h"
#include "sheetfile.h"
#include "support/tout_support.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace qdhost;
using tout::opaqueType;
using tout::pointType;
using tout::shipment;
using tout::shipmentType;

namespace {

// ---- a host table whose set and array reads can fail on request ----------
qd_host g_table;
void *g_failSet = nullptr;
int g_failPosition = -1;
void *g_failArray = nullptr;
int g_failGetCall = -1; // fails the n-th arrayGet (from 1) of g_failArray
int g_getCalls = 0;

int failingSetElement(qd_context *ctx, void *set, int position, qd_value *out) {
    if (set == g_failSet && position == g_failPosition) return 1;
    return hostTable()->setElement(ctx, set, position, out);
}

int failingArrayGet(void *array, const int *at, qd_value *out) {
    if (array == g_failArray && ++g_getCalls == g_failGetCall) return 1;
    return hostTable()->arrayGet(array, at, out);
}

void resetFaults() {
    g_failSet = g_failArray = nullptr;
    g_failPosition = g_failGetCall = -1;
    g_getCalls = 0;
}

void startModule() {
    static bool started = false;
    if (started) return;
    g_table = *hostTable();
    g_table.setElement = failingSetElement;
    g_table.arrayGet = failingArrayGet;
    int version = 0, interfaceVersion = 1004000;
    const qd_module_desc *desc = nullptr;
    ASSERT_EQ(qdsheet_init(&g_table, &version, &interfaceVersion, &desc), 0);
    started = true;
}

struct Outcome {
    int status = -1;
    std::string text;
    std::string errors;
};

// Writes the items into a fresh csv file named with `fileOptions` in front,
// closes it and answers the file's text.
Outcome writeItems(Context &ctx, const std::string &fileOptions, std::vector<Item> &items) {
    startModule();
    std::string path = tout::scratch("out.csv");
    std::remove(path.c_str());
    std::string name = fileOptions + path;
    int mode = QD_MODE_PENDING | QD_MODE_WRITE;
    Outcome out;
    void *file = openText(&ctx, &mode, name.c_str());
    EXPECT_NE(file, nullptr) << ctx.allErrors();
    if (!file) return out;
    std::vector<const char *> labels;
    std::vector<qd_type> types;
    std::vector<void *> values;
    for (Item &item : items) {
        labels.push_back(item.label.c_str());
        types.push_back(item.type);
        values.push_back(item.value);
    }
    out.status =
        transferOut(&ctx, file, (int)items.size(), labels.data(), types.data(), values.data());
    EXPECT_EQ(closeText(&ctx, file), 0);
    out.text = tout::slurp(path);
    out.errors = ctx.allErrors();
    std::remove(path.c_str());
    return out;
}

// ---- types used by the cases ---------------------------------------------
qd_type legType() { return registerRecordType("tout_leg", {{"id", QD_INT}, {"at", pointType()}}); }
qd_type codeType() {
    ExternalType t;
    t.fromText = [](const std::string &text, std::string &data) {
        data = text;
        return true;
    };
    t.toText = [](const std::string &data) { return data; };
    return registerExternalType("tout_code", t);
}

Record *point(Context &ctx, double x, double y) {
    Record *r = ctx.newRecord(pointType());
    r->set("x", qdReal(x));
    r->set("y", qdReal(y));
    return r;
}

// A 2-dimensional real array over plants p1..p3 and markets m1..m2.
Array *costs(Context &ctx, const std::vector<std::pair<std::vector<int>, double>> &entries) {
    Set *plants = tout::textSet(ctx, {"p1", "p2", "p3"});
    Set *markets = tout::textSet(ctx, {"m1", "m2"});
    Array *a = ctx.newArray(QD_REAL, {plants, markets});
    for (const auto &e : entries) a->set(e.first, qdReal(e.second));
    return a;
}

Array *intVector(Context &ctx, Set *index, const std::vector<qd_int> &values) {
    Array *a = ctx.newArray(QD_INT, {index});
    for (size_t i = 0; i < values.size(); i++) a->set({(int)i}, qdInt(values[i]));
    return a;
}

Item item(const std::string &label, Object *object) { return Item{label, object->type(), object}; }
// A list item as a model declares it: the structure is the list's, whatever
// its elements are.
Item listItem(const std::string &label, List *list) {
    return Item{label, QD_LIST | QD_DYNAMIC, list};
}

struct WriteCase {
    const char *name;
    const char *fileOptions;
    const char *label;
    std::function<Item(Context &, const char *label)> build;
    int status;
    const char *text;
    const char *errors;
};

TEST(TransferOut, WritesEachKindAndLayout) {
    static qd_value answer = qdInt(42), half = qdReal(2.5), yes = qdBool(true);
    static qd_value commaText;
    const WriteCase
        cases
            [] =
                {
                    {"integer scalar", "", "[B2]",
                     [](Context &, const char *l) {
                         return Item{l, QD_INT, &answer};
                     },
                     0, "\n,42\n", ""},
                    {"real scalar", "", "[A1]",
                     [](Context &, const char *l) {
                         return Item{l, QD_REAL, &half};
                     },
                     0, "2.5\n", ""},
                    {"text with separator", "", "[A1]",
                     [](Context &ctx, const char *l) {
                         commaText = qdStr(ctx.intern("a,b"));
                         return Item{l, QD_STRING, &commaText};
                     },
                     0, "\"a,b\"\n", ""},
                    {"boolean scalar", "", "[A1]",
                     [](Context &, const char *l) {
                         return Item{l, QD_BOOL, &yes};
                     },
                     0, "TRUE\n", ""},
                    {"record scalar", "", "[A1:B1]",
                     [](Context &ctx, const char *l) { return item(l, point(ctx, 1, 2)); }, 0,
                     "1,2\n", ""},
                    {"record scalar cut to first row", "", "[A1:B3]",
                     [](Context &ctx, const char *l) { return item(l, point(ctx, 1, 2)); }, 0,
                     "1,2\n", ""},
                    {"nested record", "", "[B1:D1]",
                     [](Context &ctx, const char *l) {
                         Record *r = ctx.newRecord(legType());
                         r->set("id", qdInt(7));
                         r->nested("at")->set("x", qdReal(1.5));
                         r->nested("at")->set("y", qdReal(-2));
                         return item(l, r);
                     },
                     0, ",7,1.5,-2\n", ""},
                    {"record reordered by selection", "", "[A1:B1](#2,#1)",
                     [](Context &ctx, const char *l) { return item(l, point(ctx, 1, 2)); }, 0,
                     "2,1\n", ""},
                    {"record scalar too narrow", "", "[A1]",
                     [](Context &ctx, const char *l) { return item(l, point(ctx, 1, 2)); }, 1, "\n",
                     ""},
                    {"external scalar", "", "[A1]",
                     [](Context &ctx, const char *l) {
                         return item(l, ctx.newExternal(codeType(), "X-1"));
                     },
                     0, "X-1\n", ""},
                    {"external without text", "", "[A1]",
                     [](Context &ctx, const char *l) {
                         return item(l, ctx.newExternal(opaqueType()));
                     },
                     1, "\n", "SHEET: Wrong data type.\n"},
                    {"set cut without grow", "", "[A1:B1]",
                     [](Context &ctx, const char *l) {
                         return item(l, tout::intSet(ctx, {3, 1, 2}));
                     },
                     0, "3,1\n", ""},
                    {"set grows", "grow;", "[A1:B1]",
                     [](Context &ctx, const char *l) {
                         return item(l, tout::intSet(ctx, {3, 1, 2}));
                     },
                     0, "3,1\n2\n", ""},
                    {"ten elements in two columns grow to five rows", "", "grow;[A1:B1]",
                     [](Context &ctx, const char *l) {
                         return item(l, tout::intSet(ctx, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
                     },
                     0, "1,2\n3,4\n5,6\n7,8\n9,10\n", ""},
                    {"set on a base above zero", "", "[A1:A3]",
                     [](Context &ctx, const char *l) {
                         return item(l, tout::textSet(ctx, {"x", "y"}, SetOptions{true, false, 5}));
                     },
                     0, "x\ny\n", ""},
                    {"records list", "grow;", "[A1:D1]",
                     [](Context &ctx, const char *l) {
                         List *list = ctx.newList(shipmentType());
                         list->append(shipmentType(), qdPtr(shipment(ctx, "p1", "m1", 10, true)));
                         list->append(shipmentType(), qdPtr(shipment(ctx, "p2", "m2", 5, false)));
                         return item(l, list);
                     },
                     0, "p1,m1,10,TRUE\np2,m2,5,FALSE\n", ""},
                    {"two records a row", "grow;", "[A1:D1]",
                     [](Context &ctx, const char *l) {
                         List *list = ctx.newList(pointType());
                         for (int i = 0; i < 3; i++)
                             list->append(pointType(), qdPtr(point(ctx, i, -i)));
                         return item(l, list);
                     },
                     0, "0,0,1,-1\n2,-2\n", ""},
                    {"records list in too few columns", "", "[A1:C1]",
                     [](Context &ctx, const char *l) {
                         List *list = ctx.newList(shipmentType());
                         list->append(shipmentType(), qdPtr(shipment(ctx, "p1", "m1", 10, true)));
                         return item(l, list);
                     },
                     1, "\n", "SHEET: Wrong number of columns (req:4 found:3).\n"},
                    {"untyped list of values", "", "[A1:C1]",
                     [](Context &ctx, const char *l) {
                         List *list = ctx.newList();
                         list->append(QD_INT, qdInt(1));
                         list->append(QD_STRING, qdStr("a"));
                         list->append(QD_REAL, qdReal(2.5));
                         return item(l, list);
                     },
                     0, "1,a,2.5\n", ""},
                    {"sparse array", "", "[A1:C3]",
                     [](Context &ctx, const char *l) {
                         return item(l, costs(ctx, {{{0, 1}, 1.5}, {{2, 0}, 2}}));
                     },
                     0, "p1,m2,1.5\np3,m1,2\n", ""},
                    {"array of records", "", "[A1:C1]",
                     [](Context &ctx, const char *l) {
                         Set *k = tout::textSet(ctx, {"a", "b"});
                         Array *a = ctx.newArray(pointType(), {k});
                         Record *r = a->record({1});
                         r->set("x", qdReal(3));
                         r->set("y", qdReal(4));
                         return item(l, a);
                     },
                     0, "b,3,4\n", ""},
                    {"array without entries", "", "[A1:C1]",
                     [](Context &ctx, const char *l) { return item(l, costs(ctx, {})); }, 0, "\n",
                     ""},
                    {"one row without grow", "", "[A1:C1]",
                     [](Context &ctx, const char *l) {
                         return item(l, costs(ctx, {{{0, 0}, 1}, {{1, 1}, 2}, {{2, 1}, 3}}));
                     },
                     0, "p1,m1,1\n", ""},
                    {"one row with grow", "grow;", "[A1:C1]",
                     [](Context &ctx, const char *l) {
                         return item(l, costs(ctx, {{{0, 0}, 1}, {{1, 1}, 2}, {{2, 1}, 3}}));
                     },
                     0, "p1,m1,1\np2,m2,2\np3,m2,3\n", ""},
                    {"array in too few columns", "", "[A1:B4]",
                     [](Context &ctx, const char *l) {
                         return item(l, costs(ctx, {{{0, 0}, 1}}));
                     },
                     1, "\n", "SHEET: Wrong number of columns (req:3 found:2).\n"},
                    {"noindex 3 by 4 writes zeros", "", "noindex;[A1:D3]",
                     [](Context &ctx, const char *l) {
                         Set *rows = tout::intSet(ctx, {1, 2, 3});
                         Set *cols = tout::intSet(ctx, {1, 2, 3, 4});
                         Array *a = ctx.newArray(QD_INT, {rows, cols});
                         a->set({0, 1}, qdInt(5));
                         a->set({2, 3}, qdInt(9));
                         return item(l, a);
                     },
                     0, "0,5,0,0\n0,0,0,0\n0,0,0,9\n", ""},
                    {"noindex needs the last set's width", "", "noindex;[A1:C3]",
                     [](Context &ctx, const char *l) {
                         Array *a = ctx.newArray(QD_INT, {tout::intSet(ctx, {1, 2, 3}),
                                                          tout::intSet(ctx, {1, 2, 3, 4})});
                         return item(l, a);
                     },
                     1, "\n", "SHEET: Wrong number of columns (req:4 found:3).\n"},
                    {"noindex one dimension grows", "grow;noindex;", "[A1:B1]",
                     [](Context &ctx, const char *l) {
                         return item(l, intVector(ctx, tout::intSet(ctx, {1, 2, 3, 4, 5}),
                                                  {1, 2, 3, 4, 5}));
                     },
                     0, "1,2\n3,4\n5\n", ""},
                    {"partndx rows for stored combinations", "partndx;", "[A1:C5]",
                     [](Context &ctx, const char *l) {
                         return item(l, costs(ctx, {{{0, 1}, 5}, {{2, 0}, 6}, {{2, 1}, 7}}));
                     },
                     0, "p1,0,5\np3,6,7\n", ""},
                    {"partindex spelling grows", "", "partindex;grow;[B2:D2]",
                     [](Context &ctx, const char *l) {
                         return item(l, costs(ctx, {{{0, 1}, 5}, {{1, 0}, 6}}));
                     },
                     0, "\n,p1,0,5\n,p2,6,0\n", ""},
                    {"partndx on one dimension", "partndx;", "[A1:B1]",
                     [](Context &ctx, const char *l) {
                         return item(l, intVector(ctx, tout::intSet(ctx, {1, 2, 3}), {1, 2, 3}));
                     },
                     1, "\n", "SHEET: Wrong number of columns (req:3 found:2).\n"},
                    {"list of arrays merged by tuple", "", "[A1:C3]",
                     [](Context &ctx, const char *l) {
                         Set *k = tout::intSet(ctx, {1, 2, 3});
                         Array *a = ctx.newArray(QD_STRING, {k});
                         a->set({0}, qdStr("a"));
                         a->set({1}, qdStr("b"));
                         Array *b = ctx.newArray(QD_STRING, {k});
                         b->set({1}, qdStr("c"));
                         b->set({2}, qdStr("d"));
                         List *list = ctx.newList(QD_STRING | QD_ARRAY);
                         list->append(a->type(), qdPtr(a));
                         list->append(b->type(), qdPtr(b));
                         return listItem(l, list);
                     },
                     0, "1,a\n2,b,c\n3,,d\n", ""},
                    {"untyped list of arrays grows", "grow;", "[A1:C1]",
                     [](Context &ctx, const char *l) {
                         Set *k = tout::intSet(ctx, {1, 2, 3});
                         Array *a = intVector(ctx, k, {10, 20});
                         Array *b = ctx.newArray(QD_INT, {k});
                         b->set({2}, qdInt(30));
                         List *list = ctx.newList();
                         list->append(a->type(), qdPtr(a));
                         list->append(b->type(), qdPtr(b));
                         return listItem(l, list);
                     },
                     0, "1,10\n2,20\n3,,30\n", ""},
                    {"list of arrays in too few columns", "", "[A1:B3]",
                     [](Context &ctx, const char *l) {
                         Set *k = tout::intSet(ctx, {1});
                         List *list = ctx.newList(QD_INT | QD_ARRAY);
                         Array *a = intVector(ctx, k, {1});
                         list->append(a->type(), qdPtr(a));
                         list->append(a->type(), qdPtr(a));
                         return listItem(l, list);
                     },
                     1, "\n", "SHEET: Wrong number of columns (req:3 found:2).\n"},
                    {"arrays of different dimensions", "", "[A1:C3]",
                     [](Context &ctx, const char *l) {
                         Set *k = tout::intSet(ctx, {1});
                         List *list = ctx.newList(QD_INT | QD_ARRAY);
                         Array *a = intVector(ctx, k, {1});
                         Array *b = ctx.newArray(QD_INT, {k, k});
                         list->append(a->type(), qdPtr(a));
                         list->append(b->type(), qdPtr(b));
                         return listItem(l, list);
                     },
                     1, "\n", "SHEET: Inconsistent array list.\n"},
                    {"header created from the selection", "", "skiph+;grow;[A1:C1](key,value)",
                     [](Context &ctx, const char *l) {
                         return item(l, intVector(ctx, tout::textSet(ctx, {"a", "b"}), {1, 2}));
                     },
                     0, "key,value\na,1\nb,2\n", ""},
                    {"uninitialised set", "", "[A1]",
                     [](Context &, const char *l) { return Item{l, QD_INT | QD_SET, nullptr}; }, 1,
                     "\n", "SHEET: Trying to access an uninitialized set.\n"},
                    {"uninitialised list", "", "[A1]",
                     [](Context &, const char *l) { return Item{l, QD_INT | QD_LIST, nullptr}; }, 1,
                     "\n", "SHEET: Trying to access an uninitialized list.\n"},
                    {"uninitialised array", "", "[A1]",
                     [](Context &, const char *l) { return Item{l, QD_INT | QD_ARRAY, nullptr}; },
                     1, "\n", "SHEET: Trying to access an uninitialized array.\n"},
                    {"unknown structure", "", "[A1]",
                     [](Context &, const char *l) { return Item{l, QD_INT | 0x5000, &answer}; }, 1,
                     "\n", "SHEET: Wrong column type.\n"},
                    {"bad range", "", "[$A1]",
                     [](Context &, const char *l) { return Item{l, QD_INT, &answer}; }, 1, "\n",
                     "SHEET: Invalid range.\nSHEET: Invalid range or name not found.\n"},
                    {"external text beyond the buffer", "bufsize=1;", "[A1:B2]",
                     [](Context &ctx, const char *l) {
                         Array *a = ctx.newArray(codeType(), {tout::intSet(ctx, {1})});
                         a->setObject({0}, *ctx.newExternal(codeType(), std::string(1024, 'x')));
                         return item(l, a);
                     },
                     1, "1\n", "SHEET: Buffer overflow.\nSHEET: Wrong data value for [R1C2].\n"},
                };
    for (const WriteCase &c : cases) {
        SCOPED_TRACE(c.name);
        Context ctx;
        std::vector<Item> items{c.build(ctx, c.label)};
        Outcome out = writeItems(ctx, c.fileOptions, items);
        EXPECT_EQ(out.status, c.status);
        EXPECT_EQ(out.text, c.text);
        EXPECT_EQ(out.errors, c.errors);
    }
}

// Host operations failing at a chosen element: the messages carry the
// absolute position of the cell, and what was written before stays.
TEST(TransferOut, FailuresReportTheirCell) {
    struct Case {
        const char *name;
        const char *label;
        bool failIndex; // else the value read fails
        int failAt;     // index position, or the n-th value read
        bool set;       // a set instead of an array
        const char *text;
        const char *errors;
    };
    const Case cases[] = {
        {"index in row 7 from A1", "[A1:B10]", true, 6, false,
         "1,10\n2,20\n3,30\n4,40\n5,50\n6,60\n", "SHEET: Wrong data value for [R7C1].\n"},
        {"value of the third entry from C5", "[C5:D20]", false, 3, false,
         "\n\n\n\n,,1,10\n,,2,20\n,,3\n", "SHEET: Wrong data value for [R7C4].\n"},
        {"set element four from B2", "[B2:C9]", true, 3, true, "\n,1,2\n,3\n",
         "SHEET: Wrong result value at [R3C3].\n"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Context ctx;
        Set *k = tout::intSet(ctx, {1, 2, 3, 4, 5, 6, 7, 8});
        Array *a = intVector(ctx, k, {10, 20, 30, 40, 50, 60, 70, 80});
        std::vector<Item> items{c.set ? item(c.label, k) : item(c.label, a)};
        resetFaults();
        if (c.failIndex) {
            g_failSet = k;
            g_failPosition = c.failAt;
        } else {
            g_failArray = a;
            g_failGetCall = c.failAt;
        }
        Outcome out = writeItems(ctx, "", items);
        resetFaults();
        EXPECT_EQ(out.status, 1);
        EXPECT_EQ(out.text, c.text);
        EXPECT_EQ(out.errors, c.errors);
        EXPECT_EQ(k->locks(), 0); // every lock released
    }
}

// The answer counts the items not done; the first failure ends the transfer.
TEST(TransferOut, AnswersItemsNotDone) {
    struct Case {
        const char *name;
        std::vector<std::string> labels;
        int status;
        const char *text;
    };
    const Case cases[] = {
        {"all done", {"[A1]", "[B1]", "[C1]"}, 0, "1,1,1\n"},
        {"second fails", {"[A1]", "[$B1]", "[C1]"}, 2, "1\n"},
        {"first fails", {"[$A1]", "[B1]"}, 2, "\n"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        Context ctx;
        qd_value one = qdInt(1);
        std::vector<Item> items;
        for (const std::string &label : c.labels) items.push_back(Item{label, QD_INT, &one});
        Outcome out = writeItems(ctx, "", items);
        EXPECT_EQ(out.status, c.status);
        EXPECT_EQ(out.text, c.text);
    }
}

} // namespace
