#include "cDataBaseSockets.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "cVxLogger.h"

namespace vx3 {

namespace {
constexpr int kOk = 0;
constexpr int kFailed = 3;
constexpr int kTimeout = 19;
constexpr size_t kReadChunk = 1024;
constexpr int kMaxTextReads = 20;
}  // namespace

// ---------------------------------------------------------------------------------------------
bool cDataBaseBuffer::resizeBuffer(size_t size)
{
    size_t used = std::min(this->size(), size);
    char* fresh = static_cast<char*>(std::realloc(mBegin, size ? size : 1));
    if (!fresh)
        return false;
    mBegin = fresh;
    mWrite = mBegin + used;
    mEnd = mBegin + size;
    return true;
}

bool cDataBaseBuffer::enlargeBuffer(size_t extra)
{
    if (freeRoom() >= extra)
        return true;
    size_t capacity = static_cast<size_t>(mEnd - mBegin);
    size_t wanted = std::max(size() + extra, capacity + capacity / 2);
    return resizeBuffer(wanted);
}

void cDataBaseBuffer::put(const void* data, size_t size)
{
    if (!size || !enlargeBuffer(size))
        return;
    std::memcpy(mWrite, data, size);
    mWrite += size;
}

size_t cDataBaseBuffer::get(void* data, size_t size)
{
    size_t count = std::min(size, this->size());
    std::memcpy(data, mBegin, count);
    shiftBuffer(count);
    return count;
}

void cDataBaseBuffer::shiftBuffer(size_t count)
{
    count = std::min(count, size());
    std::memmove(mBegin, mBegin + count, size() - count);
    mWrite -= count;
}

void cDataBaseBuffer::freeBuffer()
{
    std::free(mBegin);
    mBegin = mWrite = mEnd = nullptr;
}

// ---------------------------------------------------------------------------------------------
void cDataBaseSockets::log(unsigned severity, const std::string& text) const
{
    if (mLogger)
        mLogger->sendMsg(severity, text);
}

int cDataBaseSockets::connectToStreamSocket(const std::string& host, unsigned port)
{
    closeSocket(false);
    mPeerClosed = false;
    int result = connectOnce(host, port);
    if (result == kOk)
        return kOk;
    // The two spellings of the local host stand in for each other.
    if (host == "localhost")
        return connectOnce("127.0.0.1", port);
    if (host == "127.0.0.1")
        return connectOnce("localhost", port);
    return result;
}

int cDataBaseSockets::connectOnce(const std::string& host, unsigned port)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    std::string service = std::to_string(port);
    int error = getaddrinfo(host.c_str(), service.c_str(), &hints, &addresses);
    if (error != 0) {
        log(vxLogger::error, "getaddrinfo() failed");
        log(vxLogger::error, "Host not found --> " + host);
        return kFailed;
    }
    int result = kFailed;
    for (addrinfo* address = addresses; address; address = address->ai_next) {
        char text[INET6_ADDRSTRLEN] = {0};
        const void* raw = address->ai_family == AF_INET
                              ? static_cast<const void*>(&reinterpret_cast<sockaddr_in*>(address->ai_addr)->sin_addr)
                              : static_cast<const void*>(&reinterpret_cast<sockaddr_in6*>(address->ai_addr)->sin6_addr);
        inet_ntop(address->ai_family, raw, text, sizeof(text));
        if (host != text)
            log(vxLogger::debug, "The hostid \"" + host + "\" was resolved to \"" + text + "\".");
        int fd = socket(address->ai_family, address->ai_socktype | SOCK_CLOEXEC, address->ai_protocol);
        if (fd < 0) {
            log(vxLogger::error, "socket() failed");
            continue;
        }
        if (::connect(fd, address->ai_addr, address->ai_addrlen) != 0) {
            // A refused connection is the normal case while the peer does not listen yet.
            log(vxLogger::debug, errno == ETIMEDOUT ? "connect() timeout" : "blocking connect() failed");
            ::close(fd);
            continue;
        }
        int one = 1;
        setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &one, sizeof(one));  // one short reply per command
        mSocket = fd;
        applyReceiveTimeout();
        result = kOk;
        break;
    }
    freeaddrinfo(addresses);
    return result;
}

void cDataBaseSockets::applyReceiveTimeout()
{
    // A read that waits by itself wakes as soon as data arrive, like select, in one system call
    // instead of two: that is a large part of a short command's round trip.
    mReceiveTimeoutSet = false;
    if (mSocket < 0 || (mTimeoutSeconds == 0 && mTimeoutMicroseconds == 0))
        return;
    timeval timeout{mTimeoutSeconds, mTimeoutMicroseconds};
    mReceiveTimeoutSet = setsockopt(mSocket, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof(timeout)) == 0;
}

int cDataBaseSockets::transmit(const void* data, size_t length)
{
    if (mSocket < 0)
        return kFailed;
    const char* bytes = static_cast<const char*>(data);
    size_t sent = 0;
    while (sent < length) {
        ssize_t count = ::send(mSocket, bytes + sent, length - sent, MSG_NOSIGNAL);
        if (count < 0) {
            if (errno == EINTR)
                continue;
            log(vxLogger::error, "send() failed");
            if (sent)
                log(vxLogger::error, "send() transmitted only " + std::to_string(sent) + " of " +
                                         std::to_string(length) + " bytes.");
            return kFailed;
        }
        sent += static_cast<size_t>(count);
    }
    return kOk;
}

int cDataBaseSockets::waitReadable()
{
    if (mTimeoutSeconds == 0 && mTimeoutMicroseconds == 0)
        return kOk;
    if (mReceiveTimeoutSet)
        return kOk;  // the read itself waits, at most the timeout
    // select returns as soon as data arrive; the timeout only bounds an idle wait.
    while (true) {
        fd_set readable;
        FD_ZERO(&readable);
        FD_SET(mSocket, &readable);
        timeval timeout{mTimeoutSeconds, mTimeoutMicroseconds};
        int ready = select(mSocket + 1, &readable, nullptr, nullptr, &timeout);
        if (ready > 0)
            return kOk;
        if (ready == 0) {
            log(vxLogger::debug, "Select() : timeout occurred");
            return kTimeout;
        }
        if (errno == EINTR)
            continue;
        log(vxLogger::error, "Select() failed with code " + std::to_string(errno));
        return kFailed;
    }
}

int cDataBaseSockets::receive(cDataBaseBuffer& buffer, bool wait)
{
    if (mSocket < 0)
        return kFailed;
    if (!buffer.enlargeBuffer(kReadChunk))
        return kFailed;
    if (wait) {
        int ready = waitReadable();
        if (ready == kTimeout) {
            log(vxLogger::debug, "recv() timeout");
            return kTimeout;
        }
        if (ready != kOk)
            return kFailed;
    }
    while (true) {
        ssize_t count = ::recv(mSocket, buffer.writePosition(), buffer.freeRoom(), wait ? 0 : MSG_DONTWAIT);
        if (count < 0 && wait && mReceiveTimeoutSet && (errno == EAGAIN || errno == EWOULDBLOCK)) {
            log(vxLogger::debug, "recv() timeout");
            return kTimeout;
        }
        if (count > 0) {
            buffer.advanceWrite(static_cast<size_t>(count));
            return kOk;
        }
        if (count == 0) {
            mPeerClosed = true;
            return kFailed;
        }
        if (errno == EINTR)
            continue;
        if (errno == EAGAIN || errno == EWOULDBLOCK)
            return kTimeout;
        log(vxLogger::error, "recv() failed");
        return kFailed;
    }
}

int cDataBaseSockets::receiveText(std::string& text, bool wait)
{
    text.clear();
    mBuffer.clear();
    int result = kTimeout;
    for (int read = 0; read < kMaxTextReads; ++read) {
        result = receive(mBuffer, wait);
        if (result == kFailed)
            break;
        if (result == kTimeout) {
            if (mBuffer.size() == 0)
                break;  // idle: let the caller look at its flags
            continue;   // a line on its way: give it the remaining reads
        }
        // Done when the data end with a line end, blanks behind it ignored.
        const char* begin = mBuffer.begin();
        const char* end = mBuffer.writePosition();
        while (end > begin && (end[-1] == ' ' || end[-1] == '\t'))
            --end;
        if (end > begin && (end[-1] == '\n' || end[-1] == '\r'))
            break;
    }
    text = mBuffer.getBufferAsString();
    if (!text.empty())
        return kOk;
    return result;
}

void cDataBaseSockets::closeSocket(bool shutdownFirst)
{
    if (mSocket < 0)
        return;
    if (shutdownFirst)
        ::shutdown(mSocket, SHUT_RDWR);
    ::close(mSocket);
    mSocket = -1;
}

}  // namespace vx3
