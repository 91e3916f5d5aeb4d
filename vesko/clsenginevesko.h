#pragma once
// Vesko, the second engine, behind the common engine interface: a thin wrapper that
// drives the flat core block with one command at a time.
#include "match/clsengineinterface.h"
#include "vesko/veskoblock.h"

#include <cstddef>

namespace nvoChess {

class clsEngineVesko final : public clsEngineInterface {
public:
    clsEngineVesko(const nuvobase::clsString& name, nuvobase::clsTSafeOutput* output,
                   clsTourneyGame* game = nullptr);
    clsEngineVesko(const clsEngineVesko&) = delete;
    clsEngineVesko& operator=(const clsEngineVesko&) = delete;

    // Starts a search unless one runs. The stop bit is cleared here rather than on the new
    // thread, so that a stop right behind the start is seen.
    bool Start() override;
    // One search from the position, deepening until MaxDepth or a stop.
    bool Run() override;
    ~clsEngineVesko() override;
    // Sets the stop bit of the block; the search ends at its next move.
    void SetStopped() override;
    // "N nodes - ", then "M ms K Knps" when ms is not 0.
    nuvobase::clsString GetStatistics(int64_t elapsedMs) override;
    bool SetPosition(const nuvobase::clsString& fen) override;
    // "depth score 0 nodes move", or empty text before the first move is found.
    nuvobase::clsString GetInfoLine() override;
    nuvobase::clsString GetPosition() override;
    nuvobase::clsString GetBestMoveText(bool consume, int& score) override;
    nuvobase::clsString GetSpareText() override;
    // Plays a move of the generated list, found by its squares.
    bool MakeMove(uint64_t from, uint64_t to, char promotion) override;
    uint64_t PositionHash() override;
    nuvobase::clsString ReadReply() override;
    int PawnValue() override;
    void CrossSoul(clsEngineInterface* other) override;
    nuvobase::clsString GetSoulText() override;
    void LoadDefaultSoul() override;
    // Writes "ply<TAB>count" through Info for each ply up to the first without moves.
    uint64_t Perft(int depth, bool divide) override;
    nuvobase::clsString SanToCoordinates(const nuvobase::clsString& san, bool generateFirst) override;
    void SendLine(const nuvobase::clsString& line) override;

private:
    // Fills the block for a command and runs it on the calling thread.
    void Execute(uint64_t command, int64_t depth = 0, const char* text = nullptr,
                 const char* moveText = nullptr);
    // Runs a command from the owner's thread: a search still running is stopped
    // first, since only the stop bit may be written while it runs.
    void Command(uint64_t command, int64_t depth = 0, const char* text = nullptr,
                 const char* moveText = nullptr);

    // The UCI line of an iteration just published, when the front end asked for one.
    static void IterationDone(void* engine);

    void* RawBlock;           // the allocation, zeroed
    std::size_t RawSize;      // the block and room to align it
    VeskoBlock* Block;        // aligned inside RawBlock
    uint64_t SearchStart = 0; // clock at the start of the search
};

} // namespace nvoChess
