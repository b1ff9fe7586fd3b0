#include "book/failure_frame.h"

namespace tabrix {
const char *const kGeneralFailure = "general failure";
}
