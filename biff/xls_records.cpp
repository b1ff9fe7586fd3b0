// Record-level reading and writing of the workbook stream: headers, plain
// little-endian values, and values that may be split across CONTINUE records.
#include "biff/xls.h"
#include "biff/record_ids.h"
#include "book/tberror.h"

#include <cstring>
#include <string>

namespace tabrix {

void XlsRecords::enterContinue(unsigned short &remaining, const char *who) {
    for (;;) {
        uint16_t id = 0, size = 0;
        XlsCore::readInt16(id);
        XlsCore::readInt16(size);
        if (id != rid::Continue || eof())
            throw tberror(std::string(who) + ": CONTINUE record not found");
        if (size != 0) {
            remaining = size;
            return;
        }
    }
}

void XlsRecords::readByte(uint8_t &b, unsigned short &remaining, const char *who) {
    if (remaining == 0) enterContinue(remaining, who);
    b = 0;
    read(&b, 1);
    --remaining;
}

void XlsRecords::readInt16(uint16_t &value, unsigned short &remaining) {
    uint8_t b[2];
    for (uint8_t &c : b) readByte(c, remaining, "readInt16");
    value = uint16_t(b[0] | (b[1] << 8));
}

void XlsRecords::readInt32(uint32_t &value, unsigned short &remaining) {
    uint8_t b[4];
    for (uint8_t &c : b) readByte(c, remaining, "readInt32");
    value =
        uint32_t(b[0]) | (uint32_t(b[1]) << 8) | (uint32_t(b[2]) << 16) | (uint32_t(b[3]) << 24);
}

int XlsRecords::readWithContinueRecords(void *buffer, int length, unsigned short &remaining) {
    if (length <= 0) return 0;
    uint8_t *out = static_cast<uint8_t *>(buffer);
    int done = 0;
    while (done < length) {
        if (remaining == 0) enterContinue(remaining, "readWithContinueRecords");
        int chunk = std::min<int>(length - done, remaining);
        size_t got = read(out + done, size_t(chunk));
        if (got < size_t(chunk)) std::memset(out + done + got, 0, size_t(chunk) - got);
        remaining = static_cast<unsigned short>(remaining - chunk);
        done += chunk;
        if (eof()) break;
    }
    return length;
}

void XlsRecords::checkContinue(unsigned short &remaining) {
    if (remaining != 0 || eof() || peekInt16() != rid::Continue) return;
    uint16_t id = 0;
    XlsCore::readInt16(id);
    XlsCore::readInt16(remaining);
}

void XlsRecords::writeDouble(double value) {
    uint64_t bits;
    std::memcpy(&bits, &value, 8);
    writeInt32(uint32_t(bits));
    writeInt32(uint32_t(bits >> 32));
}

void XlsRecords::writeInt16(uint16_t value, unsigned short &remaining) {
    for (int i = 0; i < 2; ++i) {
        if (remaining == 0) writeContinue(*this, remaining);
        uint8_t b = uint8_t(value >> (8 * i));
        write(&b, 1);
        --remaining;
    }
}

void XlsRecords::writeInt32(uint32_t value, unsigned short &remaining) {
    for (int i = 0; i < 4; ++i) {
        if (remaining == 0) writeContinue(*this, remaining);
        uint8_t b = uint8_t(value >> (8 * i));
        write(&b, 1);
        --remaining;
    }
}

void XlsRecords::write(uint16_t id, uint16_t size) {
    writeInt16(id);
    writeInt16(size);
}

void XlsRecords::write(uint16_t id, const void *buffer, uint16_t size) {
    write(id, size);
    if (size > 0) write(buffer, size_t(size));
}

void XlsRecords::patchInt16(uint32_t pos, uint16_t value) {
    uint8_t *p = patchPlace(pos, 2);
    p[0] = uint8_t(value);
    p[1] = uint8_t(value >> 8);
}

} // namespace tabrix
