// The process-wide table of record and external types, and value texts.
#include "refhost.h"

#include <mutex>
#include <stdexcept>

namespace qdhost {
namespace {

struct Registry {
    std::mutex mutex;
    qd_type next = 5;
    std::map<std::string, qd_type> names;
    std::map<qd_type, std::unique_ptr<RecordType>> records;
    std::map<qd_type, std::unique_ptr<ExternalType>> externals;
};

Registry &registry() {
    static Registry r;
    return r;
}

// Called with the registry locked.
const RecordType *findRecord(Registry &r, qd_type type) {
    auto it = r.records.find(type & QD_BASE_MASK);
    return it == r.records.end() ? nullptr : it->second.get();
}

bool sameFields(const std::vector<FieldSpec> &a, const std::vector<FieldSpec> &b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i].name != b[i].name || a[i].type != b[i].type) return false;
    return true;
}

qd_type allocate(Registry &r, const std::string &name) {
    if (r.next > QD_BASE_MASK) throw std::invalid_argument("no type number left for " + name);
    qd_type t = r.next++;
    r.names[name] = t;
    return t;
}

} // namespace

bool isBasicType(qd_type type) {
    qd_type base = type & QD_BASE_MASK;
    return base >= QD_INT && base <= QD_BOOL;
}

qd_type registerRecordType(const std::string &name, const std::vector<FieldSpec> &fields) {
    Registry &r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto known = r.names.find(name);
    if (known != r.names.end()) {
        const RecordType *rt = findRecord(r, known->second);
        if (rt && sameFields(rt->fields, fields)) return rt->type;
        throw std::invalid_argument("type " + name + " is already registered differently");
    }
    if (fields.empty() || fields.size() > 1023)
        throw std::invalid_argument("record " + name + " needs 1 to 1023 fields");
    auto rt = std::make_unique<RecordType>();
    rt->name = name;
    rt->fields = fields;
    rt->description.assign(fields.size() + 1, 0);
    for (size_t i = 0; i < fields.size(); ++i) {
        qd_type ft = fields[i].type;
        if (ft & ~QD_BASE_MASK)
            throw std::invalid_argument("field " + fields[i].name + " must have a base type");
        unsigned entry = ft | unsigned(i + 1) << 12;
        if (const RecordType *nested = findRecord(r, ft)) {
            unsigned distance = unsigned(rt->description.size() - i);
            rt->description.insert(rt->description.end(), nested->description.begin(),
                                   nested->description.end());
            entry |= distance << 22;
        } else if (!isBasicType(ft) && !r.externals.count(ft)) {
            throw std::invalid_argument("field " + fields[i].name + " has an unknown type");
        }
        rt->description[i] = int(entry);
    }
    rt->type = allocate(r, name);
    const RecordType *out = rt.get();
    r.records[rt->type] = std::move(rt);
    return out->type;
}

qd_type registerExternalType(const std::string &name, ExternalType def) {
    Registry &r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto known = r.names.find(name);
    if (known != r.names.end()) {
        if (r.externals.count(known->second)) return known->second;
        throw std::invalid_argument("type " + name + " is already registered as a record");
    }
    def.name = name;
    def.type = allocate(r, name);
    qd_type t = def.type;
    r.externals[t] = std::make_unique<ExternalType>(std::move(def));
    return t;
}

const RecordType *recordType(qd_type type) {
    Registry &r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    return findRecord(r, type);
}

const ExternalType *externalType(qd_type type) {
    Registry &r = registry();
    std::lock_guard<std::mutex> lock(r.mutex);
    auto it = r.externals.find(type & QD_BASE_MASK);
    return it == r.externals.end() ? nullptr : it->second.get();
}

std::string valueText(qd_type base, const qd_value &v) {
    char buf[64];
    switch (base & QD_BASE_MASK) {
    case QD_INT: snprintf(buf, sizeof buf, "%lld", (long long)v.i); return buf;
    case QD_REAL: snprintf(buf, sizeof buf, "%.15g", v.r); return buf;
    case QD_STRING: return v.s ? v.s : "";
    case QD_BOOL: return v.b ? "true" : "false";
    default: return "?";
    }
}

} // namespace qdhost
