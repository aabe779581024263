// Loads the values of a dump's curve from the file: the declarations are read again for the
// codes, then only the pieces of the value section that hold the curve's records (the reader
// filed them as the curve's db entries) are scanned. Curves of large dumps are loaded this way
// when they are first shown, and any curve again after its values were released.
#pragma once

#include "model/cCurveDbLoader.h"

namespace vx3 {

class cCurveParserVcdDbLoader : public cCurveDbLoader {
public:
    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file, std::string& error) override;
    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>& file, std::string& error) override;

    // Registers the loader for the dump's db types, once per process.
    static void registerLoader();

private:
    // mapped: the file whose text data is, when data is its mapping (else null).
    int load(cCurveLoadRequest& request, const char* data, uint64_t size, cVxMemoryFile* mapped, std::string& error);
};

}  // namespace vx3
