// The block loader of formats that store fixed-size binary values, either packed or as one row
// of all curves per point (each curve a column at its own offset, rows stride bytes apart).
// A curve's db entries are chunks of (file position of the first value, value count); its db
// stride is the row size, 0 when its values are packed. A reader registers one instance per
// db type it produces.
#pragma once

#include "model/cCurveDbLoader.h"

namespace vx3 {

class cStridedBinaryDbLoader : public cCurveDbLoader {
public:
    explicit cStridedBinaryDbLoader(bool bigEndian = false) : mBigEndian(bigEndian) {}

    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxMemoryFile>& file, std::string& error) override;
    int loadBlocks(cCurveLoadRequest& request, cBitWiseParser<cVxBinFile>& file, std::string& error) override;
    // Curves of one row layout (one chunk each, same count and stride) come out of one pass
    // over the rows, split among threads.
    int loadSeveral(std::vector<cCurveLoadRequest*>& requests, cFileDbSupport& file, unsigned threads,
                    std::string& error) override;

    // Bytes of one stored value of a flat data type, 0 for the others.
    static unsigned valueWidth(unsigned dataType);

private:
    template <class File>
    int load(cCurveLoadRequest& request, cBitWiseParser<File>& file, std::string& error);
    void swapBytes(char* values, uint64_t count, unsigned dataType) const;

    bool mBigEndian;
};

}  // namespace vx3
