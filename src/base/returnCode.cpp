#include "returnCode.h"

namespace vx3 {

const char* convert_return_code_to_string(int code)
{
    static const char* const texts[] = {
        "ok", "partially ok", "incompatible", "failed", "file not found", "parser error",
        "convergence", "no convergence", "divergence", "nothing to do", "done",
        "could not open file", "not found", "bad file format", "db access failed",
        "partly parsed", "file format recognized", "", "undefined status", "timeout",
        "deserialization failed", "serialization failed", "encodeing failed", "decoding failed",
        "partial transmission", "checksum error", "action interrupted", "queued",
        "bad function arguments"};
    if (code < 0 || code >= static_cast<int>(sizeof(texts) / sizeof(texts[0])))
        return "";
    return texts[code];
}

}  // namespace vx3
