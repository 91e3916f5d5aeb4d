// The formula tests' table of cases: each row is evaluated in turn by one parser, so that a row may use what
// an earlier one set, and gives its result and code.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "formula/clsparser.h"

namespace formula_test {

using nuvobase::clsString;
using velmora::clsArchivio;
using velmora::clsParser;

struct Case {
    const char* Formula;
    const char* Result;
    int Code;
};

struct Evaluation {
    std::string Result;
    int Code;
    std::string Message;
};

inline Evaluation Evaluate(clsParser& parser, const clsString& formula) {
    clsString result, message;
    const int code = parser.Compute(formula, result);
    EXPECT_EQ(parser.GetErrorText(message), code);
    return {result.Text(), code, message.Text()};
}

inline void CheckCases(clsParser& parser, std::initializer_list<Case> cases) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.Formula);
        const Evaluation got = Evaluate(parser, clsString(row.Formula));
        EXPECT_EQ(got.Code, row.Code) << got.Message;
        EXPECT_EQ(got.Result, row.Result);
    }
}

class Formula : public ::testing::Test {
protected:
    clsArchivio Archive;
    clsParser Parser{&Archive};
};

} // namespace formula_test
