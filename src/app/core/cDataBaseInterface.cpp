#include "cDataBaseInterface.h"

#include <algorithm>

namespace vx3 {

using namespace dataBaseInterface;
using namespace dataBaseSerializer;

namespace {
constexpr size_t kVersionsKept = 16;
}

void cDataBaseContentsEntry::serializedeserialize(cDataBaseSerializer& serializer)
{
    serializer.serializedeserialize(primaryKey);
    serializer.serializedeserialize(type);
    serializer.serializedeserialize(strings);
}

void cDataBaseVersionEntry::serializedeserialize(cDataBaseSerializer& serializer)
{
    serializer.serializedeserialize(version);
    serializer.serializedeserialize(savedAt);
}

// A vector of records: the vector head with the tag of the records' first field, then each record.
template <typename T>
static void recordVector(cDataBaseSerializer& serializer, std::vector<T>& records)
{
    uint64_t count = serializer.vectorHead(records.size(), tag_uint64);
    if (serializer.checkIsSerializing()) {
        for (T& record : records)
            record.serializedeserialize(serializer);
        return;
    }
    // A record takes at least 12 bytes; a larger count is a damaged directory.
    if (count > serializer.remaining() / 12)
        throw cSerializerException("unexpected end of data !");
    std::vector<T> read(count);
    for (T& record : read)
        record.serializedeserialize(serializer);
    records = std::move(read);
}

void cDataBaseContents::serializedeserialize(cDataBaseSerializer& serializer)
{
    recordVector(serializer, entries);
    serializer.serializedeserialize(highestPrimaryKey);
    if (!versioned)
        return;
    serializer.serializedeserialize(currentVersion);
    recordVector(serializer, versions);
}

void cDataBaseContents::convertToVersionized()
{
    versioned = true;
    currentVersion = 0;
    versions.clear();
    // Keys of the older form may lie below the versioned directory's row.
    for (const auto& entry : entries)
        highestPrimaryKey = std::max(highestPrimaryKey, entry.primaryKey);
    highestPrimaryKey = std::max<uint64_t>(highestPrimaryKey, row_contents_versioned);
}

const cDataBaseContentsEntry* cDataBaseContents::findEntryOfType(uint32_t type) const
{
    for (const auto& entry : entries)
        if (entry.type == type)
            return &entry;
    return nullptr;
}

void cDataBaseContents::addEntry(uint64_t key, uint32_t type, std::vector<std::string> strings)
{
    entries.push_back({key, type, std::move(strings)});
    highestPrimaryKey = std::max(highestPrimaryKey, key);
}

void cDataBaseContents::addVersion(int64_t savedAt)
{
    ++currentVersion;
    versions.push_back({currentVersion, savedAt});
    if (versions.size() > kVersionsKept)
        versions.erase(versions.begin(), versions.end() - kVersionsKept);
}

// ---------------------------------------------------------------------------------------------
void cDataBaseInterface::open(const std::string& fileName, int mode, int busyMilliseconds)
{
    mDb.open(fileName, mode, busyMilliseconds);
    mContents = cDataBaseContents();
    mOlderForm = false;
    if (mode == sqliteDataBaseInterface::mode_read_write_create) {
        mDb.createBlobTable(kTemporaryTable);
        mDb.createBlobTable(kTable);
    }
}

bool cDataBaseInterface::readDbContents()
{
    mContents = cDataBaseContents();
    mOlderForm = false;
    std::vector<uint8_t> data;
    if (mDb.getBlob(kTable, row_contents_versioned, data)) {
        cDataBaseSerializer reader(data);
        mContents.serializedeserialize(reader);
        return true;
    }
    if (mDb.getBlob(kTable, row_contents_old, data)) {
        mContents.versioned = false;
        cDataBaseSerializer reader(data);
        mContents.serializedeserialize(reader);
        mOlderForm = true;
        // Kept in the older form when written back, so that the program that made it still reads it.
        uint64_t highest = mContents.highestPrimaryKey;
        for (const auto& entry : mContents.entries)
            highest = std::max(highest, entry.primaryKey);
        mContents.highestPrimaryKey = std::max<uint64_t>(highest, row_contents_versioned);
        return true;
    }
    return false;
}

void cDataBaseInterface::writeDbContents()
{
    if (mContents.versioned) {
        cDataBaseSerializer writer;
        mContents.serializedeserialize(writer);
        mDb.putBlob(kTable, row_contents_versioned, writer.buffer());
    }
    cDataBaseContents older = mContents;
    older.versioned = false;
    cDataBaseSerializer writer;
    older.serializedeserialize(writer);
    mDb.putBlob(kTable, row_contents_old, writer.buffer());
}

uint64_t cDataBaseInterface::getOrAddKeyForType(uint32_t type, const std::string& description)
{
    if (const cDataBaseContentsEntry* entry = mContents.findEntryOfType(type))
        return entry->primaryKey;
    uint64_t key = mContents.getNewPrimaryKey();
    mContents.addEntry(key, type, {description});
    return key;
}

}  // namespace vx3
