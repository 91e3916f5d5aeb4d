#include "app/clscommandwords.h"

namespace nvoChess {

nuvobase::clsString clsCommandWords::Next() {
    while (Position >= 0 && Position < Arguments.Size() && *Arguments.At(Position) == ' ') ++Position;
    if (Position < 0 || Position >= Arguments.Size()) {
        Position = -1;
        return nuvobase::clsString();
    }
    const bool quoted = *Arguments.At(Position) == '"';
    nuvobase::clsString word = Arguments.NextWord(' ', Position, quoted);
    if (quoted) word.Unquote('"');
    return word;
}

} // namespace nvoChess
