// Round trips through the csv driver of the loaded module: every object kind
// and layout is written, the file closed, opened again and read into fresh
// objects, which must equal the originals.  A property test does the same
// with random sparse arrays of one to four dimensions in every layout.
#include "refhost.h"
#include "support/tout_support.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <functional>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

using namespace qdhost;
using tout::pointType;
using tout::shipment;
using tout::shipmentType;

namespace {

// ENTRIES: stored entries; CELLS: every cell of the index sets; NONZERO:
// stored entries other than zero (partndx writes zeros for the cells of a
// row that have no entry, and they read back as entries).
enum View { ENTRIES, CELLS, NONZERO };

std::string join(const std::vector<std::string> &items) {
    std::string out;
    for (const std::string &s : items) out += s + ";";
    return out;
}

std::string show(const std::map<std::vector<std::string>, std::string> &cells) {
    std::ostringstream out;
    for (const auto &c : cells) out << join(c.first) << "=" << c.second << "\n";
    return out.str();
}

// A text view of an object that two equal objects share.
std::string view(const Object *object, View how) {
    if (auto *a = dynamic_cast<const Array *>(object)) {
        auto cells = how == CELLS ? tout::allCells(*a) : a->entries();
        if (how == NONZERO)
            for (auto it = cells.begin(); it != cells.end();)
                it = it->second == "0" ? cells.erase(it) : std::next(it);
        return show(cells);
    }
    if (auto *s = dynamic_cast<const Set *>(object)) return join(s->texts());
    if (auto *l = dynamic_cast<const List *>(object)) {
        if (l->size() > 0 && (l->at(0).type & QD_STRUCT_MASK) == QD_ARRAY) {
            std::string out;
            for (int i = 0; i < l->size(); i++)
                out += "[" + view(static_cast<const Object *>(l->at(i).value.p), how) + "]";
            return out;
        }
        return join(l->texts());
    }
    if (auto *r = dynamic_cast<const Record *>(object)) return r->text();
    if (auto *e = dynamic_cast<const External *>(object)) return e->text();
    return "?";
}

qd_type codeType() {
    ExternalType t;
    t.fromText = [](const std::string &text, std::string &data) {
        if (text.size() < 2 || text[0] != '<') return false;
        data = text.substr(1);
        return true;
    };
    t.toText = [](const std::string &data) { return "<" + data; };
    return registerExternalType("trip_code", t);
}

Set *freshSet(Context &ctx, qd_type type) { return ctx.newSet(type); }

// What a case writes and what it reads back into.
struct Pair {
    qd_type type;
    Object *written;
    Object *read;
    std::string expected; // view the read object must give; empty: the written one's
};

struct TripCase {
    const char *name;
    const char *writeLabel;
    const char *readLabel;
    View how;
    std::function<Pair(Context &)> build;
};

// A read label's whole-sheet range "[]" as the columns the write label
// names ("[A1:D1]" gives "[A:D]"): a workbook sheet's extent reaches one
// column past the data, and the whole sheet would add a column.
std::string readRange(const std::string &writeLabel, std::string readLabel) {
    size_t whole = readLabel.find("[]"), at = writeLabel.find('[');
    if (whole == std::string::npos || at == std::string::npos) return readLabel;
    std::string first, last;
    size_t i = at + 1;
    while (i < writeLabel.size() && std::isalpha((unsigned char)writeLabel[i]))
        first += writeLabel[i++];
    i = writeLabel.find(':', i);
    while (i != std::string::npos && ++i < writeLabel.size() &&
           std::isalpha((unsigned char)writeLabel[i]))
        last += writeLabel[i];
    return readLabel.replace(whole, 2, "[" + first + ":" + (last.empty() ? first : last) + "]");
}

// Writes, closes, reads into the fresh object; answers the fresh view.
void roundTrip(Context &ctx, const std::string &driver, const char *writeLabel,
               const char *readLabel, const Pair &p, View how) {
    std::string path = tout::scratch("trip." + driver);
    std::remove(path.c_str());
    ASSERT_EQ(tout::host().writeItem(ctx, driver.c_str(), path, writeLabel, p.type, p.written), 0)
        << ctx.allErrors();
    int counter = 0;
    ASSERT_EQ(tout::host().readItem(ctx, driver.c_str(), path,
                                    readRange(writeLabel, readLabel).c_str(), p.type, p.read,
                                    &counter),
              0)
        << ctx.allErrors() << "\nfile:\n"
        << tout::slurp(path);
    std::string expected = p.expected.empty() ? view(p.written, how) : p.expected;
    EXPECT_EQ(view(p.read, how), expected) << "file:\n" << tout::slurp(path);
    EXPECT_EQ(ctx.allErrors(), "");
    std::remove(path.c_str());
}

Array *costs(Context &ctx, Set *plants, Set *markets) {
    Array *a = ctx.newArray(QD_REAL, {plants, markets});
    a->set({0, 1}, qdReal(1.25));
    a->set({2, 0}, qdReal(-3));
    a->set({2, 2}, qdReal(1e-7));
    return a;
}

// The round trips run for each driver that reads what it writes.
class RoundTrip : public ::testing::TestWithParam<std::string> {};

Set *plants(Context &ctx) { return tout::textSet(ctx, {"north", "south", "east, far"}); }
Set *markets(Context &ctx) { return tout::textSet(ctx, {"m1", "m2", "m3"}); }

// The costs written, read back into an array over index sets of its own.
Pair costsIntoFreshSets(Context &ctx, const char *expected) {
    Array *read = ctx.newArray(QD_REAL, {freshSet(ctx, QD_STRING), freshSet(ctx, QD_STRING)});
    Array *a = costs(ctx, plants(ctx), markets(ctx));
    return Pair{a->type(), a, read, expected};
}

TEST_P(RoundTrip, EveryKindAndLayout) {
    ASSERT_TRUE(tout::host().loaded()) << tout::host().loadError();
    const TripCase cases[] = {
        {"set of texts", "grow;[A1:C1]", "[]", ENTRIES,
         [](Context &ctx) {
             return Pair{QD_STRING | QD_SET | QD_DYNAMIC,
                         tout::textSet(ctx, {"a", "b \"q\"", "c,d", "e"}), freshSet(ctx, QD_STRING),
                         ""};
         }},
        {"list of integers", "grow;[B2:C2]", "[B2:C10]", ENTRIES,
         [](Context &ctx) {
             List *l = ctx.newList(QD_INT);
             for (qd_int v : std::vector<qd_int>{5, -1, 0, 7, 123456789012345LL})
                 l->append(QD_INT, qdInt(v));
             return Pair{l->type(), l, ctx.newList(QD_INT), ""};
         }},
        {"list of records", "grow;[A1:D1]", "[]", ENTRIES,
         [](Context &ctx) {
             List *l = ctx.newList(shipmentType());
             l->append(shipmentType(), qdPtr(shipment(ctx, "north", "m1", 10, true)));
             l->append(shipmentType(), qdPtr(shipment(ctx, "south", "m3", 0, false)));
             return Pair{l->type(), l, ctx.newList(shipmentType()), ""};
         }},
        {"sparse array", "grow;[A1:C1]", "[]", ENTRIES,
         [](Context &ctx) { return costsIntoFreshSets(ctx, ""); }},
        {"array of records", "grow;[A1:C1]", "[]", ENTRIES,
         [](Context &ctx) {
             Array *a = ctx.newArray(pointType(), {tout::intSet(ctx, {10, 20, 30})});
             Record *r = a->record({2});
             r->set("x", qdReal(0.5));
             r->set("y", qdReal(-4));
             return Pair{a->type(), a, ctx.newArray(pointType(), {freshSet(ctx, QD_INT)}), ""};
         }},
        {"array of externals", "grow;[A1:B1]", "[]", ENTRIES,
         [](Context &ctx) {
             Array *a = ctx.newArray(codeType(), {tout::intSet(ctx, {1, 2})});
             a->setObject({1}, *ctx.newExternal(codeType(), "<x7"));
             return Pair{a->type(), a, ctx.newArray(codeType(), {freshSet(ctx, QD_INT)}), ""};
         }},
        {"noindex with defaults", "noindex;[A1:C3]", "noindex;[A1:C3]", CELLS,
         [](Context &ctx) {
             Set *p = plants(ctx), *m = markets(ctx);
             return Pair{QD_REAL | QD_ARRAY, costs(ctx, p, m), ctx.newArray(QD_REAL, {p, m}), ""};
         }},
        {"noindex one dimension over rows", "grow;noindex;[A1:B1]", "noindex;[]", CELLS,
         [](Context &ctx) {
             Set *k = tout::intSet(ctx, {1, 2, 3, 4, 5});
             Array *a = ctx.newArray(QD_INT, {k});
             a->set({1}, qdInt(4));
             a->set({4}, qdInt(-2));
             return Pair{a->type(), a, ctx.newArray(QD_INT, {k}), ""};
         }},
        {"partndx rows", "partndx;grow;[A1:D1]", "partndx;[]", NONZERO,
         [](Context &ctx) {
             Set *m = markets(ctx);
             Array *a = costs(ctx, plants(ctx), m);
             Array *read = ctx.newArray(QD_REAL, {freshSet(ctx, QD_STRING), m});
             return Pair{a->type(), a, read, ""};
         }},
        {"list of arrays at different tuples", "grow;[A1:D1]", "[]", ENTRIES,
         [](Context &ctx) {
             Set *k = tout::intSet(ctx, {1, 2, 3, 4});
             Array *a = ctx.newArray(QD_STRING, {k}), *b = ctx.newArray(QD_INT, {k}),
                   *c = ctx.newArray(QD_BOOL, {k});
             a->set({0}, qdStr("a"));
             a->set({1}, qdStr("b"));
             b->set({1}, qdInt(2));
             b->set({3}, qdInt(4));
             c->set({3}, qdBool(true));
             List *written = ctx.newList(), *read = ctx.newList();
             Set *fresh = freshSet(ctx, QD_INT);
             for (Array *x : {a, b, c}) {
                 written->append(x->type(), qdPtr(x));
                 Array *y = ctx.newArray(x->elementType(), {fresh});
                 read->append(y->type(), qdPtr(y));
             }
             return Pair{QD_LIST | QD_DYNAMIC, written, read, ""};
         }},
        {"header made on writing", "skiph+;grow;[A1:C1](plant,market,cost)",
         "skiph;[](plant,market,cost)", ENTRIES,
         [](Context &ctx) { return costsIntoFreshSets(ctx, ""); }},
        {"one row without grow keeps the first entry", "[A1:C1]", "[]", ENTRIES,
         [](Context &ctx) { return costsIntoFreshSets(ctx, "north;m2;=1.25\n"); }},
    };
    for (const TripCase &c : cases) {
        SCOPED_TRACE(c.name);
        Context ctx;
        Pair p = c.build(ctx);
        roundTrip(ctx, GetParam(), c.writeLabel, c.readLabel, p, c.how);
    }
}

// Random sparse arrays of one to four dimensions in every layout.
TEST_P(RoundTrip, RandomSparseArrays) {
    ASSERT_TRUE(tout::host().loaded()) << tout::host().loadError();
    std::mt19937 random(20240301);
    const int kRounds = 60;
    for (int round = 0; round < kRounds; round++) {
        Context ctx;
        int dims = 1 + (int)(random() % 4);
        int layout = (int)(random() % 3); // 0 default, 1 noindex, 2 partndx
        if (layout == 2 && dims == 1) layout = 0;
        std::vector<Set *> sets;
        std::vector<int> sizes;
        for (int d = 0; d < dims; d++) {
            int size = 1 + (int)(random() % 5);
            std::vector<qd_int> items;
            for (int k = 0; k < size; k++) items.push_back((qd_int)(d * 100 + k * 3 + 1));
            sets.push_back(tout::intSet(ctx, items, SetOptions{true, false, (int)(random() % 3)}));
            sizes.push_back(size);
        }
        qd_type element = (random() % 2) ? QD_REAL : QD_INT;
        Array *a = ctx.newArray(element, sets);
        int cells = 1;
        for (int s : sizes) cells *= s;
        int wanted = 1 + (int)(random() % cells);
        for (int k = 0; k < wanted; k++) {
            std::vector<int> at;
            for (int d = 0; d < dims; d++)
                at.push_back(sets[d]->firstIndex() + (int)(random() % sizes[d]));
            int value = (int)(random() % 2001) - 1000;
            a->set(at, element == QD_REAL ? qdReal(value / 8.0) : qdInt(value));
        }
        int columns;
        std::string options;
        std::vector<Set *> readSets;
        View how = CELLS;
        if (layout == 0) {
            columns = dims + 1;
            how = ENTRIES;
            for (int d = 0; d < dims; d++) readSets.push_back(ctx.newSet(QD_INT));
        } else if (layout == 1) {
            options = "noindex;";
            columns = sizes[dims - 1];
            readSets = sets;
        } else {
            options = "partndx;";
            columns = dims - 1 + sizes[dims - 1];
            how = NONZERO;
            for (int d = 0; d < dims - 1; d++) readSets.push_back(ctx.newSet(QD_INT));
            readSets.push_back(sets[dims - 1]);
        }
        Array *read = ctx.newArray(element, readSets);
        std::string label = "grow;" + options + "[R2C2:R2C" + std::to_string(columns + 1) + "]";
        std::string readLabel = options + "[R2C2:R9999C" + std::to_string(columns + 1) + "]";
        SCOPED_TRACE("round " + std::to_string(round) + " " + label);
        Pair p{a->type(), a, read, ""};
        roundTrip(ctx, GetParam(), label.c_str(), readLabel.c_str(), p, how);
        if (HasFatalFailure()) return;
    }
}

INSTANTIATE_TEST_SUITE_P(Drivers, RoundTrip, ::testing::Values("csv", "xls", "xlsx"),
                         [](const ::testing::TestParamInfo<std::string> &i) { return i.param; });

} // namespace
