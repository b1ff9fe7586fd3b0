#include "book/failure_frame.h"
#include "book/text_result.h"

namespace tabrix {
const char *const kGeneralFailure = "general failure";
const char *const kNotSupportedYet = "not supported yet";
const char *const kConversionWarning = "warning: some characters have not been converted properly";
} // namespace tabrix
