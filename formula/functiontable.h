// The built-in functions: their codes, in the order of the table of names.
#pragma once

#include <cstdint>

namespace velmora {

enum FunctionCode : int32_t {
    // Table look-ups, values and lists.
    FunctionFT = 257,
    FunctionFTY,
    FunctionFMIN,
    FunctionFMAX,
    FunctionFINTER,
    FunctionFP,
    FunctionFN,
    FunctionFE,
    FunctionFQ,
    FunctionFS,
    FunctionFSS,
    FunctionFGET,
    FunctionFGETX,
    FunctionFGETF,
    FunctionFGETV,
    FunctionFLIST,
    FunctionFSORT,
    FunctionFSEARCH,
    FunctionFTSEARCH,
    // Text and lists (276 is free).
    FunctionFSUBST = 277,
    FunctionFMID,
    FunctionFMUL,
    FunctionFSUM,
    FunctionFNOREP,
    FunctionFANY,
    FunctionFONLYONE,
    FunctionFMIX,
    FunctionFTRIM,
    FunctionFTRIML,
    FunctionFTRIMR,
    // Logic.
    FunctionIF,
    FunctionAND,
    FunctionOR,
    FunctionNOT,
    FunctionNEG,
    FunctionMIN,
    FunctionMAX,
    FunctionAVG,
    // Text, digests and 64-bit display.
    FunctionFLEN,
    FunctionFCASE,
    FunctionFTEXT,
    FunctionFCHAR,
    FunctionFMD5,
    FunctionFHEX,
    FunctionFBIN,
    FunctionF64,
    FunctionFREVERSE,
    FunctionFNOTA,
    // Variables.
    FunctionFV,
    FunctionFVAR,
    FunctionFVARN,
    FunctionFVARNAMES,
    FunctionFVAROK,
    FunctionFVARKO,
    FunctionFSET,
    FunctionFSETVARS,
    FunctionFSWAP,
    FunctionFSETOPT,
    FunctionFGETOPT,
    FunctionFPARSE,
    // Text searches and tokens.
    FunctionFINSTR,
    FunctionFNE,
    FunctionFSELECT,
    FunctionFVALIDATE,
    FunctionFEQ,
    FunctionFTOKEN,
    FunctionFTOKENL,
    FunctionFTOKENR,
    FunctionFTOKENLW,
    FunctionFTOKENRW,
    // Arithmetic.
    FunctionFABS,
    FunctionFSIN,
    FunctionFCOS,
    FunctionFTAN,
    FunctionFASIN,
    FunctionFACOS,
    FunctionFATAN,
    FunctionFRAD,
    FunctionFDEG,
    FunctionFSQR,
    FunctionFINT,
    FunctionFMOD,
    FunctionFROUND,
    FunctionFDIST,
    // Padding, macros, scripts and currency.
    FunctionFFILL,
    FunctionFMACRO,
    FunctionFMACROGET,
    FunctionFMACROADD,
    FunctionFMACRODEL,
    FunctionFMACROCLEAR,
    FunctionFEXECUTE,
    FunctionFSCRIPT,
    FunctionFDPIC,
    FunctionFCURR,
    // Row functions and sheet arithmetic (352 to 355 are the operator words).
    FunctionFRADD = 356,
    FunctionFRADDM,
    FunctionFRADDM2,
    FunctionFRMAX,
    FunctionFRMIN,
    FunctionFRMED,
    FunctionFRCOUNT,
    FunctionFRNOZERO,
    FunctionFRZERO,
    FunctionSUM,
    FunctionROUND,
    FunctionROUNDUP,
    FunctionROUNDDOWN,
};

struct FunctionName {
    const char* Name;
    int32_t Code;
};

constexpr int FunctionCount = 107;
extern const FunctionName FunctionNames[FunctionCount];

} // namespace velmora
