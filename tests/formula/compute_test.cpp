// The formula language: operators, operands, errors, limits, scopes and states.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "formula/functiontable.h"
#include "formulacases.h"

using namespace formula_test;

TEST_F(Formula, OperatorsOperandsAndErrors) {
    CheckCases(Parser, {
                           {"(1 + 2) * 3 / 4", "2.25", 0},
                           {"0xFFFFFFFFFFFFFFFF + 0x2", "1", 0}, // integers wrap; doubles would not
                           {"0xFFFFFFFFFFFFFFFF + 2", "18446744073709551616", 0},
                           {"0x8000000000000000 / 0x2", "4611686018427387904", 0},
                           {"7 \\ 2", "3", 0},
                           {"(0-7) \\ 2", "-4", 0},
                           {"-7 \\ 2", "-3", 0},   // the leading minus waits for the quotient
                           {"2 ^ 3 ^ 2", "64", 0}, // left to right
                           {"1+-2*3+4", "-1", 0},
                           {"2 - -3", "5", 0},
                           {"2^-1", "", 16}, // no negation after ^: a minus short of its left side
                           {"'it''s'", "it's", 0},
                           {"\"say \"\"hi\"\"\"", "say \"hi\"", 0},
                           {"'a' & 1.5 & 0x2", "a1.52", 0},
                           {"1 + 'x' + '2'", "3", 0},
                           {"'B' = 'b'", "1", 0},
                           {"'a' < 'B'", "1", 0},
                           {"0x2 > 1.5", "1", 0},
                           {"2 <= 2", "1", 0},
                           {"2 >= 3", "0", 0},
                           {"1 <> 1", "0", 0},
                           {"'abc' # 'B'", "1", 0},
                           {"'abc' #! 'B'", "0", 0},
                           {"'abc' #< 'AB'", "1", 0},
                           {"'abc' #> 'bc'", "1", 0},
                           {"'abc' #% 'a%c'", "1", 0},
                           {"0xF0 #& 0x3C", "48", 0},
                           {"0xF0 #| 15", "255", 0},
                           {"0xFF #^ '15'", "240", 0},
                           {"~0x0", "18446744073709551615", 0},
                           {"1 + 1 = 2", "1", 0}, // = ranks below +
                           {"3 >> 'x'", "?", 0},
                           {"NOT 1 = 1", "0", 0},
                           {"NEG 3", "-3", 0},
                           // The words take the place of the ")" before them.
                           {"(1 = 1) AND (2 = 3)", "0", 0},
                           {"(1 = 1) OR (2 = 3)", "1", 0},
                           {"A1:B2", "A1:B2", 0},
                           {"   ", "", 0},
                           {"TAB & CRLF & 'x' & NULL", "\t\r\nx", 0},
                           {"\"abc", "", 17},
                           {"1 2", "", 6},
                           {"(1", "", 5},
                           {"1)", "", 5},
                           {"nothing", "", 4},
                           {"foo(1)", "", 3},
                           {"1 AND 1", "", 2}, // the word takes the place of an operator that is not there
                           {"1 =", "", 8},
                           {"1 +", "", 16},
                           {"5/0", "", 14},
                           {"1 + 5/0 & 'x'", "", 14},
                           {"(5/0) = (5/0)", "0", 0}, // comparisons count error values as unequal
                       });
    // The message is the code's text and the formula from where it went wrong.
    EXPECT_EQ(Evaluate(Parser, clsString("1 + foo(2)")).Message, "Unknown function: foo(2)");
    EXPECT_EQ(Evaluate(Parser, clsString("1 + 2/0 + 3")).Message, "Error in Function: /0 + 3");
    EXPECT_EQ(Evaluate(Parser, clsString("1 + 1")).Message, "Ok");
}

TEST_F(Formula, DisplayVariablesArchiveLookupsAndTheArchivesVariables) {
    CheckCases(Parser,
               {
                   {"FHEX(0x1F)", "000000000000001F", 0},
                   {"FHEX('255')", "00000000000000FF", 0},
                   {"FHEX(-1)", "FFFFFFFFFFFFFFFF", 0},
                   {"FBIN(5)", "101", 0},
                   {"FHEX(1, 2)", "", 8},
                   {"FSET('a',0x10,'b',2)", "2", 0},
                   {"a+a", "32", 0},
                   {"A + B", "18", 0}, // names ignore case
                   {"FSET('a')", "", 8},
                   {"FSET('x',0x1) + x", "2", 0}, // the + runs FSET before x is read
                   {"FSET('$a.b', 0x7)", "7", 0},
                   {"$$a.$b", "7", 0},
                   {"FSET('s', 'text') & s", "texttext", 0},
                   {"FGET('select count(*) from ZSYSFOLDERS')", "6", 0},
                   {"FGET('ZSYSFOLDERS', 'Name', 'Code=4')", "System", 0},
                   {"FGET('ZSYSFOLDERS', 'Name', 'Code=4', '', 'Parent')", "System", 0},
                   {"FGET('ZSYSFOLDERS?', 'Name', 'Code=4')", "select Name from ZSYSFOLDERS where Code=4", 0},
                   {"FGET('select 1 where 0')", "", 14},
                   {"FGET('no statement')", "", 14},
                   {"FGET()", "", 14},
                   {"FGET('', 'Name', '1')", "", 14},
               });

    // Without an archive a single value is read, but nothing runs.
    clsParser alone(nullptr);
    CheckCases(alone, {{"12", "12", 0}, {"1 + 1", "", 7}, {"(1)", "", 7}, {"FHEX(1)", "", 7}, {"CR", "", 4}});
    // The rows of ZSYSVARS become variables of every new parser.
    ASSERT_TRUE(Archive.InsertRow(clsString("ZSYSVARS"), clsString("Name,Value"), {"Greeting", "hello"}));
    clsParser parser(&Archive);
    CheckCases(parser, {{"greeting & '!'", "hello!", 0}});
    parser.SetOption(clsString("ft_field"), clsString("Value"));
    EXPECT_STREQ(parser.ValueField.Text(), "Value");
}

TEST_F(Formula, LimitsScopesAndStates) {
    const std::string minuses = "1" + std::string(600, '-') + "1";
    const std::string closers = "1" + std::string(1 << 20, ')');
    // Deep parentheses, long lists and long sums are typed into the console by the end-to-end test.
    for (const auto& [formula, result, code] : {std::tuple{minuses, "", 2}, {closers, "", 5}}) {
        SCOPED_TRACE(formula.substr(0, 40));
        const Evaluation got = Evaluate(Parser, clsString(formula.c_str()));
        EXPECT_EQ(got.Code, code);
        EXPECT_EQ(got.Result, result);
    }
    // Every byte value, alone and between two operands, gives a code of the table.
    for (int byte = 1; byte < 256; byte++) {
        const char alone[] = {char(byte), 0}, between[] = {'1', char(byte), '2', 0};
        for (const char* formula : {alone, between}) {
            const Evaluation got = Evaluate(Parser, clsString(formula));
            EXPECT_TRUE(got.Code >= 0 && got.Code < velmora::ErrorCodeCount) << byte;
            EXPECT_EQ(got.Message.rfind(velmora::ErrorText(got.Code), 0), 0u) << byte;
        }
    }
    // Whatever the number of arguments, a function gives a code of the table.
    for (const velmora::FunctionName& function : velmora::FunctionNames) {
        std::string arguments;
        for (int count = 0; count <= 8; count++) {
            const std::string formula = std::string(function.Name) + "(" + arguments + ")";
            SCOPED_TRACE(formula);
            const Evaluation got = Evaluate(Parser, clsString(formula.c_str()));
            EXPECT_TRUE(got.Code >= 0 && got.Code < velmora::ErrorCodeCount);
            arguments += count == 0 ? "'1'" : ",'1'";
        }
    }

    // Scopes and states.
    velmora::clsValue value(clsString("outer"));
    Parser.SetVariable(clsString("v"), value);
    Parser.PushScope();
    value.SetText(clsString("inner"));
    Parser.SetVariable(clsString("v"), value);
    value.SetInteger(7);
    Parser.SetGlobal(clsString("g"), value);
    CheckCases(Parser, {{"v & g", "inner7", 0}});
    Parser.PopScope();
    Parser.PopScope();
    Parser.PopScope(); // the first scope stays
    CheckCases(Parser, {{"g", "7", 0}, {"v", "", 4}, {"CR", "\r", 0}});
    Parser.Reset();
    CheckCases(Parser, {{"g", "", 4}, {"LF", "\n", 0}});

    // A nested evaluation keeps the outer one's message.
    clsString result, message;
    Parser.Compute(clsString("1 +"), result);
    EXPECT_EQ(Parser.ComputeNested(clsString("(1"), result, false, true), velmora::ErrorParentheses);
    Parser.GetErrorText(message);
    EXPECT_STREQ(message.Text(), "Missing some parameter or bad )(: +");

    Parser.Translations.SetValue(clsString("2"), clsString("two"));
    EXPECT_EQ(Parser.Compute(clsString("1 + 1"), result, true), 0);
    EXPECT_STREQ(result.Text(), "two");
    EXPECT_THROW(Parser.Compute(result, result), std::logic_error);
}
