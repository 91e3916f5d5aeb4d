#include "book/clspgnexport.h"

#include <fcntl.h>
#include <unistd.h>

using nuvobase::clsString;

namespace nvoChess {

namespace {
constexpr int MaxLineLength = 79;
constexpr mode_t CreatedFileMode = 0644;
} // namespace

clsString clsPgnExport::Text() const {
    clsString text;
    for (int i = 0; i < Tags.Count; ++i) {
        clsString value = Tags.GetAt(i);
        value.ReplaceAll("\\", "\\\\").ReplaceAll("\"", "\\\"");
        text += "[" + Tags.GetName(i) + " \"" + value + "\"]\n";
    }
    text += "\n";
    clsString line;
    const auto put = [&](const clsString& token) {
        if (!line.IsEmpty() && line.Size() + 1 + token.Size() > MaxLineLength) {
            text += line + "\n";
            line.Clear();
        }
        if (!line.IsEmpty()) line += " ";
        line += token;
    };
    int32_t number = FirstMoveNumber;
    bool white = !BlackMovesFirst;
    for (size_t i = 0; i < SanMoves.size(); ++i) {
        if (white)
            put(clsString(number) + ". " + SanMoves[i]);
        else if (i == 0)
            put(clsString(number) + "... " + SanMoves[i]);
        else
            put(SanMoves[i]);
        if (!white) ++number;
        white = !white;
    }
    put(Result);
    return text + line + "\n\n";
}

bool clsPgnExport::AppendToFile(const clsString& path, const clsString& text) {
    // One write call: the program may be killed between two calls, never inside one.
    const int file = ::open(path.Text(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, CreatedFileMode);
    if (file < 0) return false;
    const bool written = ::write(file, text.Text(), size_t(text.Size())) == ssize_t(text.Size());
    return ::close(file) == 0 && written;
}

} // namespace nvoChess
