#include "app/formulaconsole.h"

#include "formula/clsparser.h"
#include "nuvobase/clsstdinthread.h"

namespace nvoChess {

namespace {

using velmora::clsParser;
using velmora::clsValue;

// The masks of the board as variables: files, ranks, diagonals and one square.
constexpr const char* BoardMasks =
    "FSET('W',0x8080808080808080,'E',0x0101010101010101,'E1',0x0101010101010100,'N',0xff00000000000000,"
    "'S',0x00000000000000FF,'A1H8',0x0102040810204080,'A1G7',0x0002040810204080,'H1G7',0x0002040810204081,"
    "'H1A8',0x8040201008040201,'H1H8',0x0102040810204081,'A2A8G8',0xFEFCF8F0E0C08000,"
    "'A1A8h8',0xFFFEFCF8F0E0C080,'BIT',0x0000000000080000)";

const char* const Samples[] = {
    "F64((((BIT*H1G7)#&W)-0x1)#&(BIT*H1G7)#^BIT)",
    "F64(((BIT*H1A8#&E)-0x1)#&(BIT*H1A8)#^BIT)",
    "F64((BIT*H1A8)#^((BIT*H1A8)/0x40000000000000)*H1A8)",
    "F64((BIT*H1H8)#^((BIT*H1H8)/0x100000000000000*H1H8))",
    "F64(BIT*E1)",
    "F64((((BIT*E)/0x100000000000000)*E)#^(BIT*E))",
    "F64((E-BIT)#&(0x0-E-0x1)#^BIT)",
    "F64(BIT-((W-BIT)#&W#^W)/0x80)",
};

const char* const HelpLines[] = {
    "sample of commands",
    "compute             : (1 + 2) * 3 / 4",
    "set variables       : FSET('X',0x00[,'Y',0x01..-])",
    "display hexadecimal : FHEX(255)",
    "display binary      : FBIN(31)",
    "display 64 bit board: F64(0xffff00000000ffff)",
    "(return value string -> S)",
    "(return value 64 bit -> H)",
    "to exit the console : exit",
};

// One in each byte: the product with it smears each set bit over its own and the higher bytes.
constexpr uint64_t EveryByte = 0x0101010101010101;

// The result of the last line for the next one: S the text, H its 64-bit number, DP that number's bits
// that no lower byte repeats.
void SetLastResult(clsParser& parser, const clsString& result) {
    const uint64_t number = result.ToUInt64();
    clsValue value(result);
    parser.SetVariable(clsString("S"), value);
    value.SetInteger(number);
    parser.SetVariable(clsString("H"), value);
    value.SetInteger(number & ~(number * EveryByte));
    parser.SetVariable(clsString("DP"), value);
}

} // namespace

void RunFormulaConsole(clsChessApplication& app) {
    velmora::clsArchivio archive;
    archive.CommandFile = "test.nvo";
    clsParser parser(&archive);
    clsString result;
    if (parser.Compute(clsString(BoardMasks), result) != 0) result.Clear();
    for (const char* sample : Samples) {
        parser.Compute(clsString(sample), result);
        app.Output->Write(result, true);
    }
    for (const char* line : HelpLines) app.Output->Write(line, true);

    for (;;) {
        clsString line = nuvobase::StdIn.ReadLine(true);
        // Empty text comes only once the input has ended.
        if (line.IsEmpty() || clsString(line).Trim() == "exit") break;
        clsString state;
        parser.Compute(line, result);
        parser.GetErrorText(state);
        app.Output->Write(result.IsEmpty() ? clsString(" ") : result, true);
        app.Output->Write(clsString("\t[") + state + "]", true);
        SetLastResult(parser, result);
    }
    app.Engine->Info(clsString("back to xboard mode"));
}

} // namespace nvoChess
