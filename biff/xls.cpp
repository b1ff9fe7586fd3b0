// Xls: construction, reset, check point and diagnostics.
#include "biff/xls.h"

#include "book/memory_stream.h"
#include "book/tberror.h"

#include <sstream>

namespace tabrix {

XlsCore::XlsCore() { reset(true); }

void XlsCore::setStreamPtr(std::iostream *s) {
    stream_ = s;
    toMemory_ = false;
    cached_ = kNoSector;
    const MemoryBuf *memory = s ? dynamic_cast<const MemoryBuf *>(s->rdbuf()) : nullptr;
    memory_ = memory ? reinterpret_cast<const uint8_t *>(memory->bytes()) : nullptr;
}

void XlsCore::reset(bool fresh) {
    written_ = 0;
    outSize_ = 0;
    out_.release();
    toMemory_ = false;
    cached_ = kNoSector;
    header_.reset();
    sectorSize_ = 1u << (header_.sectorShift % 32);
    miniSectorSize_ = 1u << (header_.miniSectorShift % 32);
    difat_.assign(header_.difat, header_.difat + kHeaderDifatCount);
    if (fresh) {
        dir_.clear();
        dir_.emplace_back(L"Root Entry", DirEntry::Root, 1);
        dir_.emplace_back(L"Workbook", DirEntry::Stream, kSectorFree);
        kept_.clear();
        miniFat_.clear();
        fat_.clear();
        workbook_ = 1;
        keepCutoff_ = 4096;
    } else {
        setWorkbookEntry();
    }
    rootChain_.clear();
    rootChainBuilt_ = false;
    stream_ = nullptr;
    eof_ = false;
}

void XlsCore::flush() {
    if (stream_) stream_->flush();
}

void XlsCore::calcFileSize() {
    stream_->clear();
    stream_->seekg(0, std::ios::end);
    std::streamoff end = stream_->tellg();
    fileSize_ = end < 0 ? 0 : uint32_t(end);
    stream_->seekg(0, std::ios::beg);
}

uint32_t XlsCore::size() const {
    return workbook_ < dir_.size() ? uint32_t(dir_[workbook_].streamSize) : 0;
}

void XlsCore::setCheckPoint(uint16_t tag) {
    check_.readPos = stream_ ? std::streamoff(stream_->tellg()) : std::streamoff(0);
    check_.writePos = std::streamoff(outSize_);
    check_.sector = curSector_;
    check_.offset = sectorOffset_;
    check_.readTotal = readTotal_;
    check_.hops = hops_;
    check_.eof = eof_;
    check_.tag = tag;
}

uint16_t XlsCore::restoreCheckPoint() {
    stream_->clear();
    stream_->seekg(check_.readPos);
    curSector_ = check_.sector;
    sectorOffset_ = check_.offset;
    readTotal_ = check_.readTotal;
    hops_ = check_.hops;
    eof_ = check_.eof;
    return check_.tag;
}

uint16_t XlsCore::peekInt16() {
    setCheckPoint(0);
    uint16_t v = 0;
    readInt16(v);
    restoreCheckPoint();
    return v;
}

std::string XlsCore::dump() const {
    std::ostringstream os;
    os << header_.dump() << "[Difat]\n";
    for (size_t i = 0; i < difat_.size(); ++i)
        if (difat_[i] != kSectorFree) os << i << ": " << difat_[i] << "\n";
    os << "[Fat]\n";
    for (size_t i = 0; i < fat_.size(); ++i)
        if (fat_[i] != kSectorFree) os << i << ": " << fat_[i] << "\n";
    os << "[Dir]\n";
    for (const DirEntry &e : dir_) os << e.dump();
    return os.str();
}

} // namespace tabrix
