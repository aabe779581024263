// The model of a property sheet: rows of wxTreeGridPropertyEntry shown as "Property" and "Value",
// and, once a property is added under a group, a leading column of groups whose runs become
// expanders. Free of the toolkit; wxTreeGridProperties puts it on a grid widget.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "base/cVxLogger.h"
#include "treegrid/wxTreeGridPropertyEntry.h"
#include "treegrid/wxTreeGridVirtual.h"

namespace vx3 {

class wxTreeGridPropertyList : public wxTreeGridVirtual {
public:
    // ---- Adders. The ref kinds keep a pointer to the caller's variable, which must outlive the
    // sheet; the others keep a copy that getEntry(row) reads back.
    unsigned addProperty(const std::string& label, const std::string& value);
    unsigned addPropertyWithExpander(const std::string& group, const std::string& label, const std::string& value);
    unsigned addIntProperty(const std::string& label, long long value);
    unsigned addDoubleProperty(const std::string& label, double value);
    unsigned addRefProperty(const std::string& label, bool& value) { return add(label, treeGridPropertyEntry::type_bool, &value); }
    unsigned addRefProperty(const std::string& label, double& value) { return add(label, treeGridPropertyEntry::type_double, &value); }
    unsigned addRefProperty(const std::string& label, long long& value) { return add(label, treeGridPropertyEntry::type_long_long, &value); }
    unsigned addRefProperty(const std::string& label, std::string& value) { return add(label, treeGridPropertyEntry::type_string, &value); }
    unsigned addRefProperty(const std::string& label, unsigned& value) { return add(label, treeGridPropertyEntry::type_unsigned, &value); }
    unsigned addRefProperty(const std::string& label, unsigned long long& value)
    {
        return add(label, treeGridPropertyEntry::type_unsigned_long_long, &value);
    }
    unsigned addRefBoolProperty(const std::string& label, bool& value) { return addRefProperty(label, value); }
    unsigned addEnumProperty(const std::string& label, unsigned& index, const std::vector<std::string>& values);
    unsigned addColourProperty(const std::string& label, unsigned& rgb) { return add(label, treeGridPropertyEntry::type_colour, &rgb); }
    unsigned addFontProperty(const std::string& label, std::string& font) { return add(label, treeGridPropertyEntry::type_font, &font); }
    unsigned addFileNameProperty(const std::string& label, std::string& path) { return add(label, treeGridPropertyEntry::type_file_name, &path); }
    unsigned addFileNameOrEmptyProperty(const std::string& label, std::string& path)
    {
        return add(label, treeGridPropertyEntry::type_file_name_or_empty, &path);
    }
    unsigned addWriteFileNameOrEmptyProperty(const std::string& label, std::string& path)
    {
        return add(label, treeGridPropertyEntry::type_write_file_name_or_empty, &path);
    }
    unsigned addDirectoryProperty(const std::string& label, std::string& path) { return add(label, treeGridPropertyEntry::type_directory, &path); }
    unsigned addPasswordProperty(const std::string& label, std::string& text) { return add(label, treeGridPropertyEntry::type_password, &text); }
    unsigned addBoolVectorProperty(const std::string& label, std::vector<bool>& flags)
    {
        return add(label, treeGridPropertyEntry::type_bool_vector, &flags);
    }
    unsigned addRefVectorProperty(const std::string& label, std::vector<double>& values)
    {
        return add(label, treeGridPropertyEntry::type_double_vector, &values);
    }
    unsigned addRefVectorEnumProperty(const std::string& label, std::vector<unsigned>& indices,
                                      const std::vector<std::string>& values);
    // Properties added after this call belong to group (empty: none).
    void setCurrentGroup(const std::string& group) { mGroup = group; }

    unsigned getNumberOfEntries() const { return unsigned(mEntries.size()); }
    wxTreeGridPropertyEntry& getEntry(unsigned row) { return mEntries.at(row); }
    bool checkHasGroups() const { return mHasGroups; }
    // The messages of refused edits go here.
    cVxLogger& getPropertyLogger() { return mPropertyLogger; }

    // ---- wxTreeGridVirtual
    unsigned treeGridVirtualGetNumberOfColumns() override { return mHasGroups ? 3 : 2; }
    unsigned treeGridVirtualGetNumberOfRows() override { return unsigned(mEntries.size()); }
    std::string treeGridVirtualGetColHeaderLabel(unsigned col) override;
    std::string treeGridVirtualGetValue(unsigned row, unsigned col) override;
    bool treeGridVirtualGetDefaultExpanded(unsigned row, unsigned level) override { return true; }
    bool treeGridVirtualGetGridUsesExpanders() override { return mHasGroups; }
    int treeGridVirtualGetColType(unsigned col) override { return treeGridVirtual::col_string; }
    // Booleans toggle and enumerations offer their values when edited.
    int treeGridVirtualGetCellDataType(unsigned row, unsigned col) override;
    bool treeGridVirtualIsEditable(unsigned row, unsigned col) override;
    bool treeGridVirtualGetBooleanValue(unsigned row, unsigned col) override;
    bool treeGridVirtualToggleBooleanValue(unsigned row, unsigned col) override;
    bool treeGridVirtualSetStringValue(unsigned row, unsigned col, const std::string& text) override;
    std::vector<std::string> treeGridVirtualGetEnumValues(unsigned row, unsigned col) override;
    // A sheet keeps the order it was written in unless the user sorts.
    bool treeGridVirtualCheckIfColumnAcceptsFilters(unsigned col) override { return false; }

private:
    unsigned add(const std::string& label, treeGridPropertyEntry::data_type kind, wxTreeGridPropertyEntry::tTarget target);
    unsigned valueColumn() const { return mHasGroups ? 2 : 1; }

    // A deque: the entries' own copies are referenced by their targets and must not move.
    std::deque<wxTreeGridPropertyEntry> mEntries;
    std::string mGroup;
    bool mHasGroups = false;
    cVxLogger mPropertyLogger{vxLogger::debug, true};
};

}  // namespace vx3
