// The blob store of the configuration file: rows of the table perm_data, listed by a contents
// directory that itself lies in row 4 (with versions) or row 2 (the older form without).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cDataBaseSerializer.h"
#include "cSqliteDataBaseInterface.h"

namespace vx3 {

namespace dataBaseInterface {
enum row_id : uint64_t { row_contents_old = 2, row_contents_versioned = 4 };
enum blob_type : uint32_t {
    type_configuration = 3,
    type_post_process_configuration = 36,
    type_browser_configuration = 37,
    type_editor_configuration = 41
};
}

struct cDataBaseContentsEntry {
    uint64_t primaryKey = 0;
    uint32_t type = 0;
    std::vector<std::string> strings;
    void serializedeserialize(cDataBaseSerializer& serializer);
};

struct cDataBaseVersionEntry {
    uint64_t version = 0;
    int64_t savedAt = 0;  // seconds since 1970
    void serializedeserialize(cDataBaseSerializer& serializer);
};

class cDataBaseContents {
public:
    std::vector<cDataBaseContentsEntry> entries;
    // Keys up to the directory's own rows are never handed out.
    uint64_t highestPrimaryKey = dataBaseInterface::row_contents_versioned;
    bool versioned = true;
    uint64_t currentVersion = 0;
    std::vector<cDataBaseVersionEntry> versions;

    // The form follows `versioned`: the older form stops after the highest key.
    void serializedeserialize(cDataBaseSerializer& serializer);
    void convertToVersionized();
    const cDataBaseContentsEntry* findEntryOfType(uint32_t type) const;
    uint64_t getNewPrimaryKey() { return ++highestPrimaryKey; }
    void addEntry(uint64_t key, uint32_t type, std::vector<std::string> strings);
    // A new current version, remembered with the time of the save; the list keeps the last few.
    void addVersion(int64_t savedAt);
};

class cDataBaseInterface {
public:
    static constexpr const char* kTable = "perm_data";
    static constexpr const char* kTemporaryTable = "tmp_data";

    // Mode 1 reads an existing file; mode 3 creates file and tables as needed.
    void open(const std::string& fileName, int mode, int busyMilliseconds);
    void close() { mDb.close(); }
    cSqliteDataBaseInterface& sqlite() { return mDb; }

    // Row 4, else row 2 converted; false when neither exists (a new directory in versioned form).
    bool readDbContents();
    // Writes row 4 for a versioned directory, and always row 2 in the older form for older readers.
    void writeDbContents();
    cDataBaseContents& contents() { return mContents; }
    bool checkContentsFromOlderForm() const { return mOlderForm; }

    bool getFromDb(uint64_t key, std::vector<uint8_t>& data) { return mDb.getBlob(kTable, key, data); }
    void putToDb(uint64_t key, const std::vector<uint8_t>& data) { mDb.putBlob(kTable, key, data); }
    // The row of the first entry of this type, or a new key entered in the directory.
    uint64_t getOrAddKeyForType(uint32_t type, const std::string& description);

private:
    cSqliteDataBaseInterface mDb;
    cDataBaseContents mContents;
    bool mOlderForm = false;
};

}  // namespace vx3
