// The book's drawing group: the OfficeArtDggContainer carried by the
// MsoDrawingGroup record, with its children in a fixed order (cluster
// block, picture store, default properties, tertiary properties, recent
// colours, split menu colours) and whatever follows them kept as bytes.
// It works on the record's bytes reassembled from their continuations.
#ifndef TABRIX_OFFICEART_DRAWING_GROUP_H
#define TABRIX_OFFICEART_DRAWING_GROUP_H

#include "officeart/blip_store.h"
#include "officeart/property_table.h"

#include <memory>
#include <vector>

namespace tabrix {

class MsoDrawingGroup {
public:
    MsoDrawingGroup();
    MsoDrawingGroup(const MsoDrawingGroup &other);
    MsoDrawingGroup &operator=(const MsoDrawingGroup &other);

    void clear();
    // Bytes that don't begin with a drawing group container are kept as
    // they came; a container that overruns them fails with "error in
    // record OfficeArtDggContainer".
    void read(const uint8_t *data, size_t size);
    std::vector<uint8_t> write() const;
    bool present() const { return _present; }
    // True once something was changed since the read.
    bool dirty() const { return _dirty; }

    // The picture operations of the book; each makes the group present.
    int addPicture2(const uint8_t *data, size_t size);
    int addPicture(BlipKind kind, std::vector<uint8_t> bytes);
    size_t pictureCount() const;
    const OfficeArtFBSE &picture(size_t index) const;
    // One-based; throws "pictureId is out of range".
    void addPicRef(int id);
    // The cluster block, made if missing; the group counts as changed.
    OfficeArtFDGGBlock &clusters();
    // The default shape properties a book with comments needs.
    void initDefaults();

private:
    enum Slot { FDGG, BStore, DefaultProps, TertiaryProps, ColorMRU, SplitMenu, kSlots };
    static const uint16_t kSlotTypes[kSlots];

    void preparePictures();
    OfficeArtBStoreContainer *store() const;
    OfficeArtFDGGBlock *block() const;

    bool _present = false;
    bool _dirty = false;
    bool _container = false; // the bytes began with a container
    OfficeArtRecordHeader _header;
    std::unique_ptr<OfficeArtRecordBase> _slots[kSlots];
    std::vector<uint8_t> _rest;  // container bytes after the known children
    std::vector<uint8_t> _after; // record bytes after the container
};

} // namespace tabrix

#endif
