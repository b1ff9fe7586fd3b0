// Xls: construction, reset, check point and diagnostics.
#include "biff/xls.h"

#include "book/memory_stream.h"
#include "book/tberror.h"

#include <sstream>

namespace tabrix {

XlsCore::XlsCore() { reset(true); }

void XlsCore::setStreamPtr(std::iostream *s) {
    _stream = s;
    _toMemory = false;
    _cached = kNoSector;
    const MemoryBuf *memory = s ? dynamic_cast<const MemoryBuf *>(s->rdbuf()) : nullptr;
    _memory = memory ? reinterpret_cast<const uint8_t *>(memory->bytes()) : nullptr;
}

void XlsCore::reset(bool fresh) {
    _written = 0;
    _outSize = 0;
    _out.release();
    _toMemory = false;
    _cached = kNoSector;
    _header.reset();
    _sectorSize = 1u << (_header.sectorShift % 32);
    _miniSectorSize = 1u << (_header.miniSectorShift % 32);
    _difat.assign(_header.difat, _header.difat + kHeaderDifatCount);
    if (fresh) {
        _dir.clear();
        _dir.emplace_back(L"Root Entry", DirEntry::Root, 1);
        _dir.emplace_back(L"Workbook", DirEntry::Stream, kSectorFree);
        _kept.clear();
        _miniFat.clear();
        _fat.clear();
        _workbook = 1;
        _keepCutoff = 4096;
    } else {
        setWorkbookEntry();
    }
    _rootChain.clear();
    _rootChainBuilt = false;
    _stream = nullptr;
    _eof = false;
}

void XlsCore::flush() {
    if (_stream) _stream->flush();
}

void XlsCore::calcFileSize() {
    _stream->clear();
    _stream->seekg(0, std::ios::end);
    std::streamoff end = _stream->tellg();
    _fileSize = end < 0 ? 0 : uint32_t(end);
    _stream->seekg(0, std::ios::beg);
}

uint32_t XlsCore::size() const {
    return _workbook < _dir.size() ? uint32_t(_dir[_workbook].streamSize) : 0;
}

void XlsCore::setCheckPoint(uint16_t tag) {
    _check.readPos = _stream ? std::streamoff(_stream->tellg()) : std::streamoff(0);
    _check.writePos = std::streamoff(_outSize);
    _check.sector = _curSector;
    _check.offset = _sectorOffset;
    _check.readTotal = _readTotal;
    _check.hops = _hops;
    _check.eof = _eof;
    _check.tag = tag;
}

uint16_t XlsCore::restoreCheckPoint() {
    _stream->clear();
    _stream->seekg(_check.readPos);
    _curSector = _check.sector;
    _sectorOffset = _check.offset;
    _readTotal = _check.readTotal;
    _hops = _check.hops;
    _eof = _check.eof;
    return _check.tag;
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
    os << _header.dump() << "[Difat]\n";
    for (size_t i = 0; i < _difat.size(); ++i)
        if (_difat[i] != kSectorFree) os << i << ": " << _difat[i] << "\n";
    os << "[Fat]\n";
    for (size_t i = 0; i < _fat.size(); ++i)
        if (_fat[i] != kSectorFree) os << i << ": " << _fat[i] << "\n";
    os << "[Dir]\n";
    for (const DirEntry &e : _dir) os << e.dump();
    return os.str();
}

} // namespace tabrix
