// The root of every reader class: the reader's side of the store. It creates or, on a reload,
// finds again the sections and curves in the order in which a file presents them, so that
// sections keep their ids and plots stay attached.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "model/cCurvePlotDataFile.h"
#include "readers/cCurvePlotParserOptions.h"

namespace vx3 {

class cCurveParserIntermediate {
public:
    cCurveParserIntermediate(cCurvePlotDataFile& store, cCurvePlotParserOptions& options)
        : mStore(store), mOptions(options) {}
    virtual ~cCurveParserIntermediate() = default;

    cCurvePlotDataFile& store() { return mStore; }
    cCurvePlotParserOptions& options() { return mOptions; }
    cFileDbSupport* dbSupport() const { return mDbSupport; }
    cCurvePlotDataSection* currentSection() const { return mCurrentSection; }
    bool checkIsInterrupted() const { return mInterrupted || mOptions.logger().checkActionIsInterrupted(); }
    void setFlagInterrupted(bool flag) { mInterrupted = flag; }

    // ---- Messages, to the options' logger
    void noclMsg(const std::string& text) const { mOptions.logger().noclMsg(text); }
    void debugMsg(const std::string& text) const { mOptions.logger().debugMsg(text); }
    void infoMsg(const std::string& text) const { mOptions.logger().infoMsg(text); }
    void warnMsg(const std::string& text) const { mOptions.logger().warnMsg(text); }
    void highWarnMsg(const std::string& text) const { mOptions.logger().highWarnMsg(text); }
    void errorMsg(const std::string& text) const { mOptions.logger().errorMsg(text); }
    void fatalErrorMsg(const std::string& text) const { mOptions.logger().fatalErrorMsg(text); }

    // ---- The file entry: found or created with the reader's db type, and made current. On a
    // reload the entry of the old sections is kept as it is.
    cFileDbSupport& initDbSupport(const std::string& fileName, unsigned dbType);
    // The name under which a reader files its sections: the file's name, or for text that came
    // from the clipboard or a drop, the name the dispatch chose for it.
    const std::string& getSourceName() const { return mSourceName; }
    void setSourceName(const std::string& name) { mSourceName = name; }

    // ---- Values read into a block of their own take the variable's place in one move, so that
    // a reader may read a whole file before it touches the store (and leaves it untouched when
    // it fails). The variable keeps its derivation settings.
    static void adoptValues(cCurvePlotVariable& variable, cCurvePlotData&& values);

    // ---- Sections. The new section becomes the current one.
    cCurvePlotDataSection* createNewDataSection(cFileDbSupport& file);
    cCurvePlotDataSection* createNewDataSection(const std::string& fileName, const std::string& sectionName);
    cCurvePlotDataSection* createNewDataSection(const std::string& fileName, const std::string& sectionName,
                                                unsigned stepIndex);
    // The index-th old section of a reload (null when there is none), now current.
    cCurvePlotDataSection* findExistingDataSection(uint64_t index);
    // On a reload the next old section of that name, no longer to close; otherwise (or when
    // none is left) a new one, marked new.
    cCurvePlotDataSection* findExistingDataSectionOrCreateNewOne(const std::string& fileName,
                                                                  const std::string& sectionName);
    cCurvePlotDataSection* findExistingDataSectionOrCreateNewOne(const std::string& fileName,
                                                                  const std::string& sectionName, unsigned stepIndex);
    cCurvePlotDataSection* findExistingDataSectionOrCreateNewOne(cFileDbSupport& file, const std::string& sectionName);
    cCurvePlotDataSection* findExistingDataSectionOrCreateNewOne(cFileDbSupport& file, const std::string& sectionName,
                                                                  unsigned stepIndex);
    // A section of that name of the current file, created when missing.
    cCurvePlotDataSection* createNewDataSectionIfItDoesNotExist(const std::string& fileName,
                                                                const std::string& sectionName);
    // The run number (from 1) of a set of run parameters; the same set gives the same number.
    unsigned getOrCreateStepIndex(const std::string& name, double value);
    unsigned getOrCreateStepIndex(const std::vector<std::pair<std::string, double>>& parameters);
    void clear();

    // ---- Reload context: the file's sections before the reload, in order.
    void setReloadSections(const std::vector<cCurvePlotDataSection*>& sections);
    bool checkIsReload() const { return mIsReload; }
    const std::vector<cCurvePlotDataSection*>& getReloadSections() const { return mReloadSections; }

    // ---- Fill order: the variables of one row of a column-shaped file, in file order.
    // On a first parse the variable is created; on a reload it is found again by name and type
    // (and no longer closes). Returns its index in the current section.
    uint64_t pushVariableToFillOrder(const cCurvePlotDataType* type, const std::string& name);
    uint64_t pushSweepVariableToFillOrder(const cCurvePlotDataType* type, const std::string& name, int position);
    void appendToReloadFillOrder(uint64_t index) { mFillOrder.push_back({index, false}); }
    void pushBackToReloadFillOrder(uint64_t index) { appendToReloadFillOrder(index); }
    void insertToReloadFillOrder(uint64_t position, uint64_t index);
    void reserveReloadFillOrder(uint64_t count) { mFillOrder.reserve(count); }
    void clearReloadFillOrder() { mFillOrder.clear(); }
    uint64_t getFillOrderSize() const { return mFillOrder.size(); }
    // The variables of entries [first, last) for the value loop; with complex, complex curves
    // take two columns (real, imaginary). False, with a message, when the sweep variables of
    // the fill order don't match the section's.
    bool createFillOrderFromReloadFillOrder(bool complex, uint64_t first, uint64_t last,
                                            std::vector<cCurvePlotVariable*>& fillOrder);
    // The sweep-matrix form: one sweep vector per dimension, sweepSizes[i] values for sweep i;
    // fillOrder gets the curves of the fill order. False, with a message, when the section has
    // no sweep variables or the sizes don't fit them.
    bool createFillOrderFromReloadFillOrderMatrix(const std::vector<uint64_t>& sweepSizes,
                                                  std::vector<cCurvePlotVariable*>& fillOrder);
    // Empties the values of all variables in the fill order (before they are read again).
    void clearAllValuesInFillOrder();
    // A variable of the current section whose name continues name (a bus or hierarchy ending),
    // from the last one found on; created when there is none.
    uint64_t findOrCreateClosingNextVariable(const cCurvePlotDataType* type, const std::string& name);

    // ---- What the old sections of a reload say about the file's layout.
    bool checkReloadSectionsAreBigEndian() const;
    bool checkReloadSectionsHaveDoublePrecision() const;
    bool checkReloadSectionsHaveDoubleSweepPrecision() const;

    // ---- Names
    // "v1#branch" -> "i(v1)"; a device-letter prefix of a hierarchical name goes:
    // "v.x1.v2#branch" -> "i(x1.v2)". Other names come back unchanged.
    static std::string simplifyBranchName(const std::string& name);
    // The name as the options want it (simplifyBranchName when the option is on).
    std::string adaptVariableName(const std::string& name) const;
    // The unit a CITI file's variable name implies ("" when none).
    static std::string getUnitFromCitiVariableName(const std::string& name);
    // True when a and b differ only by a marker of the real and the imaginary part; common is
    // the name without it.
    static bool checkNamesDefineRealAndImagPartOfSameCurve(const std::string& a, const std::string& b,
                                                           std::string& common);
    // The hierarchy separators (".", "/", ":", "::", "|", "@") that occur in the names, in this
    // order; "I(...)" wrappers are stripped and a name is looked at only up to "#branch".
    static std::vector<std::string> getFoundHierarchySeparators(const std::vector<std::string>& names);
    static bool checkStringDefinesColour(const std::string& text);
    static bool checkStringDefinesLineStyle(const std::string& text);
    static bool checkStringDefinesLineSymbol(const std::string& text);

private:
    struct cFillEntry {
        uint64_t index;
        bool sweep;
    };
    cCurvePlotDataSection* useSection(cCurvePlotDataSection* section);
    cCurvePlotDataSection* findOrCreate(cFileDbSupport& file, const std::string& sectionName, unsigned stepIndex);
    bool checkReloadFiles(bool (*test)(const cCurvePlotVariable&), bool sweeps) const;

    cCurvePlotDataFile& mStore;
    cCurvePlotParserOptions& mOptions;
    cFileDbSupport* mDbSupport = nullptr;
    cCurvePlotDataSection* mCurrentSection = nullptr;
    bool mInterrupted = false;
    bool mIsReload = false;
    std::vector<cCurvePlotDataSection*> mReloadSections;
    std::vector<bool> mReloadSectionUsed;
    std::vector<cFillEntry> mFillOrder;
    uint64_t mClosingStart = 0;
    std::vector<std::vector<std::pair<std::string, double>>> mStepParameters;
    std::string mSourceName;
};

}  // namespace vx3
