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

// Builders of the objects a case writes; the case's label is set afterwards.
using Build = std::function<Item(Context &)>;
using Costs = std::vector<std::pair<std::vector<int>, double>>;

Build value(qd_type type, qd_value *v) {
    return [=](Context &) { return Item{"", type, v}; };
}
Build intsOf(std::vector<qd_int> values) {
    return [=](Context &ctx) { return item("", tout::intSet(ctx, values)); };
}
Build costsOf(Costs entries) {
    return [=](Context &ctx) { return item("", costs(ctx, entries)); };
}
Build vectorOf(std::vector<qd_int> values) {
    return
        [=](Context &ctx) { return item("", intVector(ctx, tout::intSet(ctx, values), values)); };
}
Item aPoint(Context &ctx) { return item("", point(ctx, 1, 2)); }
Item aLeg(Context &ctx) {
    Record *r = ctx.newRecord(legType());
    r->set("id", qdInt(7));
    r->nested("at")->set("x", qdReal(1.5));
    r->nested("at")->set("y", qdReal(-2));
    return item("", r);
}
Item shipments(Context &ctx, int count) {
    List *list = ctx.newList(shipmentType());
    list->append(shipmentType(), qdPtr(shipment(ctx, "p1", "m1", 10, true)));
    if (count > 1) list->append(shipmentType(), qdPtr(shipment(ctx, "p2", "m2", 5, false)));
    return item("", list);
}
Item threePoints(Context &ctx) {
    List *list = ctx.newList(pointType());
    for (int i = 0; i < 3; i++) list->append(pointType(), qdPtr(point(ctx, i, -i)));
    return item("", list);
}
Item mixedValues(Context &ctx) {
    List *list = ctx.newList();
    list->append(QD_INT, qdInt(1));
    list->append(QD_STRING, qdStr("a"));
    list->append(QD_REAL, qdReal(2.5));
    return item("", list);
}
Item recordArray(Context &ctx) {
    Array *a = ctx.newArray(pointType(), {tout::textSet(ctx, {"a", "b"})});
    Record *r = a->record({1});
    r->set("x", qdReal(3));
    r->set("y", qdReal(4));
    return item("", a);
}
Item sparseMatrix(Context &ctx) {
    Array *a =
        ctx.newArray(QD_INT, {tout::intSet(ctx, {1, 2, 3}), tout::intSet(ctx, {1, 2, 3, 4})});
    a->set({0, 1}, qdInt(5));
    a->set({2, 3}, qdInt(9));
    return item("", a);
}
// A list item as a model declares it: the structure is the list's, whatever
// its elements are.
Item listOf(Context &ctx, qd_type type, std::vector<Array *> arrays) {
    List *list = ctx.newList(type);
    for (Array *a : arrays) list->append(a->type(), qdPtr(a));
    return Item{"", QD_LIST | QD_DYNAMIC, list};
}
Item textArrays(Context &ctx) {
    Set *k = tout::intSet(ctx, {1, 2, 3});
    Array *a = ctx.newArray(QD_STRING, {k}), *b = ctx.newArray(QD_STRING, {k});
    a->set({0}, qdStr("a"));
    a->set({1}, qdStr("b"));
    b->set({1}, qdStr("c"));
    b->set({2}, qdStr("d"));
    return listOf(ctx, QD_STRING | QD_ARRAY, {a, b});
}
Item untypedArrays(Context &ctx) {
    Set *k = tout::intSet(ctx, {1, 2, 3});
    Array *b = ctx.newArray(QD_INT, {k});
    b->set({2}, qdInt(30));
    return listOf(ctx, 0, {intVector(ctx, k, {10, 20}), b});
}
Item sameArrayTwice(Context &ctx) {
    Array *a = intVector(ctx, tout::intSet(ctx, {1}), {1});
    return listOf(ctx, QD_INT | QD_ARRAY, {a, a});
}
Item mixedDimensions(Context &ctx) {
    Set *k = tout::intSet(ctx, {1});
    return listOf(ctx, QD_INT | QD_ARRAY, {intVector(ctx, k, {1}), ctx.newArray(QD_INT, {k, k})});
}
Item longExternal(Context &ctx) {
    Array *a = ctx.newArray(codeType(), {tout::intSet(ctx, {1})});
    a->setObject({0}, *ctx.newExternal(codeType(), std::string(1024, 'x')));
    return item("", a);
}

TEST(TransferOut, WritesEachKindAndLayout) {
    static qd_value answer = qdInt(42), half = qdReal(2.5), yes = qdBool(true),
                    comma = qdStr("a,b");
    const std::string columns = "SHEET: Wrong number of columns ";
    const Costs three = {{{0, 0}, 1}, {{1, 1}, 2}, {{2, 1}, 3}};
    struct {
        const char *fileOptions, *label;
        Build build;
        int status;
        std::string text, errors;
    } cases[] = {
        {"", "[B2]", value(QD_INT, &answer), 0, "\n,42\n", ""},
        {"", "[A1]", value(QD_REAL, &half), 0, "2.5\n", ""},
        {"", "[A1]", value(QD_STRING, &comma), 0, "\"a,b\"\n", ""},
        {"", "[A1]", value(QD_BOOL, &yes), 0, "TRUE\n", ""},
        {"", "[A1:B1]", aPoint, 0, "1,2\n", ""},
        {"", "[A1:B3]", aPoint, 0, "1,2\n", ""}, // cut to the first row
        {"", "[B1:D1]", aLeg, 0, ",7,1.5,-2\n", ""},
        {"", "[A1:B1](#2,#1)", aPoint, 0, "2,1\n", ""},
        {"", "[A1]", aPoint, 1, "\n", ""}, // too narrow
        {"", "[A1]", [](Context &c) { return item("", c.newExternal(codeType(), "X-1")); }, 0,
         "X-1\n", ""},
        {"", "[A1]", [](Context &c) { return item("", c.newExternal(opaqueType())); }, 1, "\n",
         "SHEET: Wrong data type.\n"},
        {"", "[A1:B1]", intsOf({3, 1, 2}), 0, "3,1\n", ""},
        {"grow;", "[A1:B1]", intsOf({3, 1, 2}), 0, "3,1\n2\n", ""},
        {"", "grow;[A1:B1]", intsOf({1, 2, 3, 4, 5, 6, 7, 8, 9, 10}), 0,
         "1,2\n3,4\n5,6\n7,8\n9,10\n", ""},
        {"", "[A1:A3]",
         [](Context &c) {
             return item("", tout::textSet(c, {"x", "y"}, SetOptions{true, false, 5}));
         },
         0, "x\ny\n", ""},
        {"grow;", "[A1:D1]", [](Context &c) { return shipments(c, 2); }, 0,
         "p1,m1,10,TRUE\np2,m2,5,FALSE\n", ""},
        {"grow;", "[A1:D1]", threePoints, 0, "0,0,1,-1\n2,-2\n", ""},
        {"", "[A1:C1]", [](Context &c) { return shipments(c, 1); }, 1, "\n",
         columns + "(req:4 found:3).\n"},
        {"", "[A1:C1]", mixedValues, 0, "1,a,2.5\n", ""},
        {"", "[A1:C3]", costsOf({{{0, 1}, 1.5}, {{2, 0}, 2}}), 0, "p1,m2,1.5\np3,m1,2\n", ""},
        {"", "[A1:C1]", recordArray, 0, "b,3,4\n", ""},
        {"", "[A1:C1]", costsOf({}), 0, "\n", ""},
        {"", "[A1:C1]", costsOf(three), 0, "p1,m1,1\n", ""},
        {"grow;", "[A1:C1]", costsOf(three), 0, "p1,m1,1\np2,m2,2\np3,m2,3\n", ""},
        {"", "[A1:B4]", costsOf({{{0, 0}, 1}}), 1, "\n", columns + "(req:3 found:2).\n"},
        {"", "noindex;[A1:D3]", sparseMatrix, 0, "0,5,0,0\n0,0,0,0\n0,0,0,9\n", ""},
        {"", "noindex;[A1:C3]", sparseMatrix, 1, "\n", columns + "(req:4 found:3).\n"},
        {"grow;noindex;", "[A1:B1]", vectorOf({1, 2, 3, 4, 5}), 0, "1,2\n3,4\n5\n", ""},
        {"partndx;", "[A1:C5]", costsOf({{{0, 1}, 5}, {{2, 0}, 6}, {{2, 1}, 7}}), 0,
         "p1,0,5\np3,6,7\n", ""},
        {"", "partindex;grow;[B2:D2]", costsOf({{{0, 1}, 5}, {{1, 0}, 6}}), 0,
         "\n,p1,0,5\n,p2,6,0\n", ""},
        {"partndx;", "[A1:B1]", vectorOf({1, 2, 3}), 1, "\n", columns + "(req:3 found:2).\n"},
        {"", "[A1:C3]", textArrays, 0, "1,a\n2,b,c\n3,,d\n", ""},
        {"grow;", "[A1:C1]", untypedArrays, 0, "1,10\n2,20\n3,,30\n", ""},
        {"", "[A1:B3]", sameArrayTwice, 1, "\n", columns + "(req:3 found:2).\n"},
        {"", "[A1:C3]", mixedDimensions, 1, "\n", "SHEET: Inconsistent array list.\n"},
        {"", "skiph+;grow;[A1:C1](key,value)",
         [](Context &c) {
             return item("", intVector(c, tout::textSet(c, {"a", "b"}), {1, 2}));
         },
         0, "key,value\na,1\nb,2\n", ""},
        {"", "[A1]", value(QD_INT | QD_SET, nullptr), 1, "\n",
         "SHEET: Trying to access an uninitialized set.\n"},
        {"", "[A1]", value(QD_INT | QD_LIST, nullptr), 1, "\n",
         "SHEET: Trying to access an uninitialized list.\n"},
        {"", "[A1]", value(QD_INT | QD_ARRAY, nullptr), 1, "\n",
         "SHEET: Trying to access an uninitialized array.\n"},
        {"", "[A1]", value(QD_INT | 0x5000, &answer), 1, "\n", "SHEET: Wrong column type.\n"},
        {"", "[$A1]", value(QD_INT, &answer), 1, "\n",
         "SHEET: Invalid range.\nSHEET: Invalid range or name not found.\n"},
        {"bufsize=1;", "[A1:B2]", longExternal, 1, "1\n",
         "SHEET: Buffer overflow.\nSHEET: Wrong data value for [R1C2].\n"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(std::string(c.fileOptions) + c.label + " -> " + c.text);
        Context ctx;
        std::vector<Item> items{c.build(ctx)};
        items[0].label = c.label;
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
