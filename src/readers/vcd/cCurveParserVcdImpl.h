// The value change dump grammar over a range of bytes (a mapped file or text in memory): the
// declarations in one pass of tokens, then the values (see cCurveParserVcdScanner.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "readers/vcd/cCurveParserVcdBase.h"

namespace vx3 {

class cCurveParserVcdImpl : public cCurveParserVcdBase {
public:
    using cCurveParserVcdBase::cCurveParserVcdBase;

    // The whole text: 0, 15 (values read up to a fault), 16 (nothing usable), 26 (interrupted).
    // With detectOnly the declarations are checked and nothing else.
    returnCode parseFileImpl(const char* begin, const char* end, const std::string& fileName, bool detectOnly,
                             bool mapped = false);
    // Threads that read the values; 0 (the default) takes one per core, up to 8.
    void setMaxThreads(unsigned threads) { mMaxThreads = threads; }
    // Pieces are at least this large (small files are read in one piece).
    void setMinPieceSize(uint64_t bytes) { mMinPieceSize = bytes ? bytes : 1; }
    // Files from this size on keep their values in the file until a curve is shown; 0 reads
    // every value at once. By default 256 MB, or the option
    // prop_parser_option_minimum_size_for_db_access (bytes) when larger; negative: never.
    void setMinimumSizeForDbAccess(uint64_t bytes) { mMinimumSizeForDbAccess = bytes; mSizeChosen = true; }
    // Pieces the last read of values used (1: one sequential pass).
    uint64_t getNbOfPiecesRead() const { return mPiecesRead; }

private:
    // ---- Declarations
    bool parseDeclarationSection();
    bool parseKeyword(bool& finished);
    bool parseVarStatement(const char* at);
    bool parseScopeStatement(const char* at);
    bool parseUpscopeStatement(const char* at);
    bool parseTimeScaleStatement(const char* at);
    bool parseStringUntilEnd(std::string& text);
    bool checkMatchesEnd();
    // The next blank-separated token; empty at the end of the text.
    std::string_view nextToken();
    std::string_view peekToken();

    // ---- Values (cCurveParserVcdValues.cpp): a counting pass and a storing pass, each over
    // pieces of the section in parallel. Sets code to 15 or 16 on a fault.
    bool parseSimulationSection(returnCode& code);

    bool fail(const char* at, const std::string& text);
    uint64_t offsetOf(const char* at) const { return static_cast<uint64_t>(at - mBegin); }

    const char* mBegin = nullptr;
    const char* mPosition = nullptr;
    const char* mEnd = nullptr;
    bool mMapped = false;
    unsigned mMaxThreads = 0;
    uint64_t mPiecesRead = 0;
    uint64_t mMinimumSizeForDbAccess = 0;
    bool mSizeChosen = false;
    bool readValuesNow();
    uint64_t mMinPieceSize = uint64_t(4) << 20;
};

}  // namespace vx3
