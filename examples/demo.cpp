// demo: a small transport model's data making the whole trip through the
// "csv" driver of the qdsheet module.
//
// A modelling runtime drives the module through the driver operations open,
// transfer out (write), transfer in (read) and close.  The reference host
// (host/refhost.h) plays that runtime here: it loads libqdsheet.so, builds
// the typed objects a model would hold, and calls the driver just as a model
// that names a file "csv:..." would.
//
// The data: plants and markets (index sets), the transport cost of each
// plant and market pair that can ship (a sparse array), each plant's
// capacity, the markets' demand (a list), prices and minimum orders of the
// markets (two arrays written side by side as a list of arrays), planned
// shipments (a list of records), and a few scalars.  Each item is written
// with a range label that picks its place and layout, the files are closed
// (that is when they are saved), then everything is read back into fresh
// objects and compared.  The program exits with 1 when anything differs.
#include "refhost.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

using namespace qdhost;

namespace {

// ---- the model's data ------------------------------------------------------
struct Model {
    Set *plants = nullptr;
    Set *markets = nullptr;
    Array *cost = nullptr;     // plants × markets, only the routes that exist
    Array *costTable = nullptr; // the same data in another layout
    Array *capacity = nullptr; // over plants
    Array *price = nullptr;    // over markets
    Array *minOrder = nullptr; // over markets, not every market has one
    List *demand = nullptr;    // integers, one for each market
    List *shipments = nullptr; // records
    List *terms = nullptr;     // price and minOrder as a list of arrays
    qd_value freight{}, title{}, periods{}, overtime{};
};

qd_type shipmentType() {
    return registerRecordType("shipment", {{"plant", QD_STRING},
                                           {"market", QD_STRING},
                                           {"quantity", QD_INT},
                                           {"express", QD_BOOL}});
}

Record *shipment(Context &ctx, const char *plant, const char *market, qd_int quantity, bool express) {
    Record *r = ctx.newRecord(shipmentType());
    r->set("plant", qdStr(plant));
    r->set("market", qdStr(market));
    r->set("quantity", qdInt(quantity));
    r->set("express", qdBool(express));
    return r;
}

Model buildModel(Context &ctx) {
    Model m;
    m.plants = ctx.newSet(QD_STRING);
    for (const char *p : {"Seattle", "San Diego", "Denver"}) m.plants->add(qdStr(p));
    m.markets = ctx.newSet(QD_STRING);
    for (const char *k : {"New York", "Chicago", "Topeka", "Austin, TX"}) m.markets->add(qdStr(k));

    // Positions in a set are what arrays are indexed by.
    auto plant = [&](const char *name) { return m.plants->find(qdStr(name)); };
    auto market = [&](const char *name) { return m.markets->find(qdStr(name)); };

    m.cost = ctx.newArray(QD_REAL, {m.plants, m.markets});
    m.cost->set({plant("Seattle"), market("New York")}, qdReal(2.5));
    m.cost->set({plant("Seattle"), market("Chicago")}, qdReal(1.75));
    m.cost->set({plant("San Diego"), market("New York")}, qdReal(2.5));
    m.cost->set({plant("San Diego"), market("Topeka")}, qdReal(1.4));
    m.cost->set({plant("Denver"), market("Austin, TX")}, qdReal(0.9));

    m.costTable = m.cost;

    m.capacity = ctx.newArray(QD_INT, {m.plants});
    m.capacity->set({plant("Seattle")}, qdInt(350));
    m.capacity->set({plant("San Diego")}, qdInt(600));
    m.capacity->set({plant("Denver")}, qdInt(275));

    m.price = ctx.newArray(QD_REAL, {m.markets});
    m.price->set({market("New York")}, qdReal(12.5));
    m.price->set({market("Chicago")}, qdReal(11));
    m.price->set({market("Austin, TX")}, qdReal(9.75));
    m.minOrder = ctx.newArray(QD_INT, {m.markets});
    m.minOrder->set({market("Chicago")}, qdInt(20));
    m.minOrder->set({market("Topeka")}, qdInt(15));
    m.terms = ctx.newList(QD_REAL | QD_ARRAY);
    m.terms->append(m.price->type(), qdPtr(m.price));
    m.terms->append(m.minOrder->type(), qdPtr(m.minOrder));

    m.demand = ctx.newList(QD_INT);
    for (qd_int d : {325, 300, 275, 120}) m.demand->append(QD_INT, qdInt(d));

    m.shipments = ctx.newList(shipmentType());
    m.shipments->append(shipmentType(), qdPtr(shipment(ctx, "Seattle", "New York", 50, false)));
    m.shipments->append(shipmentType(), qdPtr(shipment(ctx, "San Diego", "Topeka", 275, true)));
    m.shipments->append(shipmentType(), qdPtr(shipment(ctx, "Denver", "Austin, TX", 120, false)));

    m.freight = qdReal(90);
    m.title = qdStr(ctx.intern("transport, \"small\""));
    m.periods = qdInt(4);
    m.overtime = qdBool(true);
    return m;
}

// Fresh, empty objects of the same kinds to read into.  Sets start empty and
// are filled from the files; arrays read later are indexed by these sets.
Model emptyModel(Context &ctx) {
    Model m;
    m.plants = ctx.newSet(QD_STRING);
    m.markets = ctx.newSet(QD_STRING);
    m.cost = ctx.newArray(QD_REAL, {m.plants, m.markets});
    m.costTable = ctx.newArray(QD_REAL, {m.plants, m.markets});
    m.capacity = ctx.newArray(QD_INT, {m.plants});
    m.price = ctx.newArray(QD_REAL, {m.markets});
    m.minOrder = ctx.newArray(QD_INT, {m.markets});
    m.terms = ctx.newList(QD_REAL | QD_ARRAY);
    m.terms->append(m.price->type(), qdPtr(m.price));
    m.terms->append(m.minOrder->type(), qdPtr(m.minOrder));
    m.demand = ctx.newList(QD_INT);
    m.shipments = ctx.newList(shipmentType());
    return m;
}

// ---- what goes where -------------------------------------------------------
// One transfer item: a file (with file options in front of its name), a
// range label (with options of its own in front), and the object.
struct Placement {
    const char *file;
    const char *writeLabel;
    const char *readLabel;
    const char *what;
    bool zerosAreEmpty; // the layout writes zeros for cells without an entry
};

// The places of the model's items.  "grow;" lets a one-row range extend
// down as far as the data needs; "skiph+;" writes the header row from the
// names of the column selection, and "skiph;" finds the columns by those
// names when reading.  "[A:C]" is whole columns, "[]" the whole sheet.
const Placement kPlaces[] = {
    {"sets.csv", "skiph+;grow;[A1](plant)", "skiph;[A:A](plant)", "plants: a set, one element a row",
     false},
    {"sets.csv", "skiph+;grow;[B1](market)", "skiph;[B:B](market)", "markets: a set, beside the plants",
     false},
    {"cost.csv", "skiph+;grow;[A1:C1](plant,market,cost)", "skiph;[A:C](plant,market,cost)",
     "cost: one row for each stored entry", false},
    {"cost_table.csv", "partndx;grow;[A1:E1]", "partndx;[]", "cost again: a row a plant, markets across",
     true},
    {"capacity.csv", "noindex;[A1:C1]", "noindex;[A1:C1]", "capacity: every plant, no index columns",
     false},
    {"terms.csv", "grow;[A1:C1]", "[]", "price and minimum order merged by market", false},
    {"demand.csv", "grow;[A1:D1]", "[]", "demand: a list, four to a row", false},
    {"fsep=;;shipments.csv", "skiph+;grow;[A1:D1](plant,market,quantity,express)",
     "skiph;[](plant,market,quantity,express)", "shipments: records, ';' separated", false},
    {"scalars.csv", "[A1]", "[A1]", "freight", false},
    {"scalars.csv", "[A2]", "[A2]", "title", false},
    {"scalars.csv", "[A3]", "[A3]", "periods", false},
    {"scalars.csv", "[A4]", "[A4]", "overtime", false},
};

// The type word and value reference of each placement's object, in order.
std::vector<std::pair<qd_type, void *>> itemsOf(Model &m) {
    return {
        {m.plants->type(), m.plants},
        {m.markets->type(), m.markets},
        {m.cost->type(), m.cost},
        {m.costTable->type(), m.costTable},
        {m.capacity->type(), m.capacity},
        {QD_LIST | QD_DYNAMIC, m.terms},
        {m.demand->type(), m.demand},
        {m.shipments->type(), m.shipments},
        {QD_REAL, &m.freight},
        {QD_STRING, &m.title},
        {QD_INT, &m.periods},
        {QD_BOOL, &m.overtime},
    };
}

// ---- printing --------------------------------------------------------------
std::string fileText(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string indent(const std::string &text) {
    std::string out = "      ";
    for (size_t i = 0; i < text.size(); i++) {
        out += text[i];
        if (text[i] == '\n' && i + 1 < text.size()) out += "      ";
    }
    return out;
}

std::string join(const std::vector<std::string> &items, const char *separator = ", ") {
    std::string out;
    for (size_t i = 0; i < items.size(); i++) out += (i ? separator : "") + items[i];
    return out;
}

std::string arrayText(const Array &a, bool zerosAreEmpty = false) {
    std::vector<std::string> parts;
    for (const auto &e : a.entries())
        if (!zerosAreEmpty || e.second != "0") parts.push_back("(" + join(e.first, " / ") + ")=" + e.second);
    return join(parts, " ");
}

std::string objectText(const Object *object, bool zerosAreEmpty) {
    if (auto *s = dynamic_cast<const Set *>(object)) return "{" + join(s->texts()) + "}";
    if (auto *a = dynamic_cast<const Array *>(object)) return arrayText(*a, zerosAreEmpty);
    if (auto *l = dynamic_cast<const List *>(object)) {
        if (l->elementType() & QD_ARRAY) {
            std::vector<std::string> parts;
            for (int i = 0; i < l->size(); i++)
                parts.push_back("[" + arrayText(*static_cast<const Array *>(l->at(i).value.p)) + "]");
            return join(parts, " ");
        }
        return "[" + join(l->texts()) + "]";
    }
    return "?";
}

std::string itemText(qd_type type, const void *value, bool zerosAreEmpty) {
    if ((type & QD_STRUCT_MASK) == QD_VALUE) return valueText(type, *static_cast<const qd_value *>(value));
    return objectText(static_cast<const Object *>(value), zerosAreEmpty);
}

std::string fileName(const char *file) {
    const char *name = file;
    while (const char *semicolon = std::strchr(name, ';')) name = semicolon + 1;
    return name;
}

} // namespace

int main() {
    Host host; // loads libqdsheet.so and calls qdsheet_init
    if (!host.loaded()) {
        std::cerr << "cannot load the module: " << host.loadError() << "\n";
        return 2;
    }
    const std::string directory = "qdsheet-demo";
    mkdir(directory.c_str(), 0755);
    for (const Placement &p : kPlaces) std::remove((directory + "/" + fileName(p.file)).c_str());

    // 1. Build the model's data and write every item.  Each write opens the
    //    file, transfers one item and closes it, which saves the file; a file
    //    opened for writing keeps what it already holds, so items written one
    //    after another into one file all stay.
    Context writer(directory);
    Model model = buildModel(writer);
    auto written = itemsOf(model);
    std::cout << "Writing " << written.size() << " items into " << directory << "/\n";
    for (size_t i = 0; i < written.size(); i++) {
        const Placement &p = kPlaces[i];
        int rc = host.writeItem(writer, "csv", p.file, p.writeLabel, written[i].first, written[i].second);
        if (rc != 0) {
            std::cerr << "writing " << p.what << " failed:\n" << writer.allErrors();
            return 1;
        }
    }

    std::string shown;
    for (const Placement &p : kPlaces) {
        std::string name = fileName(p.file);
        if (shown.find("|" + name + "|") != std::string::npos) continue;
        shown += "|" + name + "|";
        std::cout << "\n  " << name << ":\n" << indent(fileText(directory + "/" + name));
    }

    // 2. Read everything back into fresh objects, in the same order: the
    //    sets first, so that the arrays read later are indexed by them.
    Context reader(directory);
    Model copy = emptyModel(reader);
    auto read = itemsOf(copy);
    std::cout << "\nReading back\n";
    int mismatches = 0;
    for (size_t i = 0; i < read.size(); i++) {
        const Placement &p = kPlaces[i];
        int stored = 0;
        int rc = host.readItem(reader, "csv", p.file, p.readLabel, read[i].first, read[i].second, &stored);
        std::string before = itemText(written[i].first, written[i].second, p.zerosAreEmpty);
        std::string after =
            rc == 0 ? itemText(read[i].first, read[i].second, p.zerosAreEmpty) : reader.allErrors();
        bool same = rc == 0 && before == after;
        if (!same) mismatches++;
        std::cout << "  " << (same ? "ok  " : "DIFF") << " " << p.what << "  [" << p.readLabel << "]\n"
                  << "       " << after << "\n";
        if (!same) std::cout << "  wrote " << before << "\n";
    }
    std::cout << "\n" << (mismatches ? "MISMATCH: " : "All ") << read.size() - mismatches << " of "
              << read.size() << " items came back equal.\n";
    return mismatches ? 1 : 0;
}
