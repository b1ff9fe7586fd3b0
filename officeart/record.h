// The drawing record classes kept as objects: the abstract base with its
// absent and dirty flags, containers with child records, atoms whose body
// is kept as bytes, and the raw record for a header that no class models or
// that fails its class's check, kept and written back as it came.
#ifndef TABRIX_OFFICEART_RECORD_H
#define TABRIX_OFFICEART_RECORD_H

#include "officeart/record_checks.h"
#include "officeart/record_header.h"

#include <memory>
#include <string>
#include <vector>

namespace tabrix {

class OfficeArtRecordBase {
public:
    virtual ~OfficeArtRecordBase() = default;
    virtual std::unique_ptr<OfficeArtRecordBase> clone() const = 0;
    // Reads the body of _header.len bytes; the header is already read.
    virtual void readBody(ByteCursor &body) = 0;
    virtual void writeBody(std::vector<uint8_t> &out) const = 0;
    // The body's size as it would be written now.
    virtual uint32_t bodySize() const = 0;
    virtual int width() const { return 0; }
    virtual int height() const { return 0; }

    // Header and body; nothing when absent.  A dirty record's length is
    // worked out again, a loaded one keeps its stored length.
    void write(std::vector<uint8_t> &out) const;
    uint32_t size() const {
        return _absent ? 0 : uint32_t(OfficeArtRecordHeader::kSize) + bodySize();
    }

    const OfficeArtRecordHeader &header() const { return _header; }
    OfficeArtRecordHeader &header() { return _header; }
    bool absent() const { return _absent; }
    void setAbsent(bool absent) { _absent = absent; }
    bool dirty() const { return _dirty; }
    void setDirty(bool dirty = true) { _dirty = dirty; }
    // "error in record <name>" for this record's class.
    std::string error() const;
    virtual const char *name() const;

protected:
    OfficeArtRecordHeader _header;
    bool _absent = false;
    bool _dirty = true;
};

// Reads one record at the cursor: header, then the body by its class.
// depth bounds the nesting of containers.
std::unique_ptr<OfficeArtRecordBase> readOfficeArtRecord(ByteCursor &in, int depth = 0);

// Reads records until fewer than a header's bytes are left; the rest stays.
void readOfficeArtRecords(ByteCursor &in, std::vector<std::unique_ptr<OfficeArtRecordBase>> &out,
                          int depth);

class OfficeArtRawRecord : public OfficeArtRecordBase {
public:
    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override;
    uint32_t bodySize() const override { return uint32_t(_body.size()); }
    const std::vector<uint8_t> &body() const { return _body; }

protected:
    std::vector<uint8_t> _body;
};

// A known atom: the same bytes, but its class passed the check.
class OfficeArtAtom : public OfficeArtRawRecord {
public:
    explicit OfficeArtAtom(const OfficeArtRecordCheck *check = nullptr) : _check(check) {}
    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    const char *name() const override { return _check ? _check->name : "OfficeArtRecord"; }
    void setBody(std::vector<uint8_t> body) {
        _body = std::move(body);
        _dirty = true;
    }

private:
    const OfficeArtRecordCheck *_check;
};

class OfficeArtContainer : public OfficeArtRecordBase {
public:
    explicit OfficeArtContainer(const OfficeArtRecordCheck *check = nullptr, int depth = 0)
        : _check(check), _depth(depth) {}
    OfficeArtContainer(const OfficeArtContainer &other);
    std::unique_ptr<OfficeArtRecordBase> clone() const override;
    void readBody(ByteCursor &body) override;
    void writeBody(std::vector<uint8_t> &out) const override;
    uint32_t bodySize() const override;
    const char *name() const override { return _check ? _check->name : "OfficeArtRecord"; }

    std::vector<std::unique_ptr<OfficeArtRecordBase>> &children() { return _children; }
    const std::vector<std::unique_ptr<OfficeArtRecordBase>> &children() const { return _children; }

private:
    const OfficeArtRecordCheck *_check;
    int _depth;
    std::vector<std::unique_ptr<OfficeArtRecordBase>> _children;
    std::vector<uint8_t> _tail; // fewer bytes than a header, kept as they came
};

} // namespace tabrix

#endif
