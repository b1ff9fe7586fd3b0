// demo: a small transport model's data making the whole trip through the
// qdsheet module, once through the "csv" driver and once through each
// workbook driver ("xls" and "xlsx").
//
// A modelling runtime drives the module through the driver operations open,
// transfer out (write), transfer in (read) and close.  The reference host
// (host/refhost.h) plays that runtime here: it loads libqdsheet.so, builds
// the typed objects a model would hold, and calls the driver just as a model
// that names a file "csv:..." or "xls:..." would.
//
// The data: plants and markets (index sets), the transport cost of each
// plant and market pair that can ship (a sparse array), each plant's
// capacity, the markets' demand (a list), prices and minimum orders of the
// markets (two arrays written side by side as a list of arrays), planned
// shipments (a list of records), and a few scalars.  Each item is written
// with a range label that picks its place and layout, the files are closed
// (that is when they are saved), then everything is read back into fresh
// objects and compared.
//
// The csv leg puts the items into several text files.  The workbook legs put
// the same layouts into one workbook each, a sheet for each csv file, and read
// one item once more through a named range, defined in the workbook the way
// a spreadsheet user would define it (here with the library's flat entry
// points).  The program exits with 1 when anything differs.
#include "refhost.h"
#include "tabrix.h"

#include <cstdio>
#include <cstring>
#include <dlfcn.h>
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
    Array *cost = nullptr;      // plants × markets, only the routes that exist
    Array *costTable = nullptr; // the same data in another layout
    Array *capacity = nullptr;  // over plants
    Array *price = nullptr;     // over markets
    Array *minOrder = nullptr;  // over markets, not every market has one
    List *demand = nullptr;     // integers, one for each market
    List *shipments = nullptr;  // records
    List *terms = nullptr;      // price and minOrder as a list of arrays
    qd_value freight{}, title{}, periods{}, overtime{};
};

qd_type shipmentType() {
    return registerRecordType(
        "shipment",
        {{"plant", QD_STRING}, {"market", QD_STRING}, {"quantity", QD_INT}, {"express", QD_BOOL}});
}

Record *shipment(Context &ctx, const char *plant, const char *market, qd_int quantity,
                 bool express) {
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
    {"sets.csv", "skiph+;grow;[A1](plant)", "skiph;[A:A](plant)",
     "plants: a set, one element a row", false},
    {"sets.csv", "skiph+;grow;[B1](market)", "skiph;[B:B](market)",
     "markets: a set, beside the plants", false},
    {"cost.csv", "skiph+;grow;[A1:C1](plant,market,cost)", "skiph;[A:C](plant,market,cost)",
     "cost: one row for each stored entry", false},
    {"cost_table.csv", "partndx;grow;[A1:E1]", "partndx;[]",
     "cost again: a row a plant, markets across", true},
    {"capacity.csv", "noindex;[A1:C1]", "noindex;[A1:C1]",
     "capacity: every plant, no index columns", false},
    // Whole columns rather than the whole sheet: a workbook sheet reaches one
    // column past its data, and this item takes exactly three columns.
    {"terms.csv", "grow;[A1:C1]", "[A:C]", "price and minimum order merged by market", false},
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
        if (!zerosAreEmpty || e.second != "0")
            parts.push_back("(" + join(e.first, " / ") + ")=" + e.second);
    return join(parts, " ");
}

std::string objectText(const Object *object, bool zerosAreEmpty) {
    if (auto *s = dynamic_cast<const Set *>(object)) return "{" + join(s->texts()) + "}";
    if (auto *a = dynamic_cast<const Array *>(object)) return arrayText(*a, zerosAreEmpty);
    if (auto *l = dynamic_cast<const List *>(object)) {
        if (l->elementType() & QD_ARRAY) {
            std::vector<std::string> parts;
            for (int i = 0; i < l->size(); i++)
                parts.push_back("[" + arrayText(*static_cast<const Array *>(l->at(i).value.p)) +
                                "]");
            return join(parts, " ");
        }
        return "[" + join(l->texts()) + "]";
    }
    return "?";
}

std::string itemText(qd_type type, const void *value, bool zerosAreEmpty) {
    if ((type & QD_STRUCT_MASK) == QD_VALUE)
        return valueText(type, *static_cast<const qd_value *>(value));
    return objectText(static_cast<const Object *>(value), zerosAreEmpty);
}

std::string fileName(const char *file) {
    const char *name = file;
    while (const char *semicolon = std::strchr(name, ';')) name = semicolon + 1;
    return name;
}

// ---- the legs ----------------------------------------------------------------
// One item of a leg: its file (options in front of the name) and its labels.
struct LegItem {
    std::string file, writeLabel, readLabel;
    const Placement *place;
};

// The csv leg takes the places as they stand.
std::vector<LegItem> csvItems() {
    std::vector<LegItem> items;
    for (const Placement &p : kPlaces) items.push_back({p.file, p.writeLabel, p.readLabel, &p});
    return items;
}

// The label with a sheet named in front of its range: "skiph;[A:A](plant)"
// becomes "skiph;[sets$A:A](plant)", and "[]" becomes "[sets$]", the whole
// sheet.
std::string onSheet(const char *label, const std::string &sheet) {
    std::string out = label;
    size_t bracket = out.find('[');
    if (bracket != std::string::npos) out.insert(bracket + 1, sheet + "$");
    return out;
}

// The sheet that stands for a csv file: its name without ".csv".
std::string sheetFor(const Placement &p) {
    std::string name = fileName(p.file);
    size_t dot = name.rfind('.');
    return dot == std::string::npos ? name : name.substr(0, dot);
}

// A workbook leg puts each csv file on a sheet of one workbook.  The field
// separator option of a csv file means nothing to a workbook and stays out.
std::vector<LegItem> xlsItems(const std::string &book) {
    std::vector<LegItem> items;
    for (const Placement &p : kPlaces)
        items.push_back(
            {book, onSheet(p.writeLabel, sheetFor(p)), onSheet(p.readLabel, sheetFor(p)), &p});
    return items;
}

// Writes every item, each with its own open and close; false after printing
// the failure.
bool writeLeg(const Host &host, Context &writer, const std::string &driver,
              const std::vector<LegItem> &items,
              const std::vector<std::pair<qd_type, void *>> &objects) {
    for (size_t i = 0; i < items.size(); i++) {
        const LegItem &item = items[i];
        if (host.writeItem(writer, driver, item.file, item.writeLabel, objects[i].first,
                           objects[i].second) != 0) {
            std::cerr << driver << ": writing " << item.place->what << " failed:\n"
                      << writer.allErrors();
            for (const auto &report : writer.reports)
                std::cerr << "  " << report.first << " (code " << report.second << ")\n";
            return false;
        }
    }
    return true;
}

// Reads one item into `into` and compares it with what was written; prints
// one line.  Answers true when both are equal.
bool readBack(const Host &host, Context &reader, const std::string &driver, const std::string &file,
              const std::string &label, const char *what, std::pair<qd_type, void *> into,
              std::pair<qd_type, void *> written, bool zerosAreEmpty) {
    int stored = 0;
    reader.clearMessages();
    int rc = host.readItem(reader, driver, file, label, into.first, into.second, &stored);
    std::string before = itemText(written.first, written.second, zerosAreEmpty);
    std::string after =
        rc == 0 ? itemText(into.first, into.second, zerosAreEmpty) : reader.allErrors();
    if (rc != 0)
        for (const auto &report : reader.reports)
            after += report.first + " (code " + std::to_string(report.second) + ")";
    bool same = rc == 0 && before == after;
    std::cout << "  " << (same ? "ok  " : "DIFF") << " " << what << "  [" << label << "]\n"
              << "       " << after << "\n";
    if (!same) std::cout << "  wrote " << before << "\n";
    return same;
}

// Reads every item back into a fresh model, in the written order: the sets
// first, so that the arrays read later are indexed by them.  Answers the
// number of items that differ.
int readLeg(const Host &host, Context &reader, Model &copy, const std::string &driver,
            const std::vector<LegItem> &items,
            const std::vector<std::pair<qd_type, void *>> &written) {
    auto read = itemsOf(copy);
    int mismatches = 0;
    for (size_t i = 0; i < items.size(); i++) {
        const LegItem &item = items[i];
        if (!readBack(host, reader, driver, item.file, item.readLabel, item.place->what, read[i],
                      written[i], item.place->zerosAreEmpty))
            mismatches++;
    }
    return mismatches;
}

// ---- a name defined in the workbook -----------------------------------------
// The library's flat entry points, from libtabrix.so beside the module.  A
// spreadsheet user would define the name in a spreadsheet program; the demo
// does it with the library, outside the module.
struct Library {
    void *handle = nullptr;
    decltype(&tbCreateBookCA) createBook = nullptr;
    decltype(&tbCreateXMLBookCA) createXMLBook = nullptr;
    decltype(&tbBookSetLocaleA) setLocale = nullptr;
    decltype(&tbBookLoadA) load = nullptr;
    decltype(&tbBookSaveA) save = nullptr;
    decltype(&tbBookSheetCountA) sheetCount = nullptr;
    decltype(&tbBookGetSheetA) getSheet = nullptr;
    decltype(&tbSheetNameA) sheetName = nullptr;
    decltype(&tbSheetSetNamedRangeA) setNamedRange = nullptr;
    decltype(&tbBookErrorMessageA) errorMessage = nullptr;
    decltype(&tbBookReleaseA) release = nullptr;

    template <class F> bool find(F &f, const char *name) {
        f = reinterpret_cast<F>(dlsym(handle, name));
        return f != nullptr;
    }
    bool open(std::string *why) {
        std::string module = QDSHEET_MODULE_PATH;
        std::string path = module.substr(0, module.rfind('/') + 1) + "libtabrix.so";
        handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!handle) {
            *why = dlerror();
            return false;
        }
        bool all = find(createBook, "tbCreateBookCA") & find(createXMLBook, "tbCreateXMLBookCA") &
                   find(setLocale, "tbBookSetLocaleA") & find(load, "tbBookLoadA") &
                   find(save, "tbBookSaveA") & find(sheetCount, "tbBookSheetCountA") &
                   find(getSheet, "tbBookGetSheetA") & find(sheetName, "tbSheetNameA") &
                   find(setNamedRange, "tbSheetSetNamedRangeA") &
                   find(errorMessage, "tbBookErrorMessageA") & find(release, "tbBookReleaseA");
        if (!all) *why = "an entry point is missing from " + path;
        return all;
    }
    ~Library() {
        if (handle) dlclose(handle);
    }
};

// Defines `name` on the sheet `sheetName` of the workbook at `path` (an Open
// XML one when `xml`), with zero-based inclusive bounds.  False with the
// reason when it cannot.
bool defineName(const std::string &path, bool xml, const std::string &sheetName, const char *name,
                int rowFirst, int rowLast, int colFirst, int colLast, std::string *why) {
    Library tb;
    if (!tb.open(why)) return false;
    void *book = xml ? tb.createXMLBook() : tb.createBook();
    tb.setLocale(book, "UTF-8");
    bool done = false;
    if (tb.load(book, path.c_str())) {
        void *sheet = nullptr;
        for (int i = 0; i < tb.sheetCount(book) && !sheet; i++) {
            void *s = tb.getSheet(book, i);
            const char *n = s ? tb.sheetName(s) : nullptr;
            if (n && sheetName == n) sheet = s;
        }
        done = sheet && tb.setNamedRange(sheet, name, rowFirst, rowLast, colFirst, colLast, -1) &&
               tb.save(book, path.c_str());
        if (!sheet) *why = "no sheet " + sheetName;
    }
    if (!done && why->empty()) *why = tb.errorMessage(book);
    tb.release(book);
    return done;
}

// ---- the csv leg ---------------------------------------------------------------
// Answers the number of items that differ, -1 when writing failed.
int csvLeg(const Host &host, const std::string &directory, int *total) {
    for (const Placement &p : kPlaces) std::remove((directory + "/" + fileName(p.file)).c_str());

    // 1. Build the model's data and write every item.  Each write opens the
    //    file, transfers one item and closes it, which saves the file; a file
    //    opened for writing keeps what it already holds, so items written one
    //    after another into one file all stay.
    Context writer(directory);
    Model model = buildModel(writer);
    auto written = itemsOf(model);
    std::vector<LegItem> items = csvItems();
    *total = (int)items.size();
    std::cout << "== csv: writing " << items.size() << " items into " << directory << "/\n";
    if (!writeLeg(host, writer, "csv", items, written)) return -1;

    std::string shown;
    for (const Placement &p : kPlaces) {
        std::string name = fileName(p.file);
        if (shown.find("|" + name + "|") != std::string::npos) continue;
        shown += "|" + name + "|";
        std::cout << "\n  " << name << ":\n" << indent(fileText(directory + "/" + name));
    }

    // 2. Read everything back into fresh objects.
    Context reader(directory);
    Model copy = emptyModel(reader);
    std::cout << "\nReading back\n";
    return readLeg(host, reader, copy, "csv", items, written);
}

// ---- the workbook legs -----------------------------------------------------
// The driver of each leg and its workbook.
struct BookLeg {
    const char *driver;
    const char *book;
    bool xml;
};
const BookLeg kBookLegs[] = {{"xls", "model.xls", false}, {"xlsx", "model.xlsx", true}};
const char kName[] = "capacity_row";

// Answers the number of items that differ, -1 when writing failed.
// *named tells whether the named range could be read.
int bookLeg(const Host &host, const BookLeg &leg, const std::string &directory, int *total,
            bool *named) {
    std::remove((directory + "/" + leg.book).c_str());
    Context writer(directory);
    Model model = buildModel(writer);
    auto written = itemsOf(model);
    std::vector<LegItem> items = xlsItems(leg.book);
    *total = (int)items.size();
    std::cout << "\n== " << leg.driver << ": writing the same " << items.size() << " items into "
              << directory << "/" << leg.book << ", one sheet for each csv file\n";
    if (!writeLeg(host, writer, leg.driver, items, written)) return -1;

    // The capacity row is the first row of its sheet, three columns wide.
    std::string why;
    *named = defineName(directory + "/" + leg.book, leg.xml, "capacity", kName, 0, 0, 0, 2, &why);
    if (!*named) std::cout << "  (no named range: " << why << ")\n";

    Context reader(directory);
    Model copy = emptyModel(reader);
    std::cout << "\nReading back\n";
    int mismatches = readLeg(host, reader, copy, leg.driver, items, written);
    if (*named) {
        // The same capacities once more, found by the name alone.
        Array *capacity = reader.newArray(QD_INT, {copy.plants});
        std::string label = std::string("noindex;") + kName;
        *total += 1;
        if (!readBack(host, reader, leg.driver, leg.book, label, "capacity through a named range",
                      {capacity->type(), capacity}, {model.capacity->type(), model.capacity},
                      false))
            mismatches++;
    }
    return mismatches;
}

std::string summary(const char *leg, int mismatches, int total, const std::string &where) {
    std::ostringstream out;
    if (mismatches < 0)
        out << leg << ": writing failed (" << where << ")";
    else
        out << leg << ": " << total - mismatches << " of " << total << " items came back equal ("
            << where << ")";
    return out.str();
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

    int csvTotal = 0;
    int csvBad = csvLeg(host, directory, &csvTotal);
    std::string lines = summary("csv", csvBad, csvTotal, "text files") + "\n";
    bool allEqual = csvBad == 0;
    for (const BookLeg &leg : kBookLegs) {
        int total = 0;
        bool named = false;
        int bad = bookLeg(host, leg, directory, &total, &named);
        std::string where = leg.book;
        if (bad >= 0)
            where += named ? ", one item through the named range " + std::string(kName)
                           : ", no named range";
        lines += summary(leg.driver, bad, total, where) + "\n";
        allEqual = allEqual && bad == 0;
    }
    std::cout << "\n" << lines;
    return allEqual ? 0 : 1;
}
