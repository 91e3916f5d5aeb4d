#include "formula/parsercodes.h"

namespace velmora {

namespace {

const char* const ErrorTexts[ErrorCodeCount] = {
    "Ok",
    "Generic error",
    "clsParser error",
    "Unknown function",
    "Unknown variable",
    "Bad (((...)))",
    "Missing operator or too many parameters",
    "Archive is closed",
    "Too many or missing parameters",
    "Error in FE",
    "Bad parameters for FE",
    "Bad parameter 1 for Function",
    "Bad parameter 2 for Function",
    "Bad parameter 3 for Function",
    "Error in Function",
    "Error in FINTER",
    "Missing some parameter or bad )(",
    "Missing last \"",
    "Error in macro",
    "Value<0 in sqrt",
    "Division by zero",
    "Bad key option",
    "File not found",
    "DefaultIndex>Index in FTOKEN",
    "Empty list/item",
    "Bad use of = and #",
};

} // namespace

const char* ErrorText(int32_t code) {
    return code >= 0 && code < ErrorCodeCount ? ErrorTexts[code] : ErrorTexts[ErrorGeneric];
}

} // namespace velmora
