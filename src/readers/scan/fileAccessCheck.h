// The checks every file access class makes before it reads: exists, regular, readable.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace vx3::fileAccess {

enum check_result : unsigned { file_ok = 0, file_missing, file_not_regular, file_unreadable, file_empty };

// Opens name read-only without blocking (a FIFO must not hang the reader) and checks that it is a
// regular, non-empty file. On success fd is open and size set; otherwise message says why.
check_result openRegularFile(const std::string& name, int& fd, uint64_t& size, std::string& message);

// Size and last write time; false when the path doesn't name an existing regular file.
bool getFileSizeAndTime(const std::string& name, uint64_t& size, time_t& lastWriteTime);
bool checkFileExists(const std::string& name);

}  // namespace vx3::fileAccess
