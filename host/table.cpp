// The host interface table: the C operations of qdhost.h over the objects of
// refhost.h.  Every operation checks its handles, so that a module bug shows
// up as a refusal instead of a crash.
#include "refhost.h"

#include <cstdarg>
#include <cstring>
#include <string>

namespace qdhost {
namespace {

Context *ctxOf(qd_context *c) { return static_cast<Context *>(c); }

template <class T> T *as(void *p) {
    return p ? dynamic_cast<T *>(static_cast<Object *>(p)) : nullptr;
}
template <class T> const T *asConst(const void *p) {
    return p ? dynamic_cast<const T *>(static_cast<const Object *>(p)) : nullptr;
}

std::string vformat(const char *format, va_list ap) {
    va_list copy;
    va_copy(copy, ap);
    char small[512];
    int n = vsnprintf(small, sizeof small, format, copy);
    va_end(copy);
    if (n < 0) return std::string();
    if (n < (int)sizeof small) return std::string(small, n);
    std::string big(n + 1, '\0');
    vsnprintf(&big[0], big.size(), format, ap);
    big.resize(n);
    return big;
}

// ---- parameters ----
int getParameter(qd_context *c, int number, void *out) {
    Context *ctx = ctxOf(c);
    if (!ctx || !out) return 1;
    if (number == QD_PARAM_REALFMT) {
        *static_cast<const char **>(out) = ctx->realFormat.c_str();
        return 0;
    }
    if (number == QD_PARAM_FINALISE) {
        *static_cast<int *>(out) = ctx->finalise ? 1 : 0;
        return 0;
    }
    return 1;
}

// ---- sets ----
int setSize(void *s) { return as<Set>(s) ? as<Set>(s)->size() : 0; }
qd_type setElementType(void *s) { return as<Set>(s) ? as<Set>(s)->elementType() : 0; }
int setFirstIndex(void *s) { return as<Set>(s) ? as<Set>(s)->firstIndex() : 0; }
int setLastIndex(void *s) { return as<Set>(s) ? as<Set>(s)->lastIndex() : -1; }

int setAdd(qd_context *, void *s, const qd_value *value, int *position) {
    Set *set = as<Set>(s);
    if (!set || !value) return 1;
    bool refused = false;
    int at = set->insert(*value, &refused);
    if (refused) return 1;
    if (position) *position = at;
    return 0;
}

int setElement(qd_context *, void *s, int position, qd_value *out) {
    Set *set = as<Set>(s);
    return set && out && set->element(position, out) ? 0 : 1;
}

int lockSet(qd_context *, void *s) {
    Set *set = as<Set>(s);
    if (!set) return 1;
    set->lock();
    return 0;
}

int unlockSet(qd_context *, void *s) {
    Set *set = as<Set>(s);
    return set && set->unlock() ? 0 : 1;
}

int finaliseSet(qd_context *, void *s) {
    Set *set = as<Set>(s);
    if (!set) return 1;
    set->finalise();
    return 0;
}

// ---- arrays ----
int arrayDimensions(void *a) { return as<Array>(a) ? as<Array>(a)->dimensions() : 0; }
qd_type arrayElementType(void *a) { return as<Array>(a) ? as<Array>(a)->elementType() : 0; }

void arrayIndexSets(void *a, void **sets) {
    Array *array = as<Array>(a);
    if (!array || !sets) return;
    for (int d = 0; d < array->dimensions(); ++d) sets[d] = array->sets()[d];
}

int arrayEntryCount(void *a) { return as<Array>(a) ? as<Array>(a)->entryCount() : 0; }

int arrayGet(void *a, const int *indices, qd_value *out) {
    Array *array = as<Array>(a);
    if (!array || !indices || !out || !array->inRange(indices)) return 1;
    *out = array->get(indices);
    return 0;
}

int arrayFirstCell(void *a, int *at) {
    return as<Array>(a) && at && as<Array>(a)->firstCell(at) ? 0 : 1;
}
int arrayNextCell(void *a, int *at) {
    return as<Array>(a) && at && as<Array>(a)->nextCell(at) ? 0 : 1;
}
int arrayFirstEntry(void *a, int *at) {
    return as<Array>(a) && at && as<Array>(a)->firstEntry(at) ? 0 : 1;
}
int arrayNextEntry(void *a, int *at) {
    return as<Array>(a) && at && as<Array>(a)->nextEntry(at) ? 0 : 1;
}

int arraySet(qd_context *, void *a, const int *indices, qd_value *value) {
    Array *array = as<Array>(a);
    if (!array || !indices || !value) return 1;
    Array::Tuple at(indices, indices + array->dimensions());
    if (isBasicType(array->elementType())) return array->set(at, *value) ? 0 : 1;
    Record *r = array->record(at);
    if (!r) return 1;
    value->p = r;
    return 0;
}

int arraySetObject(qd_context *, void *a, const int *indices, void *object) {
    Array *array = as<Array>(a);
    Object *obj = as<Object>(object);
    if (!array || !indices || !obj) return 1;
    Array::Tuple at(indices, indices + array->dimensions());
    return array->setObject(at, *obj) ? 0 : 1;
}

int arrayBeginLoad(qd_context *, void *a) {
    Array *array = as<Array>(a);
    if (!array || array->loading) return 1;
    array->loading = true;
    ++array->beginLoads;
    return 0;
}

int arrayEndLoad(qd_context *, void *a, int status) {
    if (Array *array = as<Array>(a)) {
        array->loading = false;
        ++array->endLoads;
    }
    return status;
}

int compareIndices(int dims, const int *a, const int *b) {
    for (int d = 0; d < dims; ++d)
        if (a[d] != b[d]) return a[d] < b[d] ? -1 : 1;
    return 0;
}

// ---- types ----
// QD_INFO_STRUCT looks at the base type only, so that record description
// entries (whose bits 12..21 are field numbers) can be asked as they are.
int typeInfo(qd_context *, qd_type type, int what, void *out) {
    if (!out) return 1;
    const RecordType *rt = recordType(type);
    const ExternalType *et = rt ? nullptr : externalType(type);
    if (!rt && !et && !isBasicType(type)) return 1;
    switch (what) {
    case QD_INFO_PROPS:
        *static_cast<int *>(out) = rt ? 0 : et ? (et->textual ? QD_PROP_TEXT : 0) : QD_PROP_TEXT;
        return 0;
    case QD_INFO_STRUCT: *static_cast<int *>(out) = rt ? QD_RECORD : QD_VALUE; return 0;
    case QD_INFO_DESC:
        if (!rt) return 1;
        *static_cast<const int **>(out) = rt->description.data();
        return 0;
    default: return 1;
    }
}

// ---- lists ----
int listSize(void *l) { return as<List>(l) ? as<List>(l)->size() : 0; }
qd_type listElementType(void *l) { return as<List>(l) ? as<List>(l)->elementType() : 0; }

int listAppend(qd_context *, void *l, qd_type type, const qd_value *value) {
    List *list = as<List>(l);
    return list && value && list->append(type, *value) ? 0 : 1;
}

void *listNext(void *l, void *prev, qd_type *type, qd_value *value) {
    List *list = as<List>(l);
    if (!list) return nullptr;
    intptr_t next = reinterpret_cast<intptr_t>(prev); // position + 1 of prev
    if (next < 0 || next >= list->size()) return nullptr;
    const List::Item &item = list->at((int)next);
    if (type) *type = item.type;
    if (value) *value = item.value;
    return reinterpret_cast<void *>(next + 1);
}

// ---- records ----
Record::Slot *recordSlot(qd_type type, void *record, int field, Record **out) {
    Record *r = as<Record>(record);
    if (!r || (r->type() & QD_BASE_MASK) != (type & QD_BASE_MASK)) return nullptr;
    *out = r;
    return r->slot(field);
}

int recordField(qd_context *, qd_type type, void *record, int field, void **out) {
    Record *r = nullptr;
    Record::Slot *slot = recordSlot(type, record, field, &r);
    if (!slot || !out) return 1;
    if (slot->obj)
        *out = slot->obj.get();
    else if ((r->info().fields[field - 1].type & QD_BASE_MASK) == QD_STRING)
        *out = &slot->value.s;
    else
        *out = &slot->value;
    return 0;
}

int recordValue(qd_context *c, qd_type type, void *record, int field, qd_value *value, int mode) {
    Record *r = nullptr;
    Record::Slot *slot = recordSlot(type, record, field, &r);
    if (!slot || !value || slot->obj) return 1;
    qd_type ft = r->info().fields[field - 1].type;
    if (mode == QD_FIELD_GET) {
        *value = slot->value;
        return 0;
    }
    if (mode != QD_FIELD_SET) return 1;
    qd_value v = *value;
    if ((ft & QD_BASE_MASK) == QD_STRING)
        v.s = ctxOf(c) ? ctxOf(c)->intern(v.s) : nullptr;
    else if ((ft & QD_BASE_MASK) == QD_BOOL)
        v = qdBool(v.b != 0);
    if (!v.s && (ft & QD_BASE_MASK) == QD_STRING) return 1;
    slot->value = v;
    return 0;
}

// ---- objects ----
void *newObject(qd_context *c, qd_type type) {
    Context *ctx = ctxOf(c);
    if (!ctx) return nullptr;
    if (recordType(type))
        return ctx->adoptLoose(std::make_unique<Record>(ctx, type & QD_BASE_MASK));
    if (externalType(type))
        return ctx->adoptLoose(std::make_unique<External>(ctx, type & QD_BASE_MASK));
    return nullptr;
}

void deleteObject(qd_context *c, qd_type, void *object) {
    if (ctxOf(c) && object) ctxOf(c)->dropLoose(object);
}

int copyObject(qd_context *c, qd_type type, void *dest, const void *source, int flags) {
    Context *ctx = ctxOf(c);
    if (!ctx || !dest || !source) return 1;
    if (flags == QD_COPY_TEXT) {
        const char *text = static_cast<const char *>(source);
        if ((type & QD_BASE_MASK) == QD_STRING) {
            *static_cast<const char **>(dest) = ctx->intern(text);
            return 0;
        }
        External *e = as<External>(dest);
        const ExternalType *et = externalType(type);
        if (!e || !et || (e->type() & QD_BASE_MASK) != (type & QD_BASE_MASK) || !et->textual ||
            !et->fromText)
            return 1;
        std::string data;
        if (!et->fromText(text, data)) return 1;
        e->data = data;
        return 0;
    }
    if (flags != QD_COPY_OBJECT) return 1;
    if (External *e = as<External>(dest)) {
        const External *s = asConst<External>(source);
        if (!s || s->type() != e->type()) return 1;
        e->data = s->data;
        return 0;
    }
    if (Record *r = as<Record>(dest)) {
        const Record *s = asConst<Record>(source);
        if (!s || s->type() != r->type()) return 1;
        std::unique_ptr<Object> copy = s->clone();
        Record *cr = static_cast<Record *>(copy.get());
        for (int i = 1; r->slot(i); ++i) {
            r->slot(i)->value = cr->slot(i)->value;
            r->slot(i)->obj = std::move(cr->slot(i)->obj);
        }
        return 0;
    }
    return 1;
}

int toText(qd_context *, qd_type type, const void *object, char *buffer, int size) {
    const External *e = asConst<External>(object);
    const ExternalType *et = externalType(type);
    if (!e || !et || !et->textual || (e->type() & QD_BASE_MASK) != (type & QD_BASE_MASK)) return -1;
    std::string text = e->text();
    if (buffer && size > 0) snprintf(buffer, size, "%s", text.c_str());
    return (int)text.size();
}

const char *textHandle(qd_context *c, const char *text) {
    return ctxOf(c) ? ctxOf(c)->intern(text) : nullptr;
}

// ---- streams ----
int openStream(qd_context *c, int flags, const char *path) {
    Context *ctx = ctxOf(c);
    if (!ctx || !path || !*path || ctx->stream) return 1;
    ctx->stream = fopen(path, (flags & QD_STREAM_WRITE) ? "wb" : "rb");
    if (!ctx->stream) return 1;
    ++ctx->streamsOpened;
    return 0;
}

int closeStream(qd_context *c, int) {
    Context *ctx = ctxOf(c);
    if (!ctx || !ctx->stream) return 1;
    int rc = fclose(ctx->stream);
    ctx->stream = nullptr;
    ++ctx->streamsClosed;
    return rc != 0 ? 1 : 0;
}

int print(qd_context *c, const char *format, ...) {
    Context *ctx = ctxOf(c);
    if (!ctx || !format) return -1;
    va_list ap;
    va_start(ap, format);
    int n;
    if (ctx->stream) {
        n = vfprintf(ctx->stream, format, ap);
    } else {
        std::string text = vformat(format, ap);
        ctx->output += text;
        n = (int)text.size();
    }
    va_end(ap);
    return n;
}

long read(qd_context *c, void *buffer, long count) {
    Context *ctx = ctxOf(c);
    if (!ctx || !ctx->stream || !buffer || count < 0) return -1;
    size_t n = fread(buffer, 1, (size_t)count, ctx->stream);
    if (n == 0 && ferror(ctx->stream)) return -1;
    return (long)n;
}

int findFile(qd_context *c, const char *name, char *out, int size, int) {
    Context *ctx = ctxOf(c);
    if (!ctx || !name || !*name || !out || size <= 0) return 1;
    std::string path = name;
    if (name[0] != '/' && !ctx->directory.empty())
        path = ctx->directory + (ctx->directory.back() == '/' ? "" : "/") + name;
    if ((int)path.size() + 1 > size) return 1;
    memcpy(out, path.c_str(), path.size() + 1);
    return 0;
}

// ---- messages ----
const char *messageDir() { return "/usr/share/qdsheet/messages"; }

void dispatchError(qd_context *c, const char *format, ...) {
    Context *ctx = ctxOf(c);
    if (!ctx || !format) return;
    va_list ap;
    va_start(ap, format);
    std::string text = vformat(format, ap);
    va_end(ap);
    if (ctx->debug) fprintf(stderr, "%s", text.c_str());
    ctx->errors.push_back(text);
}

void reportError(qd_context *c, const char *text, int code) {
    Context *ctx = ctxOf(c);
    if (!ctx) return;
    if (ctx->debug) fprintf(stderr, "report %d: %s\n", code, text ? text : "");
    ctx->reports.emplace_back(text ? text : "", code);
}

const qd_host table = {
    getParameter,    setSize,          setElementType,  setFirstIndex,   setLastIndex,
    setAdd,          setElement,       lockSet,         unlockSet,       finaliseSet,
    arrayDimensions, arrayElementType, arrayIndexSets,  arrayEntryCount, arrayGet,
    arrayFirstCell,  arrayNextCell,    arrayFirstEntry, arrayNextEntry,  arraySet,
    arraySetObject,  arrayBeginLoad,   arrayEndLoad,    compareIndices,  typeInfo,
    listSize,        listElementType,  listAppend,      listNext,        recordField,
    recordValue,     newObject,        deleteObject,    copyObject,      toText,
    textHandle,      openStream,       closeStream,     print,           read,
    findFile,        messageDir,       dispatchError,   reportError,
};

} // namespace

const qd_host *hostTable() { return &table; }

} // namespace qdhost
