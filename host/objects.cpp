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
    case QD_BOOL:
        return v.b ? "1" : "0";
    default:
        return valueText(base, v);
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
    if (recordType(type))
        return std::make_unique<Record>(ctx, type & QD_BASE_MASK);
    if (externalType(type))
        return std::make_unique<External>(ctx, type & QD_BASE_MASK);
    return nullptr;
}

std::string objectText(const Object *obj) {
    if (auto r = dynamic_cast<const Record *>(obj))
        return r->text();
    if (auto e = dynamic_cast<const External *>(obj))
        return e->text();
    return "?";
}

} // namespace

// ---- External --------------------------------------------------------------
std::unique_ptr<Object> External::clone() const {
    auto e = std::make_unique<External>(ctx_, type_);
    e->data = data;
    return e;
}

std::string External::text() const {
    const ExternalType *t = externalType(type_);
    return t && t->toText ? t->toText(data) : data;
}

// ---- Record ----------------------------------------------------------------
Record::Record(Context *ctx, qd_type t) : Object(ctx), type_(t), info_(recordType(t)) {
    if (!info_)
        throw std::invalid_argument("not a record type");
    slots_.resize(info_->fields.size());
    for (size_t i = 0; i < slots_.size(); ++i) {
        qd_type ft = info_->fields[i].type;
        if (isBasicType(ft))
            slots_[i].value = stored(ctx, ft, qd_value{});
        else
            slots_[i].obj = newElement(ctx, ft);
    }
}

std::unique_ptr<Object> Record::clone() const {
    auto r = std::make_unique<Record>(ctx_, type_);
    for (size_t i = 0; i < slots_.size(); ++i) {
        r->slots_[i].value = slots_[i].value;
        if (slots_[i].obj)
            r->slots_[i].obj = slots_[i].obj->clone();
    }
    return r;
}

Record::Slot *Record::slot(int number) {
    if (number < 1 || number > (int)slots_.size())
        return nullptr;
    return &slots_[number - 1];
}

static int fieldIndex(const RecordType &info, const std::string &field) {
    for (size_t i = 0; i < info.fields.size(); ++i)
        if (info.fields[i].name == field)
            return (int)i;
    throw std::out_of_range("no field " + field + " in " + info.name);
}

void Record::set(const std::string &field, qd_value v) {
    int i = fieldIndex(*info_, field);
    qd_type ft = info_->fields[i].type;
    if (!isBasicType(ft))
        throw std::invalid_argument("field " + field + " is not basic");
    slots_[i].value = stored(ctx_, ft, v);
}

qd_value Record::get(const std::string &field) const {
    return slots_[fieldIndex(*info_, field)].value;
}

Record *Record::nested(const std::string &field) const {
    return dynamic_cast<Record *>(slots_[fieldIndex(*info_, field)].obj.get());
}

External *Record::external(const std::string &field) const {
    return dynamic_cast<External *>(slots_[fieldIndex(*info_, field)].obj.get());
}

std::string Record::fieldText(const std::string &field) const {
    int i = fieldIndex(*info_, field);
    if (slots_[i].obj)
        return objectText(slots_[i].obj.get());
    return valueText(info_->fields[i].type, slots_[i].value);
}

std::string Record::text() const {
    std::string out = "{";
    for (size_t i = 0; i < slots_.size(); ++i) {
        if (i)
            out += ',';
        out += fieldText(info_->fields[i].name);
    }
    return out + "}";
}

// ---- Set -------------------------------------------------------------------
Set::Set(Context *ctx, qd_type elem, SetOptions opt) : Object(ctx), elem_(elem), opt_(opt) {
    if (!isBasicType(elem) || (elem & ~QD_BASE_MASK))
        throw std::invalid_argument("set elements must have a basic type");
}

qd_type Set::type() const { return elem_ | QD_SET | (opt_.dynamic ? QD_DYNAMIC : 0); }

qd_type Set::elementType() const { return elem_ | (opt_.declared ? QD_DECLARED_SET : 0); }

std::unique_ptr<Object> Set::clone() const { return std::make_unique<Set>(*this); }

int Set::find(qd_value v) const {
    auto it = index_.find(valueKey(elem_, v));
    return it == index_.end() ? -1 : opt_.base + it->second;
}

int Set::add(qd_value v) {
    auto placed = index_.emplace(valueKey(elem_, v), (int)items_.size());
    if (!placed.second)
        return opt_.base + placed.first->second;
    items_.push_back(stored(ctx_, elem_, v));
    return opt_.base + (int)items_.size() - 1;
}

int Set::insert(qd_value v, bool *refused) {
    int at = find(v);
    *refused = at < 0 && (locks_ > 0 || finalised_);
    if (*refused)
        return -1;
    return at >= 0 ? at : add(v);
}

bool Set::element(int position, qd_value *out) const {
    int offset = position - opt_.base;
    if (offset < 0 || offset >= (int)items_.size())
        return false;
    *out = items_[offset];
    return true;
}

bool Set::unlock() {
    if (locks_ == 0)
        return false;
    --locks_;
    return true;
}

std::vector<qd_value> Set::values() const { return items_; }

std::vector<std::string> Set::texts() const {
    std::vector<std::string> out;
    for (const qd_value &v : items_)
        out.push_back(valueText(elem_, v));
    return out;
}

// ---- Array -----------------------------------------------------------------
Array::Array(Context *ctx, qd_type elem, std::vector<Set *> sets, ArrayOptions opt)
    : Object(ctx), elem_(elem & QD_BASE_MASK), sets_(std::move(sets)), opt_(opt) {
    if (sets_.empty())
        throw std::invalid_argument("an array needs at least one index set");
    for (Set *s : sets_)
        if (!s)
            throw std::invalid_argument("null index set");
    if (isBasicType(elem_))
        opt_.deflt = stored(ctx, elem_, opt_.deflt);
    else if (recordType(elem_))
        emptyRecord_ = std::make_unique<Record>(ctx, elem_);
    else if (!externalType(elem_))
        throw std::invalid_argument("unknown array element type");
}

qd_type Array::type() const { return elem_ | QD_ARRAY | (opt_.dynamic ? QD_DYNAMIC : 0); }

std::unique_ptr<Object> Array::clone() const {
    auto a = std::make_unique<Array>(ctx_, elem_, sets_, opt_);
    for (const auto &c : cells_) {
        Cell &d = a->cells_[c.first];
        d.value = c.second.value;
        if (c.second.obj)
            d.obj = c.second.obj->clone();
    }
    return a;
}

bool Array::inRange(const int *at) const {
    for (size_t d = 0; d < sets_.size(); ++d)
        if (at[d] < sets_[d]->firstIndex() || at[d] > sets_[d]->lastIndex())
            return false;
    return true;
}

bool Array::set(const Tuple &at, qd_value v) {
    if (at.size() != sets_.size() || !inRange(at.data()) || !isBasicType(elem_))
        return false;
    cells_[at].value = stored(ctx_, elem_, v);
    return true;
}

Record *Array::record(const Tuple &at) {
    if (at.size() != sets_.size() || !inRange(at.data()) || !emptyRecord_)
        return nullptr;
    Cell &c = cells_[at];
    if (!c.obj)
        c.obj = std::make_unique<Record>(ctx_, elem_);
    return static_cast<Record *>(c.obj.get());
}

bool Array::setObject(const Tuple &at, const Object &obj) {
    if (at.size() != sets_.size() || !inRange(at.data()) || isBasicType(elem_) ||
        (obj.type() & QD_BASE_MASK) != elem_)
        return false;
    cells_[at].obj = obj.clone();
    return true;
}

const Array::Cell *Array::find(const Tuple &at) const {
    auto it = cells_.find(at);
    return it == cells_.end() ? nullptr : &it->second;
}

Array::Cell *Array::find(const Tuple &at) {
    auto it = cells_.find(at);
    return it == cells_.end() ? nullptr : &it->second;
}

const std::pair<const Array::Tuple, Array::Cell> *Array::stopAt(const int *at) const {
    if (!walking_ || !std::equal(walk_->first.begin(), walk_->first.end(), at))
        return nullptr;
    return &*walk_;
}

qd_value Array::get(const int *at) const {
    const Cell *c;
    if (auto stop = stopAt(at)) {
        c = &stop->second;
    } else {
        probe_.assign(at, at + sets_.size());
        c = find(probe_);
    }
    if (c)
        return c->obj ? qdPtr(c->obj.get()) : c->value;
    if (emptyRecord_)
        return qdPtr(emptyRecord_.get());
    return opt_.deflt; // externals: a null reference
}

int Array::entryCount() const {
    if (!opt_.dense)
        return (int)cells_.size();
    long long n = 1;
    for (Set *s : sets_)
        n *= s->size();
    return (int)n;
}

bool Array::firstCell(int *at) const {
    for (size_t d = 0; d < sets_.size(); ++d) {
        if (sets_[d]->size() == 0)
            return false;
        at[d] = sets_[d]->firstIndex();
    }
    return true;
}

bool Array::nextCell(int *at) const {
    for (size_t d = sets_.size(); d-- > 0;) {
        if (at[d] < sets_[d]->lastIndex()) {
            ++at[d];
            return true;
        }
        at[d] = sets_[d]->firstIndex(); // wrap and carry
    }
    return false;
}

bool Array::firstEntry(int *at) const {
    if (opt_.dense)
        return firstCell(at);
    walking_ = !cells_.empty();
    if (!walking_)
        return false;
    walk_ = cells_.begin();
    std::copy(walk_->first.begin(), walk_->first.end(), at);
    return true;
}

// The next stored entry after `at` in index order.  Stepping on from the
// entry answered last is one iterator increment; any other tuple is
// searched for.
bool Array::nextEntry(int *at) const {
    if (opt_.dense)
        return nextCell(at);
    std::map<Tuple, Cell>::const_iterator it;
    if (stopAt(at)) {
        it = std::next(walk_);
    } else {
        probe_.assign(at, at + sets_.size());
        it = cells_.upper_bound(probe_);
    }
    walking_ = it != cells_.end();
    if (!walking_)
        return false;
    walk_ = it;
    std::copy(walk_->first.begin(), walk_->first.end(), at);
    return true;
}

std::map<std::vector<std::string>, std::string> Array::entries() const {
    std::map<std::vector<std::string>, std::string> out;
    Tuple at(sets_.size());
    for (bool ok = firstEntry(at.data()); ok; ok = nextEntry(at.data())) {
        std::vector<std::string> key;
        for (size_t d = 0; d < sets_.size(); ++d) {
            qd_value v{};
            sets_[d]->element(at[d], &v);
            key.push_back(valueText(sets_[d]->baseType(), v));
        }
        qd_value v = get(at.data());
        out[key] = isBasicType(elem_) ? valueText(elem_, v)
                   : v.p             ? objectText(static_cast<const Object *>(v.p))
                                     : "";
    }
    return out;
}

// ---- List ------------------------------------------------------------------
std::unique_ptr<Object> List::clone() const {
    auto l = std::make_unique<List>(ctx_, elem_);
    for (const Item &it : items_) {
        Item c{it.type, it.value, nullptr};
        if (it.obj) {
            c.obj = it.obj->clone();
            c.value.p = c.obj.get();
        }
        l->items_.push_back(std::move(c));
    }
    return l;
}

bool List::append(qd_type t, qd_value v) {
    if (t == 0)
        t = elem_;
    if (t == 0)
        return false;
    Item item{t, v, nullptr};
    if (isBasicType(t) && (t & QD_STRUCT_MASK) == QD_VALUE) {
        item.value = stored(ctx_, t, v);
    } else if ((t & QD_STRUCT_MASK) == QD_VALUE || (t & QD_STRUCT_MASK) == QD_REF) {
        if (!v.p || !(recordType(t) || externalType(t)))
            return false;
        item.obj = static_cast<const Object *>(v.p)->clone();
        item.value.p = item.obj.get();
    } else if (!v.p) {
        return false; // arrays, sets, lists: kept by reference
    }
    items_.push_back(std::move(item));
    return true;
}

std::vector<std::string> List::texts() const {
    std::vector<std::string> out;
    for (const Item &it : items_) {
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
