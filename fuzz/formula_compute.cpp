// Arbitrary bytes as a formula, evaluated by one parser over one archive: every input ends with a code of
// the table and its text, whatever it nests, quotes or asks of the database.
#include <cstdint>
#include <cstdlib>

#include "formula/clsparser.h"

using nuvobase::clsString;

static void Check(bool condition) {
    if (!condition) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static velmora::clsArchivio archive;
    static velmora::clsParser parser(&archive);
    parser.Reset(); // each input starts from the predefined variables
    clsString formula, result, message;
    formula.Assign(reinterpret_cast<const char*>(data), int(size));
    const int code = parser.Compute(formula, result);
    Check(code >= 0 && code < velmora::ErrorCodeCount);
    Check(parser.GetErrorText(message) == code && !message.IsEmpty());
    Check(code == 0 || result.IsEmpty());
    return 0;
}
