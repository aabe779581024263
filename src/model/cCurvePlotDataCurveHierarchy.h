// The instance tree of a section, built from the hierarchical names of its curves
// ("xtop.xcore.v(out)", "/top/core/out"). The root stands for the section itself.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vx3 {

class cCurvePlotVariable;

namespace curvePlotProperties {

// Numbers are stored in sessions: never renumber.
enum separator_type : unsigned {
    any_separator = 0,  // any of ".", "/", "|", ":"
    no_separator = 1,   // one level: names aren't cut
    dot_separator = 2,
    slash_separator = 3,
    pipe_separator = 4,
    colon_separator = 5,
    double_colon_separator = 6,
    at_separator = 7,
    hash_separator = 8,
    kNbOfSeparatorTypes = 9,
};

// "" for any_separator and no_separator.
const char* getSeparatorAsString(unsigned type);
// no_separator for a text that is no separator.
separator_type string_to_separator_type(std::string_view text);

}  // namespace curvePlotProperties

namespace curvePlotDataCurveHierarchy {

// What getInstanceProperty answers.
enum instance_property : unsigned {
    prop_instance_simple_name,
    prop_instance_full_name,
    prop_instance_subcircuit_name,
    prop_instance_separator,
    prop_instance_number_of_curves,
    prop_instance_number_of_instances,
};

// How often one candidate separator occurs in the names of a section.
class cSeparatorVote {
public:
    explicit cSeparatorVote(unsigned type = curvePlotProperties::no_separator) : mType(type) {}

    unsigned getType() const { return mType; }
    uint64_t getNbOfNames() const { return mNames; }
    uint64_t getNbOfOccurrences() const { return mOccurrences; }
    // occurrences: how often the separator occurs in one name (0 leaves the vote as it is).
    void addName(uint64_t occurrences);
    // Decides acceptance against the number of names looked at.
    void evaluateVote(uint64_t nbOfNames);
    bool isAcceptable() const { return mAcceptable; }
    // More names containing it; on a tie a steadier count per name. Equal votes are not better.
    bool isBetter(const cSeparatorVote& other) const;
    double getVariance() const;

private:
    unsigned mType;
    uint64_t mNames = 0;
    uint64_t mOccurrences = 0;
    uint64_t mSquares = 0;
    bool mAcceptable = false;
};

// Index orders for building the tree: by the names cut of their access functions, by the plain
// names, and by length then name. Equal names keep index order.
struct cHierarchyCurveNameSorter {
    const std::vector<std::string>* keys;
    bool operator()(unsigned a, unsigned b) const;
};
struct cCurveNameSorter {
    const std::vector<cCurvePlotVariable>* variables;
    bool operator()(unsigned a, unsigned b) const;
};
struct cCurveNameLengthSorter {
    const std::vector<cCurvePlotVariable>* variables;
    bool operator()(unsigned a, unsigned b) const;
};

}  // namespace curvePlotDataCurveHierarchy

class cCurvePlotDataCurveHierarchy {
public:
    static constexpr uint64_t npos = std::numeric_limits<uint64_t>::max();
    // For computeCurveHierarchy: choose the separator by a vote over the names.
    static constexpr unsigned vote_separator = std::numeric_limits<unsigned>::max();
    using cVote = curvePlotDataCurveHierarchy::cSeparatorVote;

    cCurvePlotDataCurveHierarchy() = default;
    cCurvePlotDataCurveHierarchy(const std::string& simpleName, const std::string& fullName, unsigned separatorType)
        : mSimpleName(simpleName), mFullName(fullName), mSeparatorType(separatorType) {}

    // ---- Fields
    const std::string& getSimpleName() const { return mSimpleName; }
    void setSimpleName(const std::string& name) { mSimpleName = name; }
    const std::string& getFullName() const { return mFullName; }
    void setFullName(const std::string& name) { mFullName = name; }
    unsigned getSeparatorType() const { return mSeparatorType; }
    void setSeparatorType(unsigned type) { mSeparatorType = type; }
    const std::string& getSubcircuitName() const { return mSubcircuitName; }
    void setSubcircuitName(const std::string& name) { mSubcircuitName = name; }
    unsigned getInstanceIndex() const { return mInstanceIndex; }
    const std::vector<cCurvePlotDataCurveHierarchy>& getChildren() const { return mChildren; }
    std::vector<cCurvePlotDataCurveHierarchy>& getChildren() { return mChildren; }
    const std::vector<unsigned>& getCurveIndices() const { return mCurveIndices; }
    const std::vector<std::pair<unsigned, unsigned>>& getCurveIndexRanges() const { return mRanges; }
    void addCurveIndex(unsigned index) { mCurveIndices.push_back(index); }
    // first..last inclusive, for readers that know their instances (one per scope).
    void addRangeOfCurveIndices(unsigned first, unsigned last);
    void clear();

    // ---- Building
    // isRoot: the whole section, with the separator chosen by a vote unless one is given.
    // Otherwise only this instance's subtree is rebuilt, from the names under its full name.
    void computeCurveHierarchy(const std::vector<cCurvePlotVariable>& variables, bool isRoot,
                               unsigned separatorType = vote_separator);
    // keys[first..last) sorted by cHierarchyCurveNameSorter; this level's part of a key starts at start.
    void computeCurveHierarchyRecursive(const std::vector<std::string>& keys, const unsigned* first,
                                        const unsigned* last, size_t start, unsigned separatorType);
    // The new child, which takes this node's separator type.
    cCurvePlotDataCurveHierarchy& pushBackChild(const std::string& simpleName, const std::string& fullName);
    // Into the child of the same simple name (recursively), or as a new child.
    void mergeChild(const cCurvePlotDataCurveHierarchy& child);
    // Folds a last child with one curve and no children back into this node; true if it did.
    bool mergeLastChild();
    // Full names of the subtree from the simple names and separators; nodes cut by more than one
    // separator keep their children's full names.
    void fixHierarchicalNames();
    // Files the curves past the tree's highest index, and extraIndices, under their instances
    // (creating missing ones) and numbers the instances again. Returns the curves filed.
    uint64_t appendExpandedVariables(const std::vector<cCurvePlotVariable>& variables,
                                     const std::vector<unsigned>& extraIndices = {});
    // Orders the curves of each node by name (byLength: shorter names first).
    void sortCurveIndices(const std::vector<cCurvePlotVariable>& variables, bool byLength);
    // Depth first, this node first. Returns the next free index.
    unsigned defineInstanceIndices(unsigned start = 0);

    // ---- Finding
    // The instance of a name: an instance path, or a curve name whose last part is no instance.
    // Null when a part before the last matches no instance.
    const cCurvePlotDataCurveHierarchy* findInstance(std::string_view name, bool caseInsensitive) const;
    // The node of this subtree with that instance index (this one included).
    const cCurvePlotDataCurveHierarchy* findChildInstance(unsigned instanceIndex) const;
    const cCurvePlotDataCurveHierarchy* findChildInstanceSimple(std::string_view name, bool caseInsensitive = false) const;
    const cCurvePlotDataCurveHierarchy* findChildInstanceFull(std::string_view name, bool caseInsensitive = false) const;

    // ---- Counting
    // Instances below this node.
    uint64_t countInstances() const;
    // Rows of the fully expanded subtree below this node: instances and curves.
    uint64_t getHierachySize() const;
    uint64_t getNumberOfCurves(bool recursive = true) const;
    bool computeMinMaxCurveIndices(unsigned& min, unsigned& max) const;
    // Curves are counted node by node, depth first, a node's own curves (indices, then ranges)
    // ahead of its children's. npos when index is past the last curve.
    uint64_t getCurveIndexFromHierarchyIndexRecursive(uint64_t index) const;
    // Label of this node's own curves: "curve N", "curves N .. M" or "K curves".
    std::string getPseudoName() const;
    static std::string getPseudoName(const std::vector<unsigned>& indices);
    // Of the instance with that instance index; false when there is none.
    bool getInstanceProperty(unsigned instanceIndex, unsigned property, std::string& value) const;

    // ---- Names and separators (cCurvePlotDataCurveHierarchySeparators.cpp)
    // The separator that occurs most often in name (ties: table order); no_separator when none.
    static unsigned getSeparatorType(std::string_view name);
    // The first separator of the type at or after start, outside brackets; npos when none.
    static size_t findSeparatorPosition(std::string_view name, size_t start, unsigned type, size_t& length);
    // Adds name to the votes of the candidates (createSeparatorVotes).
    static void countSeparator(std::string_view name, std::vector<cVote>& votes);
    static std::vector<cVote> createSeparatorVotes();
    // The winner of the votes over the names; no_separator when none is acceptable.
    static unsigned chooseSeparator(const std::vector<std::string>& names);
    static bool checkIsPossibleInstanceName(std::string_view name);
    static bool checkIsPossibleCurveName(std::string_view name);
    // Without separators of the type at either end.
    static std::string removeHierarchySeparatorFromString(std::string_view name, unsigned type);
    // Without the wrapper of an access function: "v(a.b)" and "i(x1.r1)" -> "a.b", "x1.r1".
    static std::string removeParenthesesFromName(std::string_view name);
    // The last part of a full name.
    static std::string computeSimpleName(std::string_view fullName, unsigned type);

private:
    cCurvePlotDataCurveHierarchy& insertPath(const std::string& key);
    void collectCurveIndices(std::vector<bool>& present) const;
    uint64_t curveAt(uint64_t& remaining) const;

    std::string mSimpleName;
    std::string mFullName;
    unsigned mSeparatorType = curvePlotProperties::no_separator;
    std::string mSubcircuitName;
    unsigned mInstanceIndex = 0;
    std::vector<cCurvePlotDataCurveHierarchy> mChildren;
    std::vector<unsigned> mCurveIndices;
    std::vector<std::pair<unsigned, unsigned>> mRanges;
};

}  // namespace vx3
