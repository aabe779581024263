#include "cSqliteDataBaseInterface.h"

#include <sqlite3.h>

namespace vx3 {

bool cSqliteDataBaseException::checkIsBusy() const
{
    int primary = mCode & 0xff;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

namespace {
// Finalises a statement on every way out.
struct cStatement {
    sqlite3_stmt* statement = nullptr;
    ~cStatement() { sqlite3_finalize(statement); }
};
}  // namespace

cSqliteDataBaseInterface::~cSqliteDataBaseInterface() { close(); }

void cSqliteDataBaseInterface::fail(int code) const
{
    std::string text = mDb ? sqlite3_errmsg(mDb) : sqlite3_errstr(code);
    throw cSqliteDataBaseException("SQL error: " + text, code);
}

void cSqliteDataBaseInterface::requireOpen() const
{
    if (!mDb)
        throw cSqliteDataBaseException("The database has not been opened.", 0);
}

void cSqliteDataBaseInterface::open(const std::string& fileName, int mode, int busyMilliseconds)
{
    close();
    int flags = mode == sqliteDataBaseInterface::mode_read_only ? SQLITE_OPEN_READONLY
                                                                 : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    sqlite3* db = nullptr;
    int code = sqlite3_open_v2(fileName.c_str(), &db, flags | SQLITE_OPEN_FULLMUTEX, nullptr);
    if (code != SQLITE_OK) {
        std::string text = db ? sqlite3_errmsg(db) : sqlite3_errstr(code);
        sqlite3_close(db);
        throw cSqliteDataBaseException("SQL error: " + text, code);
    }
    mDb = db;
    sqlite3_extended_result_codes(mDb, 1);
    sqlite3_busy_timeout(mDb, busyMilliseconds);
}

void cSqliteDataBaseInterface::close()
{
    if (mDb) {
        sqlite3_close(mDb);
        mDb = nullptr;
    }
}

void cSqliteDataBaseInterface::execute(const std::string& sql)
{
    requireOpen();
    int code = sqlite3_exec(mDb, sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        fail(code);
}

void cSqliteDataBaseInterface::rollback() noexcept
{
    if (mDb && !sqlite3_get_autocommit(mDb))
        sqlite3_exec(mDb, "ROLLBACK;", nullptr, nullptr, nullptr);
}

bool cSqliteDataBaseInterface::checkTableExists(const std::string& table)
{
    requireOpen();
    cStatement query;
    int code = sqlite3_prepare_v2(mDb, "SELECT 1 FROM sqlite_master WHERE type='table' AND name=?;", -1,
                                  &query.statement, nullptr);
    if (code != SQLITE_OK)
        fail(code);
    sqlite3_bind_text(query.statement, 1, table.c_str(), -1, SQLITE_TRANSIENT);
    code = sqlite3_step(query.statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE)
        fail(code);
    return false;
}

void cSqliteDataBaseInterface::createBlobTable(const std::string& table)
{
    if (!checkTableExists(table))
        execute("CREATE TABLE " + table + "(id INTEGER PRIMARY KEY, data BLOB);");
}

bool cSqliteDataBaseInterface::getBlob(const std::string& table, uint64_t id, std::vector<uint8_t>& data)
{
    requireOpen();
    cStatement query;
    std::string sql = "select data from " + table + " where id = " + std::to_string(id) + ";";
    int code = sqlite3_prepare_v2(mDb, sql.c_str(), -1, &query.statement, nullptr);
    if (code != SQLITE_OK)
        fail(code);
    code = sqlite3_step(query.statement);
    if (code == SQLITE_DONE)
        return false;
    if (code != SQLITE_ROW)
        fail(code);
    const auto* bytes = static_cast<const uint8_t*>(sqlite3_column_blob(query.statement, 0));
    int size = sqlite3_column_bytes(query.statement, 0);
    data.assign(bytes, bytes + (bytes ? size : 0));
    return true;
}

void cSqliteDataBaseInterface::putBlob(const std::string& table, uint64_t id, const std::vector<uint8_t>& data)
{
    execute("delete from " + table + " where id = " + std::to_string(id) + ";");
    cStatement insert;
    std::string sql = "insert into " + table + " (id, data) values (" + std::to_string(id) + ", ?);";
    int code = sqlite3_prepare_v2(mDb, sql.c_str(), -1, &insert.statement, nullptr);
    if (code != SQLITE_OK)
        fail(code);
    // A zero-length blob would be bound as NULL; an empty record is still a record.
    static const uint8_t kEmpty = 0;
    sqlite3_bind_blob64(insert.statement, 1, data.empty() ? &kEmpty : data.data(), data.size(), SQLITE_STATIC);
    code = sqlite3_step(insert.statement);
    if (code != SQLITE_DONE)
        fail(code);
}

}  // namespace vx3
