#pragma once
// A small engine of the tests: it shows a fixed position and records the moves it is asked to make and
// the lines it is asked to send.
#include "match/clsengineinterface.h"

#include <string>
#include <vector>

using nuvobase::clsString;

namespace nvoChess {

class RecordingEngine : public clsEngineInterface {
public:
    explicit RecordingEngine(nuvobase::clsTSafeOutput* output = nullptr)
        : clsEngineInterface("Test", output) {}
    ~RecordingEngine() override { Wait(); }

    bool Run() override { return true; }
    bool SetPosition(const clsString& fen) override {
        Fen = fen;
        return true;
    }
    clsString GetInfoLine() override { return clsString(); }
    clsString GetPosition() override { return Fen; }
    clsString GetBestMoveText(bool, int&) override { return clsString(); }
    clsString GetSpareText() override { return clsString(); }
    bool MakeMove(uint64_t from, uint64_t to, char promotion) override {
        Moves.push_back({from, to, promotion});
        return true;
    }
    uint64_t PositionHash() override { return 0; }
    clsString ReadReply() override { return clsString(); }
    int PawnValue() override { return 100; }
    void CrossSoul(clsEngineInterface*) override {}
    clsString GetSoulText() override { return clsString(); }
    void LoadDefaultSoul() override {}
    uint64_t Perft(int, bool) override { return 0; }
    clsString SanToCoordinates(const clsString&, bool) override { return clsString(); }
    void SendLine(const clsString& line) override { Sent.emplace_back(line.Text()); }

    struct Move {
        uint64_t From, To;
        char Promotion;
        bool operator==(const Move&) const = default;
    };
    std::vector<Move> Moves;
    std::vector<std::string> Sent; // the lines sent, in order
    clsString Fen;
};

} // namespace nvoChess
