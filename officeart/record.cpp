#include "officeart/record.h"

#include "officeart/blip_store.h"
#include "officeart/property_table.h"

namespace tabrix {

namespace {
bool blipInstanceKnown(const OfficeArtBlip &blip) {
    try {
        blip.isOneUid();
        return true;
    } catch (const tberror &) {
        return false;
    }
}

// Deeper nesting than any drawing holds; bounds the recursion on bad input.
const int kMaxDepth = 32;
} // namespace

const char *OfficeArtRecordBase::name() const { return "OfficeArtRecord"; }

std::string OfficeArtRecordBase::error() const { return std::string("error in record ") + name(); }

void OfficeArtRecordBase::write(std::vector<uint8_t> &out) const {
    if (_absent) return;
    OfficeArtRecordHeader h = _header;
    if (_dirty) h.setLen(bodySize());
    h.write(out);
    writeBody(out);
}

std::unique_ptr<OfficeArtRecordBase> readOfficeArtRecord(ByteCursor &in, int depth) {
    OfficeArtRecordHeader h;
    h.read(in, "error in record OfficeArtRecordHeader");
    const OfficeArtRecordCheck *check = findRecordCheck(h.type());
    if (check && !passesCheck(*check, h)) check = nullptr;
    std::unique_ptr<OfficeArtRecordBase> r;
    if (!check) {
        r.reset(new OfficeArtRawRecord());
    } else {
        switch (check->body) {
        case OfficeArtBody::Container:
            if (depth >= kMaxDepth) throw tberror(std::string("error in record ") + check->name);
            r.reset(new OfficeArtContainer(check, depth + 1));
            break;
        case OfficeArtBody::Atom: r.reset(new OfficeArtAtom(check)); break;
        case OfficeArtBody::Properties: r.reset(new OfficeArtFOPT(h.type())); break;
        case OfficeArtBody::Blip: {
            std::unique_ptr<OfficeArtBlip> blip(new OfficeArtBlip(blipKindOfType(h.type())));
            blip->header() = h;
            // A blip of an instance no form knows is carried as it came.
            if (blipInstanceKnown(*blip))
                r = std::move(blip);
            else
                r.reset(new OfficeArtRawRecord());
            break;
        }
        case OfficeArtBody::FBSE: r.reset(new OfficeArtFBSE(depth + 1)); break;
        case OfficeArtBody::BStore: r.reset(new OfficeArtBStoreContainer(depth + 1)); break;
        case OfficeArtBody::FDGG: r.reset(new OfficeArtFDGGBlock()); break;
        }
    }
    r->header() = h;
    ByteCursor body = in.sub(h.len(), r->error());
    r->readBody(body);
    r->setAbsent(false);
    r->setDirty(false);
    return r;
}

void readOfficeArtRecords(ByteCursor &in, std::vector<std::unique_ptr<OfficeArtRecordBase>> &out,
                          int depth) {
    while (in.left() >= OfficeArtRecordHeader::kSize) out.push_back(readOfficeArtRecord(in, depth));
}

// ---- raw records and atoms ----

std::unique_ptr<OfficeArtRecordBase> OfficeArtRawRecord::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtRawRecord(*this));
}

void OfficeArtRawRecord::readBody(ByteCursor &body) { _body = body.bytes(body.left(), error()); }

void OfficeArtRawRecord::writeBody(std::vector<uint8_t> &out) const { putBytes(out, _body); }

std::unique_ptr<OfficeArtRecordBase> OfficeArtAtom::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtAtom(*this));
}

void OfficeArtAtom::readBody(ByteCursor &body) { OfficeArtRawRecord::readBody(body); }

// ---- containers ----

OfficeArtContainer::OfficeArtContainer(const OfficeArtContainer &other)
    : OfficeArtRecordBase(other), _check(other._check), _depth(other._depth), _tail(other._tail) {
    for (const auto &c : other._children) _children.push_back(c->clone());
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtContainer::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtContainer(*this));
}

void OfficeArtContainer::readBody(ByteCursor &body) {
    _children.clear();
    readOfficeArtRecords(body, _children, _depth);
    _tail = body.bytes(body.left(), error());
}

void OfficeArtContainer::writeBody(std::vector<uint8_t> &out) const {
    for (const auto &c : _children) c->write(out);
    putBytes(out, _tail);
}

uint32_t OfficeArtContainer::bodySize() const {
    uint32_t n = uint32_t(_tail.size());
    for (const auto &c : _children) n += c->size();
    return n;
}

} // namespace tabrix
