// Shape ids of the sheet drawings, kept in step with the drawing group's
// cluster block: ids come in clusters of 1024, cluster i (from 0) holding
// the ids from (i + 1) * 1024 on and belonging to one drawing.  Every shape
// gets an id of its own, and the block's largest id, its cluster counts and
// its saved shape and drawing counts follow each new shape.
#ifndef TABRIX_OFFICEART_DRAWING_CLUSTERS_H
#define TABRIX_OFFICEART_DRAWING_CLUSTERS_H

#include "officeart/blip_store.h"

#include <cstdint>
#include <vector>

namespace tabrix {

// The id of a drawing new to the book.  `used` are the drawing ids the
// book's sheets already have; a cluster that none of them owns (the
// placeholder of a new block) is taken over, otherwise a new id is chosen.
// Answers the drawing id; `lastId` gets the id before the drawing's first.
uint32_t startDrawing(OfficeArtFDGGBlock &block, const std::vector<uint32_t> &used,
                      uint32_t &lastId);

// The next shape id of drawing `dgid` whose last id is `lastId`; opens a new
// cluster when the current one is full or belongs to another drawing.
uint32_t claimShapeId(OfficeArtFDGGBlock &block, uint32_t dgid, uint32_t lastId);

} // namespace tabrix

#endif
