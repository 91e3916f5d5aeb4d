#pragma once
// The formula console: a calculator for 64-bit board masks and a window on the archive, which takes over
// the input until "exit".

#include "app/clschessapplication.h"

namespace nvoChess {

void RunFormulaConsole(clsChessApplication& app);

} // namespace nvoChess
