#pragma once
// The text files of the tools: lines of a file, and the result file of the learner, whose lines are
// "generation TAB rank TAB 'name' TAB score TAB p0 TAB ... p15 TAB".
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <cstdint>

namespace nvoChess {

// The lines of a text, without CR and outer blanks; blank lines are left out.
nuvobase::clsCStrings TextLines(const nuvobase::clsString& text);
// The same of a file; none for a file that cannot be read.
nuvobase::clsCStrings FileLines(const nuvobase::clsString& path);

// Field index, from 0, of a tab-separated line; empty when the line has fewer.
nuvobase::clsString TabField(const nuvobase::clsString& line, int index);

// One member as a line of the result file gives it.
struct clsLearnLine {
    nuvobase::clsString Name; // without its quotes
    int64_t Score = 0;
    nuvobase::clsString Soul; // "name=p0 p1 ... p15", the soul text form
    bool Complete = false;    // all sixteen parameters are there
    bool Numeric = true;      // the score and the parameters are numbers
};

// The highest generation of the lines, and in first the index of the first line that carries it; 0 when no
// line carries a generation above 0.
int64_t HighestGeneration(const nuvobase::clsCStrings& lines, int& first);
clsLearnLine ReadLearnLine(const nuvobase::clsString& line);
// The file of one generation: learn.csv and 7 give learn.007.csv.
nuvobase::clsString GenerationFile(const nuvobase::clsString& file, int64_t generation);

} // namespace nvoChess
