#pragma once
// The words of a console command's arguments, the one way every command reads them.
#include "app/commandnumbers.h"
#include "nuvobase/clsstring.h"

namespace nvoChess {

// Reads the arguments word by word from the left. Blanks separate words, and a run of them counts as one. A
// word that begins with a double quote runs to the closing one, blanks and all, and loses its quotes (two
// quotes inside stand for one): that is how a file or folder with blanks in its name is typed.
class clsCommandWords {
public:
    explicit clsCommandWords(const nuvobase::clsString& arguments) : Arguments(arguments) {}
    // The next word; empty text past the last.
    nuvobase::clsString Next();
    // The next word as a number held within bound, 0 for a missing word or one that is no number.
    int64_t NextNumber(int64_t bound = MaxCount) { return ReadBounded(Next(), bound); }

private:
    nuvobase::clsString Arguments;
    int Position = 0;
};

} // namespace nvoChess
