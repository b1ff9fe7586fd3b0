#include "officeart/drawing_group.h"

namespace tabrix {

const uint16_t MsoDrawingGroup::kSlotTypes[kSlots] = {0xF006, 0xF001, 0xF00B,
                                                      0xF122, 0xF11A, 0xF11E};

namespace {

const char *const kContainerError = "error in record OfficeArtDggContainer";

uint16_t peekType(const ByteCursor &in) {
    return in.left() >= 8 ? uint16_t(in.here()[2] | (in.here()[3] << 8)) : 0;
}

} // namespace

MsoDrawingGroup::MsoDrawingGroup() { clear(); }

MsoDrawingGroup::MsoDrawingGroup(const MsoDrawingGroup &other) { *this = other; }

MsoDrawingGroup &MsoDrawingGroup::operator=(const MsoDrawingGroup &other) {
    if (this == &other) return *this;
    _present = other._present;
    _dirty = other._dirty;
    _container = other._container;
    _header = other._header;
    for (int i = 0; i < kSlots; ++i)
        _slots[i] = other._slots[i] ? other._slots[i]->clone() : nullptr;
    _rest = other._rest;
    _after = other._after;
    return *this;
}

void MsoDrawingGroup::clear() {
    _present = _dirty = _container = false;
    _header = OfficeArtRecordHeader(15, 0, 0xF000, 0);
    for (auto &s : _slots) s.reset();
    _rest.clear();
    _after.clear();
}

void MsoDrawingGroup::read(const uint8_t *data, size_t size) {
    clear();
    _present = true;
    ByteCursor in(data, size);
    if (size >= 8) {
        _header.read(in, kContainerError);
        const OfficeArtRecordCheck *check = findRecordCheck(0xF000);
        _container = passesCheck(*check, _header);
    }
    if (!_container) {
        _header = OfficeArtRecordHeader(15, 0, 0xF000, 0);
        _after.assign(data, data + size);
        return;
    }
    ByteCursor body = in.sub(_header.len(), kContainerError);
    for (int i = 0; i < kSlots; ++i)
        if (peekType(body) == kSlotTypes[i]) _slots[i] = readOfficeArtRecord(body, 1);
    _rest = body.bytes(body.left(), kContainerError);
    _after = in.bytes(in.left(), kContainerError);
}

std::vector<uint8_t> MsoDrawingGroup::write() const {
    std::vector<uint8_t> out;
    if (_container) {
        uint32_t len = uint32_t(_rest.size());
        for (const auto &s : _slots)
            if (s) len += s->size();
        OfficeArtRecordHeader h = _header;
        if (_dirty) h.setLen(len);
        h.write(out);
        for (const auto &s : _slots)
            if (s) s->write(out);
        putBytes(out, _rest);
    }
    putBytes(out, _after);
    return out;
}

OfficeArtBStoreContainer *MsoDrawingGroup::store() const {
    return dynamic_cast<OfficeArtBStoreContainer *>(_slots[BStore].get());
}

OfficeArtFDGGBlock *MsoDrawingGroup::block() const {
    return dynamic_cast<OfficeArtFDGGBlock *>(_slots[FDGG].get());
}

// A group that holds no container yet gets one, with a cluster block, a
// store and the split menu colours; a loaded group keeps what it has.
void MsoDrawingGroup::preparePictures() {
    if (!_container) {
        if (!_after.empty()) throw tberror("error in record MsoDrawingGroup");
        _container = true;
    }
    if (!block()) _slots[FDGG].reset(new OfficeArtFDGGBlock());
    if (!store()) _slots[BStore].reset(new OfficeArtBStoreContainer(1));
    if (!_slots[SplitMenu]) {
        std::unique_ptr<OfficeArtAtom> colours(new OfficeArtAtom(findRecordCheck(0xF11E)));
        colours->header() = OfficeArtRecordHeader(0, 4, 0xF11E, 16);
        std::vector<uint8_t> body;
        for (uint32_t c : {0x0800000Du, 0x0800000Cu, 0x08000017u, 0x100000F7u}) putU32(body, c);
        colours->setBody(std::move(body));
        _slots[SplitMenu] = std::move(colours);
    }
    _present = true;
    _dirty = true;
}

int MsoDrawingGroup::addPicture2(const uint8_t *data, size_t size) {
    sniffPicture(data, size); // refuse before anything changes
    preparePictures();
    return store()->addPicture2(data, size);
}

int MsoDrawingGroup::addPicture(BlipKind kind, std::vector<uint8_t> bytes) {
    if (kind == BlipKind::JPEG) {
        std::vector<uint8_t> probe(bytes);
        pictureSizeOf(kind, probe); // "invalid jpg file" before anything changes
    }
    preparePictures();
    return store()->addPicture(kind, std::move(bytes));
}

size_t MsoDrawingGroup::pictureCount() const { return store() ? store()->pictureCount() : 0; }

const OfficeArtFBSE &MsoDrawingGroup::picture(size_t index) const {
    if (!store()) throw tberror("index is out of range");
    return store()->entry(index);
}

void MsoDrawingGroup::addPicRef(int id) {
    if (id < 1 || size_t(id) > pictureCount()) throw tberror("pictureId is out of range");
    store()->entry(size_t(id - 1)).addRef();
    store()->setDirty();
    _dirty = true;
}

OfficeArtFDGGBlock &MsoDrawingGroup::clusters() {
    preparePictures();
    return *block();
}

void MsoDrawingGroup::initDefaults() {
    if (block()) return;
    preparePictures();
    std::unique_ptr<OfficeArtFOPT> props(new OfficeArtFOPT(0xF00B));
    props->addProperty({OfficeArtFOPTEOPID(191, false, false), 0x08000041});
    props->addProperty({OfficeArtFOPTEOPID(385, false, false), 0x08000041});
    props->addProperty({OfficeArtFOPTEOPID(448, false, false), 0x08000040});
    _slots[DefaultProps] = std::move(props);
}

} // namespace tabrix
