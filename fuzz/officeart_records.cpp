// Reads arbitrary bytes as a drawing group and as a run of drawing records.
// What reads must write back to the same bytes, read again to the same
// pictures, and survive a clone; an added picture must not disturb it.
#include "officeart/drawing_group.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

using namespace tabrix;

namespace {

void drawingGroup(const uint8_t *data, size_t size) {
    MsoDrawingGroup group;
    try {
        group.read(data, size);
    } catch (const tberror &) {
        return;
    }
    std::vector<uint8_t> out = group.write();
    if (out != std::vector<uint8_t>(data, data + size)) std::abort();
    MsoDrawingGroup copy(group);
    for (size_t i = 0; i < group.pictureCount(); ++i) {
        const OfficeArtFBSE &e = group.picture(i);
        (void)e.width();
        if (e.blip() && e.blip()->image() != copy.picture(i).blip()->image()) std::abort();
    }
    const uint8_t png[] = {0x89, 'P', 'N', 'G', 13, 10, 26, 10};
    try {
        size_t before = copy.pictureCount();
        copy.addPicture2(png, sizeof png);
        std::vector<uint8_t> grown = copy.write();
        MsoDrawingGroup again;
        again.read(grown.data(), grown.size());
        if (again.pictureCount() != before + 1) std::abort();
    } catch (const tberror &) {
        // A group whose bytes are not a container takes no pictures.
    }
}

void records(const uint8_t *data, size_t size) {
    std::vector<std::unique_ptr<OfficeArtRecordBase>> list;
    ByteCursor in(data, size);
    try {
        readOfficeArtRecords(in, list, 0);
    } catch (const tberror &) {
        return;
    }
    std::vector<uint8_t> out;
    for (const auto &r : list) r->clone()->write(out);
    if (out != std::vector<uint8_t>(data, data + size - in.left())) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const uint8_t empty = 0;
    if (!data) data = &empty;
    drawingGroup(data, size);
    records(data, size);
    return 0;
}
