#include "treegrid/wxTreeGridPropertyList.h"

namespace vx3 {

using namespace treeGridPropertyEntry;

unsigned wxTreeGridPropertyList::add(const std::string& label, data_type kind, wxTreeGridPropertyEntry::tTarget target)
{
    mEntries.emplace_back(mGroup, label, kind, target);
    mHasGroups = mHasGroups || !mGroup.empty();
    return unsigned(mEntries.size() - 1);
}

unsigned wxTreeGridPropertyList::addProperty(const std::string& label, const std::string& value)
{
    mEntries.emplace_back(mGroup, label, type_label, static_cast<std::string*>(nullptr));
    mEntries.back().holdOwnCopy(value);
    mHasGroups = mHasGroups || !mGroup.empty();
    return unsigned(mEntries.size() - 1);
}

unsigned wxTreeGridPropertyList::addPropertyWithExpander(const std::string& group, const std::string& label,
                                                         const std::string& value)
{
    const std::string previous = mGroup;
    mGroup = group;
    const unsigned row = addProperty(label, value);
    mGroup = previous;
    return row;
}

unsigned wxTreeGridPropertyList::addIntProperty(const std::string& label, long long value)
{
    mEntries.emplace_back(mGroup, label, type_long_long, static_cast<long long*>(nullptr));
    mEntries.back().holdOwnCopy(value);
    mHasGroups = mHasGroups || !mGroup.empty();
    return unsigned(mEntries.size() - 1);
}

unsigned wxTreeGridPropertyList::addDoubleProperty(const std::string& label, double value)
{
    mEntries.emplace_back(mGroup, label, type_double, static_cast<double*>(nullptr));
    mEntries.back().holdOwnCopy(value);
    mHasGroups = mHasGroups || !mGroup.empty();
    return unsigned(mEntries.size() - 1);
}

unsigned wxTreeGridPropertyList::addEnumProperty(const std::string& label, unsigned& index,
                                                 const std::vector<std::string>& values)
{
    const unsigned row = add(label, type_enum, &index);
    mEntries[row].setEnumValues(values);
    return row;
}

unsigned wxTreeGridPropertyList::addRefVectorEnumProperty(const std::string& label, std::vector<unsigned>& indices,
                                                          const std::vector<std::string>& values)
{
    const unsigned row = add(label, type_enum_vector, &indices);
    mEntries[row].setEnumValues(values);
    return row;
}

std::string wxTreeGridPropertyList::treeGridVirtualGetColHeaderLabel(unsigned col)
{
    if (mHasGroups && col == 0)
        return "Group";
    return col == valueColumn() ? "Value" : "Property";
}

std::string wxTreeGridPropertyList::treeGridVirtualGetValue(unsigned row, unsigned col)
{
    if (row >= mEntries.size())
        return {};
    const wxTreeGridPropertyEntry& entry = mEntries[row];
    if (mHasGroups && col == 0)
        return entry.getGroup();
    return col == valueColumn() ? entry.getStringValue() : entry.getLabel();
}

int wxTreeGridPropertyList::treeGridVirtualGetCellDataType(unsigned row, unsigned col)
{
    if (row >= mEntries.size() || col != valueColumn())
        return treeGridVirtual::col_string;
    switch (mEntries[row].getKind()) {
    case type_bool: return treeGridVirtual::col_boolean;
    case type_enum: return treeGridVirtual::col_enum;
    case type_colour: return treeGridVirtual::col_colour;
    default: return treeGridVirtual::col_string;
    }
}

bool wxTreeGridPropertyList::treeGridVirtualIsEditable(unsigned row, unsigned col)
{
    return row < mEntries.size() && col == valueColumn() && mEntries[row].checkIsEditable();
}

bool wxTreeGridPropertyList::treeGridVirtualGetBooleanValue(unsigned row, unsigned col)
{
    return row < mEntries.size() && mEntries[row].getKind() == type_bool && mEntries[row].getStringValue() == "true";
}

bool wxTreeGridPropertyList::treeGridVirtualToggleBooleanValue(unsigned row, unsigned col)
{
    if (!treeGridVirtualIsEditable(row, col) || mEntries[row].getKind() != type_bool)
        return false;
    std::string error;
    return mEntries[row].setStringValue(treeGridVirtualGetBooleanValue(row, col) ? "false" : "true", error);
}

bool wxTreeGridPropertyList::treeGridVirtualSetStringValue(unsigned row, unsigned col, const std::string& text)
{
    if (!treeGridVirtualIsEditable(row, col))
        return false;
    std::string error;
    if (mEntries[row].setStringValue(text, error))
        return true;
    mPropertyLogger.errorMsg(error);
    return false;
}

std::vector<std::string> wxTreeGridPropertyList::treeGridVirtualGetEnumValues(unsigned row, unsigned col)
{
    return row < mEntries.size() ? mEntries[row].getEnumValues() : std::vector<std::string>();
}

}  // namespace vx3
