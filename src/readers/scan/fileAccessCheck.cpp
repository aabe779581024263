#include "readers/scan/fileAccessCheck.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vx3::fileAccess {

check_result openRegularFile(const std::string& name, int& fd, uint64_t& size, std::string& message)
{
    fd = -1;
    size = 0;
    struct stat info;
    if (::stat(name.c_str(), &info) != 0) {
        message = "The file \"" + name + "\" does not exist.";
        return file_missing;
    }
    if (!S_ISREG(info.st_mode)) {
        message = "The file \"" + name + "\" is not a regular file.";
        return file_not_regular;
    }
    fd = ::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        message = "The file \"" + name + "\" cannot be read: " + std::strerror(errno) + ".";
        return file_unreadable;
    }
    // Checked again on the descriptor: the path may have been replaced in between.
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        fd = -1;
        message = "The file \"" + name + "\" is not a regular file.";
        return file_not_regular;
    }
    size = static_cast<uint64_t>(info.st_size);
    if (size == 0) {
        ::close(fd);
        fd = -1;
        message = "The file \"" + name + "\" is empty.";
        return file_empty;
    }
    return file_ok;
}

bool getFileSizeAndTime(const std::string& name, uint64_t& size, time_t& lastWriteTime)
{
    struct stat info;
    if (::stat(name.c_str(), &info) != 0 || !S_ISREG(info.st_mode))
        return false;
    size = static_cast<uint64_t>(info.st_size);
    lastWriteTime = info.st_mtime;
    return true;
}

bool checkFileExists(const std::string& name)
{
    struct stat info;
    return ::stat(name.c_str(), &info) == 0;
}

}  // namespace vx3::fileAccess
