// The host objects: external objects, records, sets, arrays and lists.
#include "refhost.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

namespace qdhost {
namespace {

// A key that is equal for equal values of one base type.  Numbers are
// keyed by their bytes, which is cheaper than their text.
std::string valueKey(qd_type base, const qd_value &v) {
    switch (base & QD_BASE_MASK) {
    case QD_INT: {
        long long i = v.i;
        char buf[sizeof i];
        std::memcpy(buf, &i, sizeof i);
        return std::string(buf, sizeof i);
    }
    case QD_REAL: {
        double r = v.r == 0.0 ? 0.0 : v.r; // -0 and 0 are one element
        char buf[sizeof r];
        std::memcpy(buf, &r, sizeof r);
        return std::string(buf, sizeof r);
    }
    case QD_BOOL: return v.b ? "1" : "0";
    default: return valueText(base, v);
    }
}

// Stores a basic value, interning text into the context.
qd_value stored(Context *ctx, qd_type base, qd_value v) {
    if ((base & QD_BASE_MASK) == QD_STRING)
        v.s = ctx->intern(v.s ? v.s : "");
    else if ((base & QD_BASE_MASK) == QD_BOOL)
        v = qdBool(v.b != 0);
    return v;
}

std::unique_ptr<Object> newElement(Context *ctx, qd_type type) {
    if (recordType(type)) return std::make_unique<Record>(ctx, type & QD_BASE_MASK);
    if (externalType(type)) return std::make_unique<External>(ctx, type & QD_BASE_MASK);
    return nullptr;
}

std::string objectText(const Object *obj) {
    if (auto r = dynamic_cast<const Record *>(obj)) return r->text();
    if (auto e = dynamic_cast<const External *>(obj)) return e->text();
    return "?";
}

} // namespace

// ---- External --------------------------------------------------------------
std::unique_ptr<Object> External::clone() const {
    auto e = std::make_unique<External>(_ctx, _type);
    e->data = data;
    return e;
}

std::string External::text() const {
    const ExternalType *t = externalType(_type);
    return t && t->toText ? t->toText(data) : data;
}

// ---- Record ----------------------------------------------------------------
Record::Record(Context *ctx, qd_type t) : Object(ctx), _type(t), _info(recordType(t)) {
    if (!_info) throw std::invalid_argument("not a record type");
    _slots.resize(_info->fields.size());
    for (size_t i = 0; i < _slots.size(); ++i) {
        qd_type ft = _info->fields[i].type;
        if (isBasicType(ft))
            _slots[i].value = stored(ctx, ft, qd_value{});
        else
            _slots[i].obj = newElement(ctx, ft);
    }
}

std::unique_ptr<Object> Record::clone() const {
    auto r = std::make_unique<Record>(_ctx, _type);
    for (size_t i = 0; i < _slots.size(); ++i) {
        r->_slots[i].value = _slots[i].value;
        if (_slots[i].obj) r->_slots[i].obj = _slots[i].obj->clone();
    }
    return r;
}

Record::Slot *Record::slot(int number) {
    if (number < 1 || number > (int)_slots.size()) return nullptr;
    return &_slots[number - 1];
}

static int fieldIndex(const RecordType &info, const std::string &field) {
    for (size_t i = 0; i < info.fields.size(); ++i)
        if (info.fields[i].name == field) return (int)i;
    throw std::out_of_range("no field " + field + " in " + info.name);
}

void Record::set(const std::string &field, qd_value v) {
    int i = fieldIndex(*_info, field);
    qd_type ft = _info->fields[i].type;
    if (!isBasicType(ft)) throw std::invalid_argument("field " + field + " is not basic");
    _slots[i].value = stored(_ctx, ft, v);
}

qd_value Record::get(const std::string &field) const {
    return _slots[fieldIndex(*_info, field)].value;
}

Record *Record::nested(const std::string &field) const {
    return dynamic_cast<Record *>(_slots[fieldIndex(*_info, field)].obj.get());
}

External *Record::external(const std::string &field) const {
    return dynamic_cast<External *>(_slots[fieldIndex(*_info, field)].obj.get());
}

std::string Record::fieldText(const std::string &field) const {
    int i = fieldIndex(*_info, field);
    if (_slots[i].obj) return objectText(_slots[i].obj.get());
    return valueText(_info->fields[i].type, _slots[i].value);
}

std::string Record::text() const {
    std::string out = "{";
    for (size_t i = 0; i < _slots.size(); ++i) {
        if (i) out += ',';
        out += fieldText(_info->fields[i].name);
    }
    return out + "}";
}

// ---- Set -------------------------------------------------------------------
Set::Set(Context *ctx, qd_type elem, SetOptions opt) : Object(ctx), _elem(elem), _opt(opt) {
    if (!isBasicType(elem) || (elem & ~QD_BASE_MASK))
        throw std::invalid_argument("set elements must have a basic type");
}

qd_type Set::type() const { return _elem | QD_SET | (_opt.dynamic ? QD_DYNAMIC : 0); }

qd_type Set::elementType() const { return _elem | (_opt.declared ? QD_DECLARED_SET : 0); }

std::unique_ptr<Object> Set::clone() const { return std::make_unique<Set>(*this); }

int Set::find(qd_value v) const {
    auto it = _index.find(valueKey(_elem, v));
    return it == _index.end() ? -1 : _opt.base + it->second;
}

int Set::add(qd_value v) {
    auto placed = _index.emplace(valueKey(_elem, v), (int)_items.size());
    if (!placed.second) return _opt.base + placed.first->second;
    _items.push_back(stored(_ctx, _elem, v));
    return _opt.base + (int)_items.size() - 1;
}

int Set::insert(qd_value v, bool *refused) {
    int at = find(v);
    *refused = at < 0 && (_locks > 0 || _finalised);
    if (*refused) return -1;
    return at >= 0 ? at : add(v);
}

bool Set::element(int position, qd_value *out) const {
    int offset = position - _opt.base;
    if (offset < 0 || offset >= (int)_items.size()) return false;
    *out = _items[offset];
    return true;
}

bool Set::unlock() {
    if (_locks == 0) return false;
    --_locks;
    return true;
}

std::vector<qd_value> Set::values() const { return _items; }

std::vector<std::string> Set::texts() const {
    std::vector<std::string> out;
    for (const qd_value &v : _items) out.push_back(valueText(_elem, v));
    return out;
}

// ---- Array -----------------------------------------------------------------
Array::Array(Context *ctx, qd_type elem, std::vector<Set *> sets, ArrayOptions opt)
    : Object(ctx), _elem(elem & QD_BASE_MASK), _sets(std::move(sets)), _opt(opt) {
    if (_sets.empty()) throw std::invalid_argument("an array needs at least one index set");
    for (Set *s : _sets)
        if (!s) throw std::invalid_argument("null index set");
    if (isBasicType(_elem))
        _opt.deflt = stored(ctx, _elem, _opt.deflt);
    else if (recordType(_elem))
        _emptyRecord = std::make_unique<Record>(ctx, _elem);
    else if (!externalType(_elem))
        throw std::invalid_argument("unknown array element type");
}

qd_type Array::type() const { return _elem | QD_ARRAY | (_opt.dynamic ? QD_DYNAMIC : 0); }

std::unique_ptr<Object> Array::clone() const {
    auto a = std::make_unique<Array>(_ctx, _elem, _sets, _opt);
    for (const auto &c : _cells) {
        Cell &d = a->_cells[c.first];
        d.value = c.second.value;
        if (c.second.obj) d.obj = c.second.obj->clone();
    }
    return a;
}

bool Array::inRange(const int *at) const {
    for (size_t d = 0; d < _sets.size(); ++d)
        if (at[d] < _sets[d]->firstIndex() || at[d] > _sets[d]->lastIndex()) return false;
    return true;
}

bool Array::set(const Tuple &at, qd_value v) {
    if (at.size() != _sets.size() || !inRange(at.data()) || !isBasicType(_elem)) return false;
    _cells[at].value = stored(_ctx, _elem, v);
    return true;
}

Record *Array::record(const Tuple &at) {
    if (at.size() != _sets.size() || !inRange(at.data()) || !_emptyRecord) return nullptr;
    Cell &c = _cells[at];
    if (!c.obj) c.obj = std::make_unique<Record>(_ctx, _elem);
    return static_cast<Record *>(c.obj.get());
}

bool Array::setObject(const Tuple &at, const Object &obj) {
    if (at.size() != _sets.size() || !inRange(at.data()) || isBasicType(_elem) ||
        (obj.type() & QD_BASE_MASK) != _elem)
        return false;
    _cells[at].obj = obj.clone();
    return true;
}

const Array::Cell *Array::find(const Tuple &at) const {
    auto it = _cells.find(at);
    return it == _cells.end() ? nullptr : &it->second;
}

Array::Cell *Array::find(const Tuple &at) {
    auto it = _cells.find(at);
    return it == _cells.end() ? nullptr : &it->second;
}

const std::pair<const Array::Tuple, Array::Cell> *Array::stopAt(const int *at) const {
    if (!_walking || !std::equal(_walk->first.begin(), _walk->first.end(), at)) return nullptr;
    return &*_walk;
}

qd_value Array::get(const int *at) const {
    const Cell *c;
    if (auto stop = stopAt(at)) {
        c = &stop->second;
    } else {
        _probe.assign(at, at + _sets.size());
        c = find(_probe);
    }
    if (c) return c->obj ? qdPtr(c->obj.get()) : c->value;
    if (_emptyRecord) return qdPtr(_emptyRecord.get());
    return _opt.deflt; // externals: a null reference
}

int Array::entryCount() const {
    if (!_opt.dense) return (int)_cells.size();
    long long n = 1;
    for (Set *s : _sets) n *= s->size();
    return (int)n;
}

bool Array::firstCell(int *at) const {
    for (size_t d = 0; d < _sets.size(); ++d) {
        if (_sets[d]->size() == 0) return false;
        at[d] = _sets[d]->firstIndex();
    }
    return true;
}

bool Array::nextCell(int *at) const {
    for (size_t d = _sets.size(); d-- > 0;) {
        if (at[d] < _sets[d]->lastIndex()) {
            ++at[d];
            return true;
        }
        at[d] = _sets[d]->firstIndex(); // wrap and carry
    }
    return false;
}

bool Array::firstEntry(int *at) const {
    if (_opt.dense) return firstCell(at);
    _walking = !_cells.empty();
    if (!_walking) return false;
    _walk = _cells.begin();
    std::copy(_walk->first.begin(), _walk->first.end(), at);
    return true;
}

// The next stored entry after `at` in index order.  Stepping on from the
// entry answered last is one iterator increment; any other tuple is
// searched for.
bool Array::nextEntry(int *at) const {
    if (_opt.dense) return nextCell(at);
    std::map<Tuple, Cell>::const_iterator it;
    if (stopAt(at)) {
        it = std::next(_walk);
    } else {
        _probe.assign(at, at + _sets.size());
        it = _cells.upper_bound(_probe);
    }
    _walking = it != _cells.end();
    if (!_walking) return false;
    _walk = it;
    std::copy(_walk->first.begin(), _walk->first.end(), at);
    return true;
}

std::map<std::vector<std::string>, std::string> Array::entries() const {
    std::map<std::vector<std::string>, std::string> out;
    Tuple at(_sets.size());
    for (bool ok = firstEntry(at.data()); ok; ok = nextEntry(at.data())) {
        std::vector<std::string> key;
        for (size_t d = 0; d < _sets.size(); ++d) {
            qd_value v{};
            _sets[d]->element(at[d], &v);
            key.push_back(valueText(_sets[d]->baseType(), v));
        }
        qd_value v = get(at.data());
        out[key] = isBasicType(_elem) ? valueText(_elem, v)
                   : v.p              ? objectText(static_cast<const Object *>(v.p))
                                      : "";
    }
    return out;
}

// ---- List ------------------------------------------------------------------
std::unique_ptr<Object> List::clone() const {
    auto l = std::make_unique<List>(_ctx, _elem);
    for (const Item &it : _items) {
        Item c{it.type, it.value, nullptr};
        if (it.obj) {
            c.obj = it.obj->clone();
            c.value.p = c.obj.get();
        }
        l->_items.push_back(std::move(c));
    }
    return l;
}

bool List::append(qd_type t, qd_value v) {
    if (t == 0) t = _elem;
    if (t == 0) return false;
    Item item{t, v, nullptr};
    if (isBasicType(t) && (t & QD_STRUCT_MASK) == QD_VALUE) {
        item.value = stored(_ctx, t, v);
    } else if ((t & QD_STRUCT_MASK) == QD_VALUE || (t & QD_STRUCT_MASK) == QD_REF) {
        if (!v.p || !(recordType(t) || externalType(t))) return false;
        item.obj = static_cast<const Object *>(v.p)->clone();
        item.value.p = item.obj.get();
    } else if (!v.p) {
        return false; // arrays, sets, lists: kept by reference
    }
    _items.push_back(std::move(item));
    return true;
}

std::vector<std::string> List::texts() const {
    std::vector<std::string> out;
    for (const Item &it : _items) {
        if (it.obj)
            out.push_back(objectText(it.obj.get()));
        else if (isBasicType(it.type) && (it.type & QD_STRUCT_MASK) == QD_VALUE)
            out.push_back(valueText(it.type, it.value));
        else
            out.push_back("?");
    }
    return out;
}

} // namespace qdhost
