#include "book/clsfentable.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "book/clsgame.h"

namespace nvoChess {

namespace {

// The bits of the result word that tell the outcome apart.
constexpr uint32_t OutcomeMask =
    CodeAborted | CodeDraw | CodeBlackWon | CodeWhiteWon | CodeDecisive | CodeUndecided;

std::string Folded(const nuvobase::clsString& text) {
    std::string folded(text.Text(), size_t(text.Size()));
    for (char& c : folded) c = char(std::tolower(static_cast<unsigned char>(c)));
    return folded;
}

} // namespace

void clsFENTable::Add(const nuvobase::clsString& fen, uint32_t code) {
    const auto [found, added] = IndexOfFolded.try_emplace(Folded(fen), Results.size());
    if (added) Results.push_back({fen, {}});
    clsFENResult& result = Results[found->second].Result;
    switch (code & OutcomeMask) {
    case CodeWhiteWins:
        ++result.WhiteWins;
        break;
    case CodeBlackWins:
        ++result.BlackWins;
        break;
    case CodeDraw:
        ++result.Draws;
        break;
    case CodeAborted:
        ++result.Unfinished;
        break;
    default:
        break;
    }
}

void clsFENTable::Clear() {
    IndexOfFolded.clear();
    Results.clear();
}

bool clsFENTable::Write(const nuvobase::clsString& file) const {
    std::remove(file.Text());
    FILE* stream = std::fopen(file.Text(), "wb");
    if (stream == nullptr) return false;
    std::vector<const clsPosition*> order;
    order.reserve(Results.size());
    for (const clsPosition& position : Results) order.push_back(&position);
    std::sort(order.begin(), order.end(), [](const clsPosition* left, const clsPosition* right) {
        return left->Fen.Compare(right->Fen, nuvobase::clsString::CompareOrder) < 0;
    });
    bool written = true;
    for (const clsPosition* position : order) {
        const clsFENResult& result = position->Result;
        written = std::fprintf(stream, "%d\t%d\t%d\t%s\r\n", result.WhiteWins, result.Draws, result.BlackWins,
                               position->Fen.Text()) > 0 &&
                  written;
    }
    return std::fclose(stream) == 0 && written;
}

} // namespace nvoChess
