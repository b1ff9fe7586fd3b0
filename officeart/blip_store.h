// The book's picture store: a container of store entries, each holding its
// picture's blip; pictures are numbered from 0 in the order of the entries.
#ifndef TABRIX_OFFICEART_BLIP_STORE_H
#define TABRIX_OFFICEART_BLIP_STORE_H

#include "officeart/fbse.h"

namespace tabrix {

class OfficeArtBStoreContainer : public OfficeArtRecordBase {
public:
    explicit OfficeArtBStoreContainer(int depth = 0);
    OfficeArtBStoreContainer(const OfficeArtBStoreContainer &other);

    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override;
    uint32_t bodySize() const override;
    const char *name() const override { return "OfficeArtBStoreContainer"; }

    // Sniffs, prepares and appends the bytes; returns calcId().
    int addPicture2(const uint8_t *data, size_t size);
    // Bytes already read from a file whose name gave the kind.
    int addPicture(BlipKind kind, std::vector<uint8_t> bytes);
    // The number of entries minus 1, -1 for an empty store.
    int calcId() const { return int(_entries.size()) - 1; }
    size_t pictureCount() const { return _entries.size(); }
    // Throws "index is out of range".
    const OfficeArtFBSE &entry(size_t index) const;
    OfficeArtFBSE &entry(size_t index);

private:
    int _depth;
    // All records in order; _entries points at the store entries among them.
    std::vector<std::unique_ptr<OfficeArtRecordBase>> _records;
    std::vector<OfficeArtFBSE *> _entries;
    std::vector<uint8_t> _tail;

    void index();
};

// Cluster bookkeeping of the drawing group: the largest shape id, the
// clusters with their drawing and shape counts.
class OfficeArtFDGGBlock : public OfficeArtRecordBase {
public:
    struct Cluster {
        uint32_t dgid, cspidCur;
    };

    // A new block: spidMax 1027, two clusters, three shapes, one drawing.
    OfficeArtFDGGBlock();
    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override;
    uint32_t bodySize() const override {
        return uint32_t(16 + 8 * _clusters.size() + _tail.size());
    }
    const char *name() const override { return "OfficeArtFDGGBlock"; }

    uint32_t spidMax = 1027, cidcl = 2, cspSaved = 3, cdgSaved = 1;
    std::vector<Cluster> _clusters;

private:
    std::vector<uint8_t> _tail;
};

} // namespace tabrix

#endif
