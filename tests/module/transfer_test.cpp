// transferIn and transferOut over the csv store.  Reading goes end to end:
// csv files read through the loaded module into the reference host's
// objects, in every layout, with the exact messages.  Writing drives the
// module directly, so that host operations can be made to fail at a chosen
// element: the exact text each object kind and layout writes, the column
// checks, grow, and every failure message with its position.
#include "refhost.h"
#include "sheetfile.h"
#include "support/tout_support.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

using namespace qdhost;
using tout::opaqueType;
using tout::pointType;
using tout::shipment;
using tout::shipmentType;

namespace {

using Entries = std::map<std::vector<std::string>, std::string>;

const char *kBadRange = "SHEET: Invalid range or name not found.\n";

qd_type stopType() {
    return registerRecordType("tin_stop",
                              {{"name", QD_STRING}, {"at", pointType()}, {"open", QD_BOOL}});
}
// An external type that refuses texts with a '!'.
qd_type codeType() {
    ExternalType t;
    t.fromText = [](const std::string &text, std::string &data) {
        if (text.find('!') != std::string::npos) return false;
        data = text;
        return true;
    };
    t.toText = [](const std::string &data) { return "<" + data + ">"; };
    return registerExternalType("tin_code", t);
}

class TransferIn : public ::testing::Test {
protected:
    TransferIn() : ctx(TABRIX_TEST_TMP) {}
    void SetUp() override { ASSERT_TRUE(host.loaded()) << host.loadError(); }

    // Writes `content` as a csv file and reads one item from it.
    int read(const std::string &content, const std::string &label, qd_type type, void *value,
             int *counter = nullptr) {
        std::string name = "tin_" + std::to_string(++_files) + ".csv";
        std::ofstream(std::string(TABRIX_TEST_TMP) + "/" + name) << content;
        return host.readItem(ctx, "csv", name, label, type, value, counter);
    }

    // Reads one item that must fail: answers the messages given since the
    // last failure and clears them.
    std::string failure(const std::string &content, const std::string &label, qd_type type,
                        void *value) {
        EXPECT_EQ(1, read(content, label, type, value)) << label;
        std::string messages = ctx.allErrors();
        ctx.errors.clear();
        return messages;
    }

    Host host;
    Context ctx;

private:
    int _files = 0;
};

// ---- labels through the csv store --------------------------------------------

TEST_F(TransferIn, LabelsSelectCellsAndFailWithBothMessages) {
    const std::string csv = "id,name,price\n1,apple,2.5\n2,pear,3\n3,plum,4.25\n";
    struct {
        const char *label;
        const char *values; // list texts joined by "|", or the messages
        bool fails;
    } cases[] = {
        {"[]", "id|name|price|1|apple|2.5|2|pear|3|3|plum|4.25", false},
        {"[Sheet1$B2:B3]", "apple|pear", false},
        {"skiph;[](price,name)", "2.5|apple|3|pear|4.25|plum", false},
        {"[A1:C1](3,1)", "price|id", false},
        {"[Sheet2$A1]", "SHEET: Sheet not found.\nSHEET: Invalid range or name not found.\n", true},
        {"[$A1]", "SHEET: Invalid range.\nSHEET: Invalid range or name not found.\n", true},
        {"prices", "SHEET: Range name not found.\nSHEET: Invalid range or name not found.\n", true},
        {"skiph;[](cost)",
         "SHEET: Invalid column identifier in selection (cost).\n"
         "SHEET: Invalid range or name not found.\n",
         true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.label);
        ctx.errors.clear();
        List *list = ctx.newList(QD_STRING);
        int rc = read(csv, c.label, list->type(), list);
        if (c.fails) {
            EXPECT_EQ(1, rc);
            EXPECT_EQ(c.values, ctx.allErrors());
            continue;
        }
        EXPECT_EQ(0, rc);
        EXPECT_EQ("", ctx.allErrors());
        std::string joined;
        for (const std::string &t : list->texts()) joined += (joined.empty() ? "" : "|") + t;
        EXPECT_EQ(c.values, joined);
    }
}

// ---- scalars and conversions -------------------------------------------------

TEST_F(TransferIn, ScalarsAndTheBooleanWord) {
    struct {
        const char *csv;
        qd_type type;
        const char *text; // an empty cell read as a string gives "", never null
    } cases[] = {{"abc\n", codeType(), "<abc>"},
                 {"2.5\n", codeType(), "<2.5>"},
                 {"TRUE\n", codeType(), "<false>"},
                 {"FALSE\n", codeType(), "<true>"},
                 {"2.5\n", QD_INT, "2"},
                 {",x\n", QD_STRING, ""},
                 {"TRUE\n", QD_REAL, "1"}};
    for (const auto &c : cases) {
        SCOPED_TRACE(c.csv);
        if (c.type == codeType()) {
            External *e = ctx.newExternal(codeType());
            ASSERT_EQ(0, read(std::string("-,") + c.csv, "[B1]", codeType(), e));
            EXPECT_EQ(c.text, e->text());
            continue;
        }
        qd_value v{};
        ASSERT_EQ(0, read(std::string("-,") + c.csv, "[B1]", c.type, &v));
        EXPECT_EQ(c.text, c.type == QD_STRING && !v.s ? "null" : valueText(c.type, v));
    }
    External *e = ctx.newExternal(codeType());
    EXPECT_EQ(failure("x\nx,x,bad!\n", "[C2:D3]", codeType(), e),
              "SHEET: Wrong result value at [R2C3].\n");
    External *o = ctx.newExternal(opaqueType());
    EXPECT_EQ(failure("x\n", "[A1]", opaqueType(), o), "SHEET: Wrong data type.\n");
}

TEST_F(TransferIn, RecordScalarWithNestedRecord) {
    Record *r = ctx.newRecord(stopType());
    int counter = 0;
    ASSERT_EQ(0, read("x,Depot,1.5,-2,TRUE\n", "[B1:E1]", stopType(), r, &counter));
    EXPECT_EQ(1, counter);
    EXPECT_EQ("Depot", r->fieldText("name"));
    EXPECT_EQ(1.5, r->nested("at")->get("x").r);
    EXPECT_EQ(-2.0, r->nested("at")->get("y").r);
    EXPECT_EQ(1, r->get("open").b);
    // Reordered columns.
    Record *q = ctx.newRecord(pointType());
    ASSERT_EQ(0, read("1,2\n", "[A1:B1](2,1)", pointType(), q));
    EXPECT_EQ(2.0, q->get("x").r);
    EXPECT_EQ(1.0, q->get("y").r);
}

// ---- sets and lists ------------------------------------------------------------

TEST_F(TransferIn, SetFailures) {
    struct {
        std::function<void *(Context &)> make;
        qd_type type;
        const char *message;
    } cases[] = {
        {[](Context &c) {
             return (void *)c.newSet(QD_INT, SetOptions{false, false, 0});
         },
         QD_INT | QD_SET, "SHEET: Non dynamic set for a `write'.\n"},
        {[](Context &) { return (void *)nullptr; }, QD_INT | QD_SET | QD_DYNAMIC,
         "SHEET: Trying to access an uninitialized set.\n"},
        {[](Context &c) { return (void *)c.newSet(QD_INT); }, pointType() | QD_SET | QD_DYNAMIC,
         "SHEET: Wrong data type.\n"},
    };
    for (const auto &c : cases) EXPECT_EQ(failure("1\n", "[]", c.type, c.make(ctx)), c.message);
    // A finalised set refuses new values: the cell is named.
    Set *closed = ctx.newSet(QD_INT, {qdInt(1)});
    closed->finalise();
    EXPECT_EQ(failure("1\n1,5\n", "[A1:B2]", closed->type(), closed),
              "SHEET: Wrong result value at [R2C2].\n");
}

TEST_F(TransferIn, ListsOfValuesAndExternals) {
    List *list = ctx.newList(QD_REAL);
    int counter = 0;
    ASSERT_EQ(0, read("1,,2\n\nx,3\n", "[]", list->type(), list, &counter));
    EXPECT_EQ((std::vector<std::string>{"1", "2", "0", "3"}), list->texts());
    EXPECT_EQ(4, counter);

    List *codes = ctx.newList(codeType());
    ASSERT_EQ(0, read("a,b\n", "[]", codes->type(), codes));
    EXPECT_EQ((std::vector<std::string>{"<a>", "<b>"}), codes->texts());
    EXPECT_EQ(0, ctx.liveObjects());

    List *bad = ctx.newList(codeType());
    EXPECT_EQ(failure("a\nb!\n", "[A1:A2]", bad->type(), bad),
              "SHEET: Wrong result value at [R2C1].\n");
    EXPECT_EQ(0, ctx.liveObjects());

    EXPECT_EQ(failure("1\n", "[]", QD_INT | QD_LIST | QD_DYNAMIC, nullptr),
              "SHEET: Trying to access an uninitialized list.\n");
}

TEST_F(TransferIn, ListsOfRecordsSkipEmptyGroups) {
    List *list = ctx.newList(pointType());
    int counter = 0;
    ASSERT_EQ(0, read("1,2,3,4\n,,5,\n,,,\n", "[]", list->type(), list, &counter));
    EXPECT_EQ((std::vector<std::string>{"{1,2}", "{3,4}", "{5,0}"}), list->texts());
    EXPECT_EQ(3, counter);
    EXPECT_EQ(0, ctx.liveObjects());

    List *odd = ctx.newList(pointType());
    EXPECT_EQ(failure("1,2,3\n", "[]", odd->type(), odd),
              "SHEET: Wrong number of columns (req:2 found:3).\n");
}

// ---- arrays --------------------------------------------------------------------

// Entries written "key=value" apart by spaces, a key's parts joined by '/'.
Entries entries(const std::string &text) {
    Entries out;
    std::istringstream in(text);
    for (std::string item; in >> item;) {
        size_t eq = item.find('=');
        std::vector<std::string> key;
        std::istringstream parts(item.substr(0, eq));
        for (std::string part; std::getline(parts, part, '/');) key.push_back(part);
        out[key] = item.substr(eq + 1);
    }
    return out;
}

struct ArrayCase {
    const char *csv;
    const char *label;
    int dims;            // 1: index set of strings; 2: strings x ints
    bool record;         // point elements instead of reals
    int counter;         // -1: the read fails with `error`
    const char *entries; // expected entries, see entries()
    const char *error;   // message on failure, without "SHEET: " and the line end
};

const ArrayCase kArrays[] = {
    {"a,1.5\n,\nb,2\n\nc,\n", "[]", 1, false, 2, "a=1.5 b=2", ""},
    {"a,1,10\nb,2,20\na,3,30\n", "[]", 2, false, 3, "a/1=10 b/2=20 a/3=30", ""},
    {"10,a\n20,b\n", "[](2,1)", 1, false, 2, "a=10 b=20", ""},
    {"key,value\na,1\n", "skiph;[](key,value)", 1, false, 1, "a=1", ""},
    {"a,1,2\nb,,4\nc,,\n", "[]", 1, true, 2, "a={1,2} b={0,4}", ""},
    {"x\nq,r,s\na,1\n,2\n", "[A3:B4]", 1, false, -1, "a=1",
     "An index cannot be an empty cell ([R4C1])."},
    {"x\nq,r,s\nq,r,a,1\nq,r,b,\nq,r,,2\n", "[C3:D5]", 1, false, -1, "a=1",
     "An index cannot be an empty cell ([R5C3])."},
    {"a,1,2\n", "[]", 1, false, -1, "", "Wrong number of columns (req:2 found:3)."},
    {"a,1\n", "[]", 1, true, -1, "", "Wrong number of columns (req:3 found:2)."},
    {"1,2,3\n4,,6\n", "noindex;[]", 2, false, 5, "a/1=1 a/2=2 a/3=3 b/1=4 b/3=6", ""},
    // Short rows skip the rest; long rows end at the wrap.
    {"1,2\n4,5\n", "noindex;[]", 2, false, 4, "a/1=1 a/2=2 b/1=4 b/2=5", ""},
    {"1,2,3,9\n4,5,6,9\n", "noindex;[]", 2, false, 6, "a/1=1 a/2=2 a/3=3 b/1=4 b/2=5 b/3=6", ""},
    {"1,2\n3\n", "noindex;[]", 1, false, 3, "a=1 b=2 c=3", ""},
    {"1,2,3,4,5,6\n", "noindex;[]", 2, true, 3, "a/1={1,2} a/2={3,4} a/3={5,6}", ""},
    {"1,2,3,4\n", "noindex;[]", 2, true, -1, "", "Wrong number of columns (req:6 found:4)."},
    {"a,1,,3\n,,,\nb,4,5,6\n", "partndx;[]", 2, false, 5, "a/1=1 a/3=3 b/1=4 b/2=5 b/3=6", ""},
    {"a,1,2\n", "partndx;[]", 2, false, -1, "", "Wrong number of columns (req:4 found:3)."},
    {"a,1\n", "partndx;[]", 1, false, -1, "", "Wrong number of columns (req:3 found:2)."},
};

TEST_F(TransferIn, ArraysInEveryLayout) {
    for (const ArrayCase &c : kArrays) {
        SCOPED_TRACE(std::string(c.label) + " " + c.csv);
        ctx.errors.clear();
        // noindex and partndx need index sets with content; the default layout
        // grows them from the file.
        bool fixed = std::string(c.label).find("ndx") != std::string::npos ||
                     std::string(c.label).find("noindex") != std::string::npos;
        Set *first = fixed ? ctx.newSet(QD_STRING, {qdStr("a"), qdStr("b"), qdStr("c")})
                           : ctx.newSet(QD_STRING);
        std::vector<Set *> sets{first};
        if (c.dims == 2)
            sets.push_back(fixed ? ctx.newSet(QD_INT, {qdInt(1), qdInt(2), qdInt(3)})
                                 : ctx.newSet(QD_INT));
        Array *array = ctx.newArray(c.record ? pointType() : QD_REAL, sets);
        int counter = 0;
        int rc = read(c.csv, c.label, array->type(), array, &counter);
        EXPECT_EQ(c.counter < 0 ? 1 : 0, rc);
        EXPECT_EQ(*c.error ? "SHEET: " + std::string(c.error) + "\n" : "", ctx.allErrors());
        if (c.counter >= 0) {
            EXPECT_EQ(c.counter, counter);
        }
        EXPECT_EQ(entries(c.entries), array->entries());
        EXPECT_EQ(array->beginLoads, array->endLoads);
        EXPECT_FALSE(array->loading);
    }
}

TEST_F(TransferIn, ArrayFailures) {
    Set *index = ctx.newSet(QD_STRING);
    Array *codes = ctx.newArray(codeType(), {index});
    ASSERT_EQ(0, read("a,x\nb,y\n", "[]", codes->type(), codes));
    EXPECT_EQ((Entries{{{"a"}, "<x>"}, {{"b"}, "<y>"}}), codes->entries());
    EXPECT_EQ(0, ctx.liveObjects());

    EXPECT_EQ(failure("a,x\nb,y!\n", "[]", codes->type(), codes),
              "SHEET: Wrong result value at [R2C2].\n");
    EXPECT_EQ(codes->beginLoads, codes->endLoads);

    Set *closed = ctx.newSet(QD_STRING, {qdStr("a")});
    closed->finalise();
    Array *a = ctx.newArray(QD_INT, {closed});
    EXPECT_EQ(failure("a,1\nz,2\n", "[]", a->type(), a), "SHEET: Wrong index value at [R2C1].\n");
    EXPECT_EQ((Entries{{{"a"}, "1"}}), a->entries());
    EXPECT_EQ(1, a->endLoads);

    Set *points = ctx.newSet(QD_INT);
    Array *byPoint = ctx.newArray(opaqueType(), {points});
    EXPECT_EQ(failure("1,2\n", "[]", byPoint->type(), byPoint), "SHEET: Wrong data type.\n");

    EXPECT_EQ(failure("1,2\n", "[]", QD_INT | QD_ARRAY | QD_DYNAMIC, nullptr),
              "SHEET: Trying to access an uninitialized array.\n");
}

// ---- lists of arrays -------------------------------------------------------------

TEST_F(TransferIn, ListOfArraysFailures) {
    Set *declaredA = ctx.newSet(QD_INT, SetOptions{true, true, 0});
    Set *declaredB = ctx.newSet(QD_INT, SetOptions{true, true, 0});
    Set *anonA = ctx.newSet(QD_INT);
    Set *anonB = ctx.newSet(QD_INT);
    Set *words = ctx.newSet(QD_STRING);
    // Integer arrays over the given index sets; a null array stands for an integer value.
    auto ints = [&](std::vector<Set *> sets) { return ctx.newArray(QD_INT, sets); };
    auto twoA = [&] { return std::vector<Array *>{ints({anonA}), ints({anonA})}; };
    Array *points = ctx.newArray(pointType(), {anonA});
    const char *inconsistent = "Inconsistent array list.";
    struct {
        const char *what;
        std::vector<Array *> arrays;
        const char *csv;
        const char *message; // without "SHEET: " and the line end
        const char *label = "[]";
    } cases[] = {
        {"anonymous sets mix", {ints({anonA}), ints({anonB})}, "1,2,3\n", "", "[A5:C5]"},
        {"declared sets differ", {ints({declaredA}), ints({declaredB})}, "1,2,3\n", inconsistent},
        {"dimensions differ", {ints({anonA}), ints({anonA, words})}, "1,2,3\n", inconsistent},
        {"record element", {ints({anonA}), points}, "1,2,3\n", "Wrong array type for a worksheet."},
        {"a value", {ints({anonA}), nullptr}, "1,2\n", "Wrong list type for a worksheet."},
        {"column count", twoA(), "1,2\n", "Wrong number of columns (req:3 found:2)."},
        {"empty index", twoA(), "1,2,3\n,4,5\n", "An index cannot be an empty cell ([R2C1])."},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        ctx.errors.clear();
        List *list = ctx.newList(0);
        for (Array *a : c.arrays)
            a ? list->append(a->type(), qdPtr(a)) : list->append(QD_INT, qdInt(7));
        int rc = read(c.csv, c.label, QD_LIST | QD_DYNAMIC, list);
        EXPECT_EQ(*c.message ? 1 : 0, rc);
        EXPECT_EQ(*c.message ? "SHEET: " + std::string(c.message) + "\n" : "", ctx.allErrors());
        for (Array *a : c.arrays) {
            if (!a) continue;
            EXPECT_EQ(a->beginLoads, a->endLoads);
            EXPECT_FALSE(a->loading);
        }
    }
}

// ---- the transfer frame ------------------------------------------------------------

TEST_F(TransferIn, ItemsRunInOrderAndTheFirstFailureEndsTheTransfer) {
    std::ofstream(std::string(TABRIX_TEST_TMP) + "/tin_frame.csv") << "1,2\n3,4\n";
    Set *a = ctx.newSet(QD_INT);
    List *b = ctx.newList(QD_INT);
    Set *c = ctx.newSet(QD_INT);
    const char *labels[] = {"[A1:B1]", "[Nowhere$A1]", "[A2:B2]"};
    qd_type types[] = {a->type(), b->type(), c->type()};
    void *values[] = {a, b, c};
    int counters[] = {0, 0, 0};
    void *file = host.open(ctx, "csv", "tin_frame.csv", false);
    ASSERT_NE(nullptr, file);
    EXPECT_EQ(2, host.transferIn(ctx, "csv", file, 3, labels, types, values, counters));
    host.close(ctx, "csv", file);
    EXPECT_EQ((std::vector<std::string>{"1", "2"}), a->texts());
    EXPECT_EQ(2, counters[0]);
    EXPECT_EQ(nullptr, values[0]); // done items are cleared
    EXPECT_EQ(b, values[1]);
    EXPECT_EQ(0, c->size());
    EXPECT_EQ(std::string("SHEET: Sheet not found.\n") + kBadRange, ctx.allErrors());

    // A structure no transfer knows.
    ctx.errors.clear();
    EXPECT_EQ(failure("1\n", "[]", QD_INT | 0x5000, a), "SHEET: Wrong column type.\n");
}

// ---- writing ----------------------------------------------------------------

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
         "<X-1>\n", ""},
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

} // namespace
