// Package parts: the abstract part and the opaque one kept as bytes.
#pragma once

#include <string>
#include <vector>

namespace tabrix {

class XFile {
public:
    virtual ~XFile() = default;
    // The part's bytes; an empty result leaves the part out of the archive.
    virtual void save(std::string &out) = 0;
};

class BinaryFile : public XFile {
public:
    BinaryFile(const char *bytes, size_t size) : _data(bytes, bytes + size) {}
    void save(std::string &out) override { out.assign(_data.begin(), _data.end()); }
    const std::vector<char> &data() const { return _data; }

private:
    std::vector<char> _data;
};

} // namespace tabrix
