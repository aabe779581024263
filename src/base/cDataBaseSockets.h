// The socket class of the system: a TCP client for the interactive mode (the viewer connects to
// a listening tool) and the base of the file server. Text travels in lines ended by a line feed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vx3 {

class cVxLogger;

// A growable byte buffer: [begin, write) holds data, [write, end) is free room.
class cDataBaseBuffer {
public:
    cDataBaseBuffer() = default;
    ~cDataBaseBuffer() { freeBuffer(); }
    cDataBaseBuffer(const cDataBaseBuffer&) = delete;
    cDataBaseBuffer& operator=(const cDataBaseBuffer&) = delete;

    void put(const void* data, size_t size);
    // Takes up to size bytes from the front; returns how many.
    size_t get(void* data, size_t size);
    bool resizeBuffer(size_t size);
    bool enlargeBuffer(size_t extra);  // at least extra bytes of free room
    void freeBuffer();
    void shiftBuffer(size_t count);   // drops count bytes from the front
    void clear() { mWrite = mBegin; }
    std::string getBufferAsString() const { return std::string(mBegin, mWrite); }

    char* begin() const { return mBegin; }
    char* writePosition() const { return mWrite; }
    size_t size() const { return static_cast<size_t>(mWrite - mBegin); }
    size_t freeRoom() const { return static_cast<size_t>(mEnd - mWrite); }
    void advanceWrite(size_t count) { mWrite += count; }

private:
    char* mBegin = nullptr;
    char* mWrite = nullptr;
    char* mEnd = nullptr;
};

class cDataBaseSockets {
public:
    cDataBaseSockets() = default;
    ~cDataBaseSockets() { closeSocket(false); }
    cDataBaseSockets(const cDataBaseSockets&) = delete;
    cDataBaseSockets& operator=(const cDataBaseSockets&) = delete;

    void setLogger(const cVxLogger* logger) { mLogger = logger; }
    // A zero timeout blocks in reads; otherwise select waits at most this long.
    void setTimeout(long seconds, long microseconds)
    {
        mTimeoutSeconds = seconds;
        mTimeoutMicroseconds = microseconds;
        applyReceiveTimeout();
    }

    // 0 connected, 3 failed, 19 timeout. "localhost" and "127.0.0.1" stand in for each other.
    int connectToStreamSocket(const std::string& host, unsigned port);
    // Sends everything (partial sends repeated); 0 or 3.
    int transmit(const void* data, size_t length);
    int transmit(const std::string& text) { return transmit(text.data(), text.size()); }
    // One read into the buffer's free room (enlarged by 1024 first); 0, 3 (failure or peer closed), 19 timeout.
    int receive(cDataBaseBuffer& buffer, bool wait);
    // Reads until the data end with a line end (blanks after it ignored), at most 20 reads;
    // text gets what arrived. 0 when text arrived, 19 timeout with nothing, 3 failure or peer closed.
    int receiveText(std::string& text, bool wait);
    void closeSocket(bool shutdownFirst);
    bool checkIsConnected() const { return mSocket >= 0; }
    int descriptor() const { return mSocket; }
    bool checkPeerClosed() const { return mPeerClosed; }

protected:
    int connectOnce(const std::string& host, unsigned port);
    int waitReadable();
    void applyReceiveTimeout();
    void log(unsigned severity, const std::string& text) const;

    int mSocket = -1;
    long mTimeoutSeconds = 0;
    long mTimeoutMicroseconds = 0;
    const cVxLogger* mLogger = nullptr;
    bool mPeerClosed = false;
    bool mReceiveTimeoutSet = false;
    cDataBaseBuffer mBuffer;
};

}  // namespace vx3
