// The codes the formula language reports, and the codes of its operators and functions.
#pragma once

#include <cstdint>

namespace velmora {

enum ParserError : int32_t {
    ErrorNone = 0,
    ErrorGeneric = 1,
    ErrorParser = 2, // the operator stack would go below empty, or past its size
    ErrorUnknownFunction = 3,
    ErrorUnknownVariable = 4,
    ErrorParentheses = 5,
    ErrorValueCount = 6,
    ErrorArchiveClosed = 7,
    ErrorArgumentCount = 8,
    ErrorInFE = 9,
    ErrorFEParameters = 10,
    ErrorParameter1 = 11,
    ErrorParameter2 = 12,
    ErrorParameter3 = 13,
    ErrorInFunction = 14,
    ErrorInFINTER = 15,
    ErrorMissingOperand = 16,
    ErrorUnclosedString = 17,
    ErrorInMacro = 18,
    ErrorNegativeRoot = 19,
    ErrorDivisionByZero = 20,
    ErrorKeyOption = 21,
    ErrorFileNotFound = 22,
    ErrorTokenIndex = 23,
    ErrorEmptyList = 24,
    ErrorEqualsAndContains = 25,
    ErrorCodeCount = 26,
};

// The text of a code; "Generic error" for a code outside the table.
const char* ErrorText(int32_t code);

// Operator codes below 256 are the operator's character; these stand for the words and multi-character
// operators.
enum OperatorCode : int32_t {
    CodeEnd = 0,
    CodeNotContains = 'N',  // #!
    CodeStartsWith = 'S',   // #<
    CodeEndsWith = 'E',     // #>
    CodeMatches = 'L',      // #%
    CodeBitAnd = 'A',       // #&
    CodeBitOr = 'O',        // #|
    CodeBitXor = 'X',       // #^
    CodeLessEqual = '9',    // <=
    CodeGreaterEqual = ';', // >=
    CodeNotEqual = '8',     // <>
    CodeShift = ':',        // >>
    CodeAnd = 352,
    CodeOr = 353,
    CodeNot = 354,
    CodeNeg = 355,
};

// The first function code; functions take the codes from here on, beside the words above.
constexpr int32_t FirstFunctionCode = 257;
constexpr int32_t LastFunctionCode = 368;

} // namespace velmora
