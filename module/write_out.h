// Helpers of the writing side of a transfer (transferOut): one cell, one
// record, and the array and list-of-arrays writers.
#ifndef QDSHEET_WRITE_OUT_H
#define QDSHEET_WRITE_OUT_H

#include "sheetfile.h"

// Index tuples live on the stack up to this many dimensions; arrays with
// more are refused as a wrong data type.
#define WRITE_MAX_DIMS 64

// Writes `value`, of leaf type `leafType`, into the cell (firstRow +
// rowOffset, firstCol + colOffset).  External objects go through the host's
// toText into the file's buffer; a null object leaves the cell alone.
// Answers 0, or 1 on failure (after "SHEET: Buffer overflow.\n" for a text
// that does not fit the buffer).
int writeCell(qd_context *ctx, RangeSpec *spec, qd_type leafType, int rowOffset, int colOffset,
              const qd_value *value);

// Writes the fields of `record` (record type `type`, described by
// `description`, NULL to ask the host) into the columns of the map from
// *position on; *position advances by one for every leaf.  On failure
// answers 1 with *position at the failing leaf.
int writeRecord(qd_context *ctx, RangeSpec *spec, int rowOffset, int *position, void *record,
                qd_type type, const int *description);

// Writes one element of base type `type` at map position *position of a
// row: a leaf into one column, a record (`record` true, the record in
// value->p) across its leaves.  *position advances past it; on failure it is
// left at the failing column and 1 is answered.
int writeElement(qd_context *ctx, RangeSpec *spec, qd_type type, bool record, int rowOffset,
                 int *position, const qd_value *value);

// Number of rows of the range (0 when it has none).
int rangeRows(const RangeSpec *spec);
// With `grow` set, makes the range at least `needed` rows tall.  Answers the
// number of rows that may be written.
int growRows(RangeSpec *spec, long long needed);

// An array in the layout chosen by the range's options.
int writeArray(qd_context *ctx, RangeSpec *spec, void *array);
// A list of arrays, merged into shared rows like sorted lists.
int writeArrayList(qd_context *ctx, RangeSpec *spec, void *list);

#endif
