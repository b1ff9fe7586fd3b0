// transferOut: stores host objects into sheet ranges.  (Being written.)
#include "sheetfile.h"

int transferOut(qd_context *, void *, int count, const char **, const qd_type *, void **) {
    return count;
}
