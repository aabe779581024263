// A thin owner of one SQLite connection for the blob tables of the configuration file. Every failure
// throws cSqliteDataBaseException, which the callers catch and turn into log lines.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

struct sqlite3;

namespace vx3 {

class cSqliteDataBaseException : public std::runtime_error {
public:
    cSqliteDataBaseException(const std::string& text, int code) : std::runtime_error(text), mCode(code) {}
    int code() const { return mCode; }  // the SQLite result code, 0 when there is none
    // Another connection holds the lock: trying again later may work.
    bool checkIsBusy() const;

private:
    int mCode;
};

namespace sqliteDataBaseInterface {
enum open_mode : int { mode_read_only = 1, mode_read_write_create = 3 };
}

class cSqliteDataBaseInterface {
public:
    cSqliteDataBaseInterface() = default;
    ~cSqliteDataBaseInterface();
    cSqliteDataBaseInterface(const cSqliteDataBaseInterface&) = delete;
    cSqliteDataBaseInterface& operator=(const cSqliteDataBaseInterface&) = delete;

    // Mode 1 opens an existing file for reading, mode 3 opens or creates it for writing. busyMilliseconds
    // is how long a statement waits for another connection's lock before it fails as busy.
    void open(const std::string& fileName, int mode, int busyMilliseconds);
    void close();
    bool checkIsOpen() const { return mDb != nullptr; }

    void execute(const std::string& sql);
    bool checkTableExists(const std::string& table);
    // "CREATE TABLE <name>(id INTEGER PRIMARY KEY, data BLOB);" for a table that is missing.
    void createBlobTable(const std::string& table);
    // false when the row does not exist.
    bool getBlob(const std::string& table, uint64_t id, std::vector<uint8_t>& data);
    // Replaces the row: deleted, then inserted anew with the bound blob.
    void putBlob(const std::string& table, uint64_t id, const std::vector<uint8_t>& data);

    // A write transaction that takes the write lock at once, so that two writers queue at the start
    // rather than fail in the middle.
    void beginWrite() { execute("BEGIN IMMEDIATE;"); }
    void commit() { execute("COMMIT;"); }
    void rollback() noexcept;

private:
    [[noreturn]] void fail(int code) const;
    void requireOpen() const;

    sqlite3* mDb = nullptr;
};

}  // namespace vx3
