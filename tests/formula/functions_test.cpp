// The built-in functions: one table of formulas with their results and codes, and every name called with
// any number of arguments.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "formulacases.h"

using namespace formula_test;

TEST_F(Formula, FunctionsListsMacrosAndNames) {
    CheckCases(
        Parser,
        {
            {"FP(2, 'a', 'b')", "b", 0},
            {"FN('2.5x') + 1", "3.5", 0},
            {"FE('x')", "", 9},
            {"FE('x', 1)", "", 10},
            {"IF(1, 'a', FE('x'))", "", 9}, // arguments are evaluated first
            {"FSET('FE_x', 0x5) + FE('x')", "10", 0},
            {"FQ('it''s')", "'it''s'", 0},
            {"FS('a', 1, 0x2)", "a12", 0},
            {"FSS('-', 'a', 'b', 'c')", "a-b-c", 0},
            {"FSS('-')", "", 8},
            {"FSORT('b,C,a', ',')", "a,b,C", 0},
            {"FSUBST('a-b-c', '-', '+')", "a+b+c", 0},
            {"FMID('abcdef',2,3)", "bcd", 0},
            {"FMID('abcdef',2)", "bcdef", 0},
            {"FMID('abcdef')", "", 8},
            {"FTRIM('xxaxx', 'x') & FTRIML('xxaxx', 'x') & FTRIMR('xxaxx', 'x')", "aaxxxxa", 0},
            {"FTRIM('xax', 'xy')", "", 12},
            {"FLEN('abc') + FLEN(5/0)", "3", 0},
            {"FCASE('hello world', 3) & FCASE('ab', 0) & FCASE('x', 9)", "Hello WorldABx", 0},
            {"FCHAR(65) & FCHAR(0)", "A", 0},
            {"FMD5('abc')", "900150983CD24FB0D6963F7D28E17F72", 0},
            {"FREVERSE('abcdef', 2) & FREVERSE('ab', 0)", "efcdabab", 0},
            {"FINSTR('c', 'abcabc') & FINSTR('C', 'abcabc', 3) & FINSTR('z', 'a') & FINSTR('a', 'a', -1)",
             "25-1-1", 0},
            {"FNE('', 'x', 'y')", "x", 0},
            {"FSELECT('b', 'a', 1, 'B', 2)", "2", 0},
            {"FEQ('B','a','b')", "1", 0},
            {"FTOKEN('a,b,c',',',1)", "b", 0},
            {"FTOKEN('a,,c',',',1,0)", "a", 0},
            {"FTOKEN('a,b',',',0,1)", "", 23},
            {"FTOKENLW('a,b,c',',',1) & '|' & FTOKENRW('a,b,c',',',1)", "a,b|c", 0},
            {"FTOKENL('a=b', '=') & FTOKENR('a=b', '=')", "ab", 0},
            {"FFILL('7', 3, '0') & FFILL('7', -3, '.')", "0077..", 0},
            {"FFILL('7', 0x7FFFFFFF, '0')", "", 12},
            {"FONLYONE('a----b', '-')", "a-b", 0},
            {"IF(0, 'a', 0x2) + 0x1", "3", 0},
            {"IF(1, 2)", "", 8},
            {"AND(1, 2) & OR(0, 0) & NOT(0, 0) & NEG(1, 2)", "101-2", 0},
            {"MIN(3, 1, 2) & MAX(3, 1, 2) & AVG(1, 2)", "131.5", 0},
            {"AVG()", "", 0},
            {"FINT(2.5) & FINT(-2.5) & FINT(2.4) & FINT(2.4,1) & FINT(2.6,-1) & FINT(2,7)", "3-32320", 0},
            {"ROUND(2.345,2) & ' ' & ROUND(2.344,2) & ' ' & ROUNDUP(2.341,2) & ' ' & "
             "ROUNDDOWN(-2.341,2)",
             "2.35 2.34 2.35 -2.35", 0},
            {"ROUND(1,11)", "", 12},
            {"FSQR(-1)", "", 19},
            {"FSQR(16) + FABS(-1) + FDEG(FRAD(90))", "95", 0},
            {"FMOD(5,0)", "", 20},
            {"FMOD(7,4) & FROUND(7,4) & FROUND(2.5)", "343", 0},
            {"FROUND(7,0)", "", 20},
            {"FDIST(0,0,0,2,3,6)", "7", 0},
            {"FCURR(1234.5,1,1)", "1234,50", 0},
            {"FCURR(-1234567.006,0,1)", "-1.234.567,01", 0},
            {"FCURR(0.125,0,2) & FCURR(-0.125,0,2)", "0.13-0.13", 0}, // halves away from zero
            {"FDPIC(1) & FCURR(0.5)", "10,50", 0},
            {"FV('none') & FVAR('none') & FVARN('none') & FVAROK('none') & FVARKO('none')", "0001", 0},
            {"FSET('a', 0x10) + FV('a')", "32", 0},
            {"FVARNAMES('FE_', ';')", "FE_x=5", 0},
            {"FSWAP('sw', 'new') & FSWAP('sw', 'newer')", "0new", 0},
            {"FSETOPT('Mode', 'fast') & FGETOPT('MODE')", "fastfast", 0},
            {"FSETVARS('p=1;q=''a;b''', ';', 1) & p & q", "21'a;b'", 0},
            {"FSET('NOTA_y', 1) & FNOTA('x,y')", "11", 0},
            {"FRADD('first', 2) & FRZERO(3)", "first3", 0},
            {"FTEXT('/nonexistent/file')", "", 22},
            {"FTEXT('/dev/zero')", "", 22},
            {"FSUM(',','1,2,3') & ' ' & FMUL(',','2,3') & ' ' & FSUM(',',';','1,2','3,4')", "6 6 4;6", 0},
            {"FSUM(',',';','1,,3','1,1,1')", "2;;4", 0},
            {"FMUL(',',';','1,2','  ')", "", 24},
            {"FNOREP('a,b,A,c,b', ',') & ' ' & FNOREP('1:x,2:y,3:x', ',', ':')", "a,b,c 4:x,2:y", 0},
            {"FNOREP('a', ',,')", "", 12},
            {"FANY('1,2,3', ',', '#ANY#*2', ';')", "2;4;6", 0},
            {"FANY('1,x', ',', '#ANY#+1', ';')", "", 4},
            {"FMIX('a,b,c', ',', '1,2', ',', '=', ';')", "a=1;b=2;c=", 0},
            {"FVALIDATE('1>2', 'big', '1<2', 'small') & FVALIDATE('0', 'x')", "small", 0},
            {"FVALIDATE('$ = ''ok''', 'ok')", "ok", 0},
            {"FMACRO('nothing')", "nothing", 0},
            {"FMACROADD('sq','#1#*#1#') & FMACRO('sq',3) & FMACROGET('sq',3)", "sq93*3", 0},
            {"FMACROADD('q','^^x^^') & FMACROGET('q')", "q\"x\"", 0},
            {"FMACRODEL('sq') & FMACRO('sq', 3)", "sqsq", 0},
            {"FMACROCLEAR()", "", 6},
            {"FMACROADD('r', 'FMACRO(''r'')') & FMACRO('r')", "", 18},
            {"FEXECUTE('1+1' & FCHAR(10) & '2+2')", "2\n4", 0},
            {"FEXECUTE('1+' & FCHAR(10) & '2')", "2", 0},
            {"FEXECUTE('1' & FCHAR(10) & '1+')", "", 18},
            {"FEXECUTE('1', 'PATCH', 'select 2 as Tipo, ''x'' as Testo')", "1\xA6x", 0},
            // A script gives the code of its last formula as its result.
            {"FSCRIPT('print 1') & FSCRIPT('print 1+') & FSCRIPT('a', 'b')", "0160", 0},
            {"FSCRIPT('print 1+' & CR & 'print 2')", "0", 0},
            {"FSCRIPT('print 1+' & CRLF & 'print 2')", "16", 0}, // LF opens the next line: no statement
            {"FSCRIPT('next q' & CR & 'loop on q' & CR & 'print 1+')", "16", 0},
            {"FSCRIPT('query q as ''select 1''' & CR & 'loop on q' & CR & 'next z' & CR & 'seek z 0')", "0",
             0},
            {"FSCRIPT('query q as ''select 1''' & CR & 'loop on q' & CR & 'seek q 0')", "18", 0},
            // Loops that never end, one inside the other, share one bound.
            {"FSCRIPT('query q as ''select 1''' & CR & 'loop on q' & CR &"
             "'print FSCRIPT(''query q as ''''select 1'''''' & CR & ''loop on q'' & CR & ''seek q 0'')' & CR "
             "&"
             "'seek q 0')",
             "18", 0},
            {"FSCRIPT('query q as ''select''' & CR & 'loop on q' & CR & 'print 1+' & CR & 'next q')", "16",
             0},
            {"FPARSE('P', 'b + a * FMID(c, 1) + 2 + ''lit''')", "a,b,c", 0},
            {"FPARSE('parameters', 'FE(''x'') & FNOTA(''y'') & FVAR(''z'', q) & FVAROK(''w'') & "
             "FS(''v'') & A1:B2 AND $s.t')",
             "$s.t,A1:B2,FE_x,NOTA_y,w,z", 0},
            {"FPARSE('X', 'a')", "", 8},
        });
}

// A table of values keyed by X and Y, under the names the look-ups use, and a sheet of cells.
TEST_F(Formula, TableLookupsAndScripts) {
    velmora::clsTableDescriptor rates;
    rates.Name = "Rates";
    rates.Columns = "@0,X,Y";
    rates.Types = "FLL";
    rates.KeyFields = "X";
    ASSERT_TRUE(Archive.CreateTable(rates));
    for (const auto& [value, x, y] : {std::tuple{"10", 1, 1}, {"12", 1, 2}, {"20", 2, 1}, {"40", 4, 1}})
        ASSERT_TRUE(Archive.InsertRow(rates.Name, rates.Columns, {value, x, y}));
    ASSERT_TRUE(Archive.InsertRow(clsString("ZSYST_SHEETS"), clsString("idSheet,Code"), {1, "S1"}));
    for (const auto& [row, column, value] : {std::tuple{1, 1, "5"}, {2, 1, "7"}, {5, 5, "100"}})
        ASSERT_TRUE(Archive.InsertRow(clsString("ZSYST_CELLS"), clsString("idSheet,Row,Column,Value"),
                                      {1, row, column, value}));
    CheckCases(
        Parser,
        {
            {"FT('Rates', 1, 2)", "12", 0},
            // Shown, a statement writes its names as given; only the one that runs quotes them.
            {"FT('Rates?', 1, 2)", "select @0,X,Y from Rates where X='1' and Y='2'", 0},
            {"FMIN('Rates?', 3, 1)",
             "select @0,X,Y from Rates where X<='3' and Y<='1' order by X desc,Y desc", 0},
            {"FGETV('Rates?', 1, 2)", "select Y from Rates where @0='1' and X='2'", 0},
            {"FT('Rates', 9)", "", 14},
            {"FT('Rates')", "", 14},
            {"FMIN('Rates', 3) & FMAX('Rates', 3) & FMAX('Rates', 1, 2)", "204012", 0},
            {"FTY('Rates', 0, 1)", "", 14},
            {"FGETX('ZSYSFOLDERS', 'Name', 'Code>', '1', '_<3')", "User", 0},
            {"FGETX('ZSYSFOLDERS?', 'Name', 'Code>', '1', '_<3')",
             "select Name from ZSYSFOLDERS where Code>1 and Code<3", 0},
            {"FGETF('ZSYSFOLDERS', 'Name', 4, 5)", "ZSYSCOPY", 0},
            {"FGETV('ZSYSOPTIONS', 'BACKUP_ON_SAVING')", "true", 0},
            {"FLIST('ZSYSFOLDERS', 'Name,Code', 'Parent=1', ';')", "User;2;Application;3;System;4", 0},
            {"FINTER('Rates', 3) & ' ' & FINTER('Rates', 1)", "30 10", 0},
            {"FINTER('Rates', 9)", "", 15},
            {"FRCOUNT('ZSYSFOLDERS', 'Parent=1') & FRCOUNT('ZSYSVARS', '')", "30", 0},
            {"FRCOUNT('Nowhere', '')", "", 8},
            {"FSEARCH('table', 'ZSYSVARS')", "ZSYSVARS (Name T, Value T) key Name order Name", 0},
            {"FSEARCH('tables formula', 'strikethrough') & FSEARCH('folder')", "ZSYST_STYLES#folder#", 0},
            {"FSEARCH('value', 'ZSYSFOLDERS', 'System', 'User')", "1,1", 0},
            {"FSEARCH('other')", "", 8},
            {"FTSEARCH(20, 40)", "2,4", 0},
            {"SUM(1, 2, '3x')", "6", 0},
            {"SUM(S1.A1:A2, 1) & ' ' & SUM(S1.A1:E5)", "13 112", 0},
        });

    // Scripts over a system table filled by insert into: each prints what it bound or set, and a script that
    // writes through set changes the table.
    for (const auto& [id, name] : {std::tuple{1, "a"}, {2, "b"}, {3, "c"}})
        ASSERT_TRUE(Archive.InsertRow(clsString("ZSYSPARS"), clsString("idPar,Name"), {id, name}));
    const struct {
        const char* Lines;  // CR between lines
        const char* Output; // entries joined by |
        int Code;
    } scripts[] = {
        {"query p as 'select idPar, Name from ZSYSPARS order by idPar'\rloop on p\r"
         "printl p.$ROW_INDEX & ':' & p.idPar & '=' & p.Name\rnext p\rprint '.'\rclose p\rprint p.Name",
         "0:1=a|1:2=b|2:3=c.c", 0},
        // Without a loop, next goes back to the start; the first line knows no row of q yet.
        {"query q as 'select Name from ZSYSPARS'\rprintl q.Name\rnext q", "|b|c", 0},
        {"query r as 'select Name from ZSYSPARS'\rloop on r\rprint r.Name\rnext r 5\rset n = 'x' & 1\r"
         "set n. = n & r.$ROW_INDEX",
         "a|n=x1|n=x10", 0},
        // The row that update made current stays current after the loop.
        {"query p as 'select Name from ZSYSPARS where idPar > 1'\rloop on p\rupdate p\r"
         "set p.Name = p.Name & '!'\rnext p\rset p.Name = 'last'",
         "b!|c!|last", 0},
        {"query p as 'select idPar, Name from ZSYSPARS where idPar = 1'\rloop on p\rcopy p\r"
         "set p.idPar = p$.idPar + 10\rnew p\rset p.Name = 'new' & p$.idPar\rset p.Other = 1",
         "11|new11|1", 0},
    };
    for (const auto& script : scripts) {
        SCOPED_TRACE(script.Lines);
        nuvobase::clsStrings lines, output;
        lines.Split(clsString(script.Lines), '\r');
        EXPECT_EQ(Parser.RunScript(lines, output), script.Code);
        EXPECT_STREQ(output.Join("|", true).Text(), script.Output);
    }
    CheckCases(Parser, {
                           {"FGET('select group_concat(ifnull(idPar, ''-'') || Name, '' '') from ZSYSPARS')",
                            "1a 2b! 3last 11a -new11", 0},
                           {"n & FGET('ZSYSPARS', 'Name', 'idPar = 11')", "x10a", 0},
                       });
    EXPECT_TRUE(Archive.Changed);
}
