// Result codes shared by readers and engine functions.
#pragma once

namespace vx3 {

enum returnCode : int {
    ok = 0,
    partially_ok = 1,
    incompatible = 2,
    failed = 3,
    file_not_found = 4,
    parser_error = 5,
    convergence = 6,
    no_convergence = 7,
    divergence = 8,
    nothing_to_do = 9,
    done = 10,
    could_not_open_file = 11,
    not_found = 12,
    bad_file_format = 13,
    db_access_failed = 14,
    partly_parsed = 15,
    file_format_recognized = 16,
    unused_17 = 17,
    undefined_status = 18,
    timeout = 19,
    deserialization_failed = 20,
    serialization_failed = 21,
    encoding_failed = 22,
    decoding_failed = 23,
    partial_transmission = 24,
    checksum_error = 25,
    action_interrupted = 26,
    queued = 27,
    bad_function_arguments = 28
};

// Text of a code; codes without a text give "".
const char* convert_return_code_to_string(int code);

}  // namespace vx3
