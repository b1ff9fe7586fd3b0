#include "officeart/blip_store.h"

namespace tabrix {

OfficeArtBStoreContainer::OfficeArtBStoreContainer(int depth) : _depth(depth) {
    _header = OfficeArtRecordHeader(15, 0, 0xF001, 0);
}

OfficeArtBStoreContainer::OfficeArtBStoreContainer(const OfficeArtBStoreContainer &other)
    : OfficeArtRecordBase(other), _depth(other._depth), _tail(other._tail) {
    for (const auto &r : other._records) _records.push_back(r->clone());
    index();
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtBStoreContainer::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtBStoreContainer(*this));
}

void OfficeArtBStoreContainer::index() {
    _entries.clear();
    for (const auto &r : _records)
        if (auto *e = dynamic_cast<OfficeArtFBSE *>(r.get())) _entries.push_back(e);
}

void OfficeArtBStoreContainer::readBody(ByteCursor &body) {
    _records.clear();
    readOfficeArtRecords(body, _records, _depth);
    _tail = body.bytes(body.left(), error());
    index();
}

void OfficeArtBStoreContainer::writeBody(std::vector<uint8_t> &out) const {
    for (const auto &r : _records) r->write(out);
    putBytes(out, _tail);
}

uint32_t OfficeArtBStoreContainer::bodySize() const {
    uint32_t n = uint32_t(_tail.size());
    for (const auto &r : _records) n += r->size();
    return n;
}

int OfficeArtBStoreContainer::addPicture2(const uint8_t *data, size_t size) {
    BlipKind kind = sniffPicture(data, size);
    return addPicture(kind, std::vector<uint8_t>(data, data + size));
}

int OfficeArtBStoreContainer::addPicture(BlipKind kind, std::vector<uint8_t> bytes) {
    preparePictureBytes(bytes);
    std::unique_ptr<OfficeArtBlip> blip(new OfficeArtBlip(kind, std::move(bytes)));
    std::unique_ptr<OfficeArtFBSE> entry(new OfficeArtFBSE(std::move(blip)));
    _entries.push_back(entry.get());
    _records.push_back(std::move(entry));
    _header.setInstance(uint16_t(_entries.size()));
    _absent = false;
    _dirty = true;
    return calcId();
}

const OfficeArtFBSE &OfficeArtBStoreContainer::entry(size_t index) const {
    if (index >= _entries.size()) throw tberror("index is out of range");
    return *_entries[index];
}

OfficeArtFBSE &OfficeArtBStoreContainer::entry(size_t index) {
    if (index >= _entries.size()) throw tberror("index is out of range");
    return *_entries[index];
}

// ---- the cluster block ----

OfficeArtFDGGBlock::OfficeArtFDGGBlock() {
    _header = OfficeArtRecordHeader(0, 0, 0xF006, 0);
    _clusters.push_back({1, 3});
}

std::unique_ptr<OfficeArtRecordBase> OfficeArtFDGGBlock::clone() const {
    return std::unique_ptr<OfficeArtRecordBase>(new OfficeArtFDGGBlock(*this));
}

void OfficeArtFDGGBlock::readBody(ByteCursor &body) {
    const std::string e = error();
    spidMax = body.u32(e);
    cidcl = body.u32(e);
    cspSaved = body.u32(e);
    cdgSaved = body.u32(e);
    size_t pairs = cidcl ? cidcl - 1 : 0;
    if (pairs > body.left() / 8) throw tberror(e);
    _clusters.assign(pairs, Cluster());
    for (Cluster &c : _clusters) {
        c.dgid = body.u32(e);
        c.cspidCur = body.u32(e);
    }
    _tail = body.bytes(body.left(), e);
}

void OfficeArtFDGGBlock::writeBody(std::vector<uint8_t> &out) const {
    for (uint32_t v : {spidMax, cidcl, cspSaved, cdgSaved}) putU32(out, v);
    for (const Cluster &c : _clusters) {
        putU32(out, c.dgid);
        putU32(out, c.cspidCur);
    }
    putBytes(out, _tail);
}

} // namespace tabrix
