// The three sources, compiled once here so that errors show in this library; users instantiate
// their own copies, which lets the number parser inline into their loops.
#include "readers/scan/cParserBase.h"

namespace vx3 {
template class cParserBase<cParserBaseMappedIterator>;
template class cParserBase<cParserBaseStringIterator>;
template class cParserBase<cParserBaseFileIterator>;
}  // namespace vx3
