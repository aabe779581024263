// One row of a property sheet: a label, a kind, the caller's variable (or a copy held here) and
// its text form. A change typed into the sheet is written to the variable at once.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vx3 {

namespace treeGridPropertyEntry {
enum data_type : int {
    type_label = 0,  // a text that is shown only
    type_string,
    type_int,
    type_double,
    type_bool,
    type_long_long,
    type_unsigned,
    type_unsigned_long_long,
    type_enum,
    type_colour,  // 0xrrggbb, shown as #rrggbb
    type_font,
    type_file_name,
    type_file_name_or_empty,
    type_write_file_name_or_empty,
    type_directory,
    type_password,
    type_bool_vector,
    type_double_vector,
    type_enum_vector,
};
}  // namespace treeGridPropertyEntry

class wxTreeGridPropertyEntry {
public:
    using data_type = treeGridPropertyEntry::data_type;
    // Where the value lives: the caller's variable or the entry's own copy.
    using tTarget = std::variant<std::string*, bool*, double*, long long*, unsigned*, unsigned long long*, int*,
                                 std::vector<bool>*, std::vector<double>*, std::vector<unsigned>*>;

    wxTreeGridPropertyEntry(std::string group, std::string label, data_type kind, tTarget target);

    const std::string& getLabel() const { return mLabel; }
    const std::string& getGroup() const { return mGroup; }
    data_type getKind() const { return mKind; }
    bool checkIsEditable() const { return mKind != treeGridPropertyEntry::type_label; }
    void setEnumValues(std::vector<std::string> values) { mEnumValues = std::move(values); }
    const std::vector<std::string>& getEnumValues() const { return mEnumValues; }

    std::string getStringValue() const;
    // Parses text for the kind and writes the variable; false with the reason in error, the
    // variable unchanged.
    bool setStringValue(const std::string& text, std::string& error);
    // Makes the entry hold its value itself (addProperty and the like); the entry must not move
    // afterwards.
    void holdOwnCopy(const std::string& value) { mOwnString = value; mTarget = &mOwnString; }
    void holdOwnCopy(double value) { mOwnDouble = value; mTarget = &mOwnDouble; }
    void holdOwnCopy(long long value) { mOwnInteger = value; mTarget = &mOwnInteger; }

private:
    std::string mGroup;
    std::string mLabel;
    data_type mKind;
    tTarget mTarget;
    std::vector<std::string> mEnumValues;
    std::string mOwnString;
    double mOwnDouble = 0;
    long long mOwnInteger = 0;
};

}  // namespace vx3
