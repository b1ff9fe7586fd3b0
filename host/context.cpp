// The Context: one running model, owning its objects, texts and stream.
#include "refhost.h"

#include <stdexcept>

namespace qdhost {

Context::Context(std::string dir) : directory(std::move(dir)) {}

Context::~Context() {
    if (stream) fclose(stream);
}

std::string Context::allErrors() const {
    std::string out;
    for (const std::string &e : errors) out += e;
    return out;
}

void Context::clearMessages() {
    errors.clear();
    reports.clear();
    output.clear();
}

const char *Context::intern(const char *text) {
    return _texts.insert(text ? text : "").first->c_str();
}

template <class T>
static T *keep(std::vector<std::unique_ptr<Object>> &owned, std::unique_ptr<T> p) {
    T *raw = p.get();
    owned.push_back(std::move(p));
    return raw;
}

Set *Context::newSet(qd_type elem, SetOptions opt) {
    return keep(_owned, std::make_unique<Set>(this, elem, opt));
}

Set *Context::newSet(qd_type elem, const std::vector<qd_value> &values, SetOptions opt) {
    Set *s = newSet(elem, opt);
    for (const qd_value &v : values) s->add(v);
    return s;
}

Array *Context::newArray(qd_type elem, std::vector<Set *> sets, ArrayOptions opt) {
    return keep(_owned, std::make_unique<Array>(this, elem, std::move(sets), opt));
}

List *Context::newList(qd_type elem) { return keep(_owned, std::make_unique<List>(this, elem)); }

Record *Context::newRecord(qd_type type) {
    return keep(_owned, std::make_unique<Record>(this, type));
}

External *Context::newExternal(qd_type type, const std::string &text) {
    const ExternalType *t = externalType(type);
    if (!t) throw std::invalid_argument("not an external type");
    auto e = std::make_unique<External>(this, type & QD_BASE_MASK);
    if (!text.empty() && !(t->fromText && t->fromText(text, e->data)))
        throw std::invalid_argument("text not accepted by " + t->name + ": " + text);
    return keep(_owned, std::move(e));
}

Object *Context::adoptLoose(std::unique_ptr<Object> obj) {
    Object *raw = obj.get();
    _loose[raw] = std::move(obj);
    return raw;
}

bool Context::dropLoose(void *obj) { return _loose.erase(obj) > 0; }

int Context::beginLoads() const {
    int n = 0;
    for (const auto &o : _owned)
        if (auto a = dynamic_cast<const Array *>(o.get())) n += a->beginLoads;
    return n;
}

int Context::endLoads() const {
    int n = 0;
    for (const auto &o : _owned)
        if (auto a = dynamic_cast<const Array *>(o.get())) n += a->endLoads;
    return n;
}

} // namespace qdhost
