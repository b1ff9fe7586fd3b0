// The streams an archive works on: a disk file and a memory file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace tabrix {

class CZipAbstractFile {
public:
    virtual ~CZipAbstractFile() = default;
    // Reads up to `n` bytes at the position; answers how many came.
    virtual size_t Read(void *buf, size_t n) = 0;
    virtual void Write(const void *buf, size_t n) = 0;
    virtual void Seek(uint64_t pos) = 0;
    virtual void SetLength(uint64_t n) = 0;
    virtual uint64_t GetLength() const = 0;
    virtual uint64_t GetPosition() const = 0;
    virtual void Flush() {}
    virtual void Close() = 0;
    virtual bool IsClosed() const = 0;
    virtual bool HasFilePath() const { return false; }
    virtual std::string GetFilePath() const { return std::string(); }
};

// A disk file; failures throw CZipException with the errno and the path.
class CZipFile : public CZipAbstractFile {
public:
    CZipFile() = default;
    ~CZipFile() override;
    CZipFile(const CZipFile &) = delete;
    CZipFile &operator=(const CZipFile &) = delete;
    // `create` truncates or makes the file for writing, else read-only.
    void Open(const std::string &path, bool create);
    size_t Read(void *buf, size_t n) override;
    void Write(const void *buf, size_t n) override;
    void Seek(uint64_t pos) override;
    void SetLength(uint64_t n) override;
    uint64_t GetLength() const override;
    uint64_t GetPosition() const override;
    void Flush() override;
    void Close() override;
    bool IsClosed() const override { return _file == nullptr; }
    bool HasFilePath() const override { return true; }
    std::string GetFilePath() const override { return _path; }

private:
    [[noreturn]] void fail() const;
    FILE *_file = nullptr;
    std::string _path;
};

// A growing malloc'd buffer that either owns its bytes or is attached to
// the caller's; an attached, non-growing buffer refuses to grow (code 505).
class CZipMemFile : public CZipAbstractFile {
public:
    CZipMemFile() = default;
    // Attaches to the caller's bytes for reading; never freed, never grown.
    CZipMemFile(const void *bytes, size_t size);
    ~CZipMemFile() override;
    CZipMemFile(const CZipMemFile &) = delete;
    CZipMemFile &operator=(const CZipMemFile &) = delete;

    size_t Read(void *buf, size_t n) override;
    void Write(const void *buf, size_t n) override;
    void Seek(uint64_t pos) override { _pos = pos; }
    void SetLength(uint64_t n) override;
    // SetLength without filling the new bytes, for a caller that writes
    // them all straight away.
    void SetLengthUnfilled(uint64_t n) { resize(n, false); }
    uint64_t GetLength() const override { return _size; }
    uint64_t GetPosition() const override { return _pos; }
    void Close() override {}
    bool IsClosed() const override { return false; }

    const unsigned char *data() const { return _data; }
    unsigned char *data() { return _data; }
    // Hands the owned buffer over (the caller frees it with free) and empties the file.
    unsigned char *Detach(size_t &size);

private:
    void Grow(uint64_t need);
    void resize(uint64_t n, bool zeroed);
    unsigned char *_data = nullptr;
    size_t _size = 0;
    size_t _capacity = 0;
    uint64_t _pos = 0;
    bool _owner = true;
};

} // namespace tabrix
