// refhost.h - the reference host: a small, real implementation of the host
// side of qdhost.h.  It loads the module with dlopen exactly like a modelling
// runtime would, and offers the typed objects (sets, arrays, lists, records,
// external objects) that transfers read into and write from.
//
// Conventions of this host:
//  - Set positions start at 0 by default (SetOptions::base changes that, so
//    that callers can check that nothing assumes 0).
//  - Every object belongs to one Context and dies with it; raw pointers
//    handed out stay valid as long as the Context lives.
//  - Strings stored in objects are text handles interned in the Context, so
//    a `const char *` read from an object stays valid with the Context.
//  - Record and external types are registered process-wide; their type
//    numbers are allocated from 5 upward.  Registering a record name again
//    with the same fields answers the same number; an external name again
//    answers its number and keeps the first definition.
//  - typeInfo QD_INFO_STRUCT looks at the base type only (QD_RECORD for
//    records, QD_VALUE otherwise), so description entries can be asked as
//    they stand.
//  - openStream refuses a second stream while one is open; print with no
//    stream open appends to Context::output.
//
// Typical use:
//     qdhost::Host host;                      // loads the module
//     qdhost::Context ctx(dir);               // relative names live in dir
//     auto *s = ctx.newSet(QD_STRING);
//     auto *a = ctx.newArray(QD_REAL, {s});
//     int n = 0;
//     int rc = host.readItem(ctx, "csv", "data.csv", "[A1:B9]", a->type(), a, &n);
//     // rc == 0, a->entries(), ctx.errors, ctx.reports
//  - Context parameters: real format "%.15g" (enough digits for the usual
//    decimal data to survive a text round trip), sets finalised after
//    loading (true).
#ifndef QDHOST_REFHOST_H
#define QDHOST_REFHOST_H

#include "qdhost.h"

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The opaque context of the C interface; the host's Context derives from it.
struct qd_context {};

namespace qdhost {

class Context;

// ---- values ---------------------------------------------------------------
inline qd_value qdInt(qd_int v) {
    qd_value x;
    x.i = v;
    return x;
}
inline qd_value qdReal(double v) {
    qd_value x;
    x.r = v;
    return x;
}
inline qd_value qdStr(const char *v) {
    qd_value x;
    x.s = v;
    return x;
}
inline qd_value qdBool(bool v) {
    qd_value x;
    x.i = 0;
    x.b = v ? 1 : 0;
    return x;
}
inline qd_value qdPtr(void *v) {
    qd_value x;
    x.p = v;
    return x;
}

// A basic value as text: integers in decimal, reals with "%.15g", strings as
// they are, booleans "true"/"false".  Other types give "?".
std::string valueText(qd_type base, const qd_value &v);

// ---- types ----------------------------------------------------------------
struct FieldSpec {
    std::string name;
    qd_type type; // QD_INT..QD_BOOL, or a registered record or external type
};

struct RecordType {
    std::string name;
    qd_type type;
    std::vector<FieldSpec> fields; // field number = index + 1
    std::vector<int> description;  // flattened, as typeInfo QD_INFO_DESC gives it
};

struct ExternalType {
    std::string name;
    // Parses text into the object's data; false refuses the text.
    std::function<bool(const std::string &text, std::string &data)> fromText;
    // Writes the object's data as text.
    std::function<std::string(const std::string &data)> toText;
    // Whether the type converts to and from text (typeInfo QD_INFO_PROPS
    // answers QD_PROP_TEXT only then).
    bool textual = true;
    qd_type type = 0;
};

// Throws std::invalid_argument on a bad field list or a name clash.
qd_type registerRecordType(const std::string &name, const std::vector<FieldSpec> &fields);
qd_type registerExternalType(const std::string &name, ExternalType def);
const RecordType *recordType(qd_type type);     // nullptr when not a record type
const ExternalType *externalType(qd_type type); // nullptr when not external
bool isBasicType(qd_type type);                 // QD_INT..QD_BOOL

// ---- objects --------------------------------------------------------------
class Object {
public:
    explicit Object(Context *ctx) : _ctx(ctx) {}
    virtual ~Object() = default;
    Context *context() const { return _ctx; }
    // The type word that describes the object as a transfer item.
    virtual qd_type type() const = 0;
    virtual std::unique_ptr<Object> clone() const = 0;

protected:
    Context *_ctx;
};

class External : public Object {
public:
    External(Context *ctx, qd_type t) : Object(ctx), _type(t) {}
    qd_type type() const override { return _type; }
    std::unique_ptr<Object> clone() const override;
    std::string data;         // the object's state
    std::string text() const; // through the type's toText
private:
    qd_type _type;
};

class Record : public Object {
public:
    Record(Context *ctx, qd_type t);
    qd_type type() const override { return _type; }
    std::unique_ptr<Object> clone() const override;
    const RecordType &info() const { return *_info; }

    // By field name; throw std::out_of_range for an unknown name.
    void set(const std::string &field, qd_value v); // basic fields; strings are interned
    qd_value get(const std::string &field) const;
    Record *nested(const std::string &field) const;
    External *external(const std::string &field) const;
    // "{a,b,{c}}" style text of the whole record, fields in order.
    std::string text() const;
    std::string fieldText(const std::string &field) const;

    // By field number (1-based), as the C interface uses them.
    struct Slot {
        qd_value value{};            // basic fields
        std::unique_ptr<Object> obj; // record and external fields
    };
    Slot *slot(int number);

private:
    qd_type _type;
    const RecordType *_info;
    std::vector<Slot> _slots;
};

struct SetOptions {
    bool dynamic = true;   // QD_DYNAMIC in the set's type word
    bool declared = false; // QD_DECLARED_SET in the element type word
    int base = 0;          // position of the first element
};

class Set : public Object {
public:
    Set(Context *ctx, qd_type elem, SetOptions opt);
    qd_type type() const override; // elem | QD_SET | QD_DYNAMIC when dynamic
    std::unique_ptr<Object> clone() const override;

    qd_type elementType() const; // base, plus QD_DECLARED_SET when declared
    qd_type baseType() const { return _elem; }
    int size() const { return (int)_items.size(); }
    int firstIndex() const { return _opt.base; }
    int lastIndex() const { return _opt.base + size() - 1; }
    const SetOptions &options() const { return _opt; }

    // Builder: adds without the lock/finalise checks; answers the position.
    int add(qd_value v);
    // The interface's rule: a new value is refused (-1) when the set is
    // locked or finalised.  Answers the position.
    int insert(qd_value v, bool *refused);
    int find(qd_value v) const; // position or -1
    bool element(int position, qd_value *out) const;

    int locks() const { return _locks; }
    bool finalised() const { return _finalised; }
    void lock() { ++_locks; }
    bool unlock();
    void finalise() { _finalised = true; }

    std::vector<qd_value> values() const;
    std::vector<std::string> texts() const;

private:
    qd_type _elem;
    SetOptions _opt;
    std::vector<qd_value> _items;      // strings are context text handles
    std::map<std::string, int> _index; // key text -> offset
    int _locks = 0;
    bool _finalised = false;
};

struct ArrayOptions {
    bool dense = false;  // every cell counts as stored (entry walk = cell walk)
    bool dynamic = true; // QD_DYNAMIC in the array's type word
    qd_value deflt{};    // value of cells without an entry (basic types)
};

class Array : public Object {
public:
    Array(Context *ctx, qd_type elem, std::vector<Set *> sets, ArrayOptions opt);
    qd_type type() const override; // elem | QD_ARRAY | QD_DYNAMIC when dynamic
    std::unique_ptr<Object> clone() const override;

    qd_type elementType() const { return _elem; }
    int dimensions() const { return (int)_sets.size(); }
    const std::vector<Set *> &sets() const { return _sets; }
    const ArrayOptions &options() const { return _opt; }

    struct Cell {
        qd_value value{};
        std::unique_ptr<Object> obj; // record and external elements
    };
    using Tuple = std::vector<int>;

    // Positions must lie inside the index sets; false otherwise.
    bool set(const Tuple &at, qd_value v);              // basic elements; strings interned
    Record *record(const Tuple &at);                    // creates the cell when missing
    bool setObject(const Tuple &at, const Object &obj); // stores a copy
    bool inRange(const int *at) const;
    const Cell *find(const Tuple &at) const;
    Cell *find(const Tuple &at);
    qd_value get(const int *at) const; // default when missing
    int entryCount() const;

    // Walks; answer false at the end.
    bool firstCell(int *at) const;
    bool nextCell(int *at) const;
    bool firstEntry(int *at) const;
    bool nextEntry(int *at) const;

    // Stored entries keyed by the index elements' texts; record elements
    // and external elements as their text().
    std::map<std::vector<std::string>, std::string> entries() const;

    int beginLoads = 0;
    int endLoads = 0;
    bool loading = false;

private:
    qd_type _elem;
    std::vector<Set *> _sets;
    ArrayOptions _opt;
    std::map<Tuple, Cell> _cells;
    std::unique_ptr<Record> _emptyRecord;

    // The stored entry the last entry walk answered, so that the next step
    // from that tuple, and a get() of it, need no search.  Cells are never
    // removed, so the iterator stays good while `_walking` is set.  Since
    // walks and get() move it, an array is for one thread at a time.
    const std::pair<const Tuple, Cell> *stopAt(const int *at) const;
    mutable std::map<Tuple, Cell>::const_iterator _walk;
    mutable bool _walking = false;
    mutable Tuple _probe; // search key, kept to spare an allocation per lookup
};

class List : public Object {
public:
    List(Context *ctx, qd_type elem) : Object(ctx), _elem(elem) {}
    // The structure bits of an array element type stay out of the list's own word.
    qd_type type() const override { return (_elem & ~QD_STRUCT_MASK) | QD_LIST | QD_DYNAMIC; }
    std::unique_ptr<Object> clone() const override;
    qd_type elementType() const { return _elem; } // 0 = untyped

    struct Item {
        qd_type type;
        qd_value value;
        std::unique_ptr<Object> obj; // copies of records and externals
    };
    // Basic values are interned; records/externals given in value.p are
    // copied; other references (arrays) are kept as they are.
    bool append(qd_type t, qd_value v);
    int size() const { return (int)_items.size(); }
    const Item &at(int i) const { return _items[i]; }
    std::vector<std::string> texts() const;

private:
    qd_type _elem;
    std::vector<Item> _items;
};

// ---- context ---------------------------------------------------------------
class Context : public qd_context {
public:
    explicit Context(std::string directory = ".");
    ~Context();
    Context(const Context &) = delete;
    Context &operator=(const Context &) = delete;

    // Parameters.
    std::string realFormat = "%.15g";
    bool finalise = true;
    std::string directory; // relative file names are found here
    bool debug = false;    // echo dispatched errors on stderr

    // Captured output.
    std::vector<std::string> errors;                  // dispatchError texts
    std::vector<std::pair<std::string, int>> reports; // reportError (text, code)
    std::string output;                               // print while no stream is open
    std::string allErrors() const;                    // errors joined
    void clearMessages();                             // empties errors, reports and output

    // Streams.
    FILE *stream = nullptr;
    int streamsOpened = 0;
    int streamsClosed = 0;

    // Interned text, stable for the Context's life.
    const char *intern(const char *text);

    // Builders; the Context owns the result.
    Set *newSet(qd_type elem, SetOptions opt = {});
    Set *newSet(qd_type elem, const std::vector<qd_value> &values, SetOptions opt = {});
    Array *newArray(qd_type elem, std::vector<Set *> sets, ArrayOptions opt = {});
    List *newList(qd_type elem = 0);
    Record *newRecord(qd_type type);
    External *newExternal(qd_type type, const std::string &text = "");

    // Objects made through newObject and not yet deleted.
    int liveObjects() const { return (int)_loose.size(); }
    // Used by the C interface.
    Object *adoptLoose(std::unique_ptr<Object> obj);
    bool dropLoose(void *obj);

    // Balance checks over every array of the context.
    int beginLoads() const;
    int endLoads() const;

private:
    std::set<std::string> _texts;
    std::vector<std::unique_ptr<Object>> _owned;
    std::map<void *, std::unique_ptr<Object>> _loose;
};

// The host interface table of this host.
const qd_host *hostTable();

// ---- the loaded module ----------------------------------------------------
struct Item {
    std::string label;
    qd_type type;
    void *value; // object, or qd_value * for a basic scalar
    int counter = 0;
};

class Host {
public:
    // Loads the module from path and calls qdsheet_init.
    explicit Host(const std::string &path = QDSHEET_MODULE_PATH);
    ~Host(); // finish service, then dlclose
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    bool loaded() const { return _desc != nullptr && _initResult == 0; }
    const std::string &loadError() const { return _loadError; }
    int initResult() const { return _initResult; }
    int version() const { return _version; }
    int interfaceVersion() const { return _interfaceVersion; }
    const qd_module_desc *description() const { return _desc; }

    // Services (nullptr / -1 when absent).
    const void *service(int tag) const;
    int checkVersion(int version) const; // non-zero = refused
    int setFlags(int flags) const;
    void adjustVersion(int flag, int *version) const;

    const qd_driver *driver(const std::string &name) const;
    const void *driverOp(const std::string &name, int tag) const;
    const char *driverInfo(const std::string &name) const;

    // Driver calls.  open sets QD_MODE_PENDING (and QD_MODE_WRITE) in the
    // mode word before the call and gives the final word in *modeOut.
    void *open(Context &ctx, const std::string &drv, const std::string &name, bool write,
               int *modeOut = nullptr) const;
    int close(Context &ctx, const std::string &drv, void *file) const;
    int transferIn(Context &ctx, const std::string &drv, void *file, int count, const char **labels,
                   const qd_type *types, void **values, int *counters) const;
    int transferOut(Context &ctx, const std::string &drv, void *file, int count,
                    const char **labels, const qd_type *types, void **values) const;
    // Item forms; counters land in items[i].counter.
    int transferIn(Context &ctx, const std::string &drv, void *file,
                   std::vector<Item> &items) const;
    int transferOut(Context &ctx, const std::string &drv, void *file,
                    std::vector<Item> &items) const;

    // open, transfer, close in one go.  Answers -1 when open fails, else the
    // transfer's status, or the close's when the transfer succeeded.
    int read(Context &ctx, const std::string &drv, const std::string &name,
             std::vector<Item> &items) const;
    int write(Context &ctx, const std::string &drv, const std::string &name,
              std::vector<Item> &items) const;
    int readItem(Context &ctx, const std::string &drv, const std::string &name,
                 const std::string &label, qd_type type, void *value, int *counter = nullptr) const;
    int writeItem(Context &ctx, const std::string &drv, const std::string &name,
                  const std::string &label, qd_type type, void *value) const;

private:
    void *_handle = nullptr;
    int _initResult = -1;
    int _version = 0;
    int _interfaceVersion = 0;
    const qd_module_desc *_desc = nullptr;
    std::string _loadError;
};

} // namespace qdhost

#endif
