// The engine side of XBoard. Until its commands are in, every line goes to the console.
#include "app/clschessapplication.h"

namespace nvoChess {

int clsChessApplication::HandleXBoard(const clsString& command, const clsString& arguments, bool) {
    return HandleConsole(command, arguments);
}

}  // namespace nvoChess
