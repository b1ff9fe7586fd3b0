#include "officeart/drawing_clusters.h"

#include <algorithm>

namespace tabrix {

namespace {

const uint32_t kClusterSize = 1024;

void syncCount(OfficeArtFDGGBlock &block) {
    block.cidcl = uint32_t(block._clusters.size() + 1);
    block.setDirty();
}

} // namespace

uint32_t startDrawing(OfficeArtFDGGBlock &block, const std::vector<uint32_t> &used,
                      uint32_t &lastId) {
    auto owned = [&](uint32_t dgid) {
        return std::find(used.begin(), used.end(), dgid) != used.end();
    };
    for (size_t i = 0; i < block._clusters.size(); ++i) {
        OfficeArtFDGGBlock::Cluster &c = block._clusters[i];
        if (c.dgid == 0 || owned(c.dgid)) continue;
        // A cluster counted for a drawing no sheet has: its shapes go.
        block.cspSaved -= std::min(block.cspSaved, c.cspidCur);
        c.cspidCur = 0;
        lastId = uint32_t(i + 1) * kClusterSize - 1;
        block.setDirty();
        return c.dgid;
    }
    uint32_t dgid = 0;
    for (uint32_t d : used) dgid = std::max(dgid, d);
    for (const auto &c : block._clusters) dgid = std::max(dgid, c.dgid);
    ++dgid;
    block._clusters.push_back({dgid, 0});
    syncCount(block);
    ++block.cdgSaved;
    lastId = uint32_t(block._clusters.size()) * kClusterSize - 1;
    return dgid;
}

uint32_t claimShapeId(OfficeArtFDGGBlock &block, uint32_t dgid, uint32_t lastId) {
    uint32_t id = lastId + 1;
    size_t index = id / kClusterSize;
    bool fits = id % kClusterSize != 0 && index >= 1 && index <= block._clusters.size() &&
                block._clusters[index - 1].dgid == dgid;
    if (!fits) {
        block._clusters.push_back({dgid, 0});
        syncCount(block);
        index = block._clusters.size();
        id = uint32_t(index) * kClusterSize;
    }
    OfficeArtFDGGBlock::Cluster &c = block._clusters[index - 1];
    c.cspidCur = std::max(c.cspidCur, id - uint32_t(index) * kClusterSize + 1);
    block.spidMax = std::max(block.spidMax, id + 1);
    ++block.cspSaved;
    block.setDirty();
    return id;
}

} // namespace tabrix
