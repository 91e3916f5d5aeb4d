#pragma once
// Another chess program as an engine of a game: a child process spoken to over UCI or XBoard. The
// thread of the engine is the reader of the child's output.

#include "match/clsengineinterface.h"
#include "match/clsredirectedchild.h"

namespace nvoChess {

class clsExternalEngine final : public clsEngineInterface, public clsRedirectedChild {
public:
    // The pause behind every line sent, unless the tournament sets its own.
    static constexpr int DefaultPaceMs = 100;

    clsExternalEngine(const nuvobase::clsString& name, nuvobase::clsTSafeOutput* output,
                      clsTourneyGame* game = nullptr);
    // Tells the child to quit, ends it and waits for the reader.
    ~clsExternalEngine() override;

    // Starts the child and reads its output until it has ended.
    bool Run() override;
    // The reader has ended with the child: the engine is stopped.
    void OnExit() override;
    // Tells the child to quit, ends it and waits for the reader; true.
    bool StopEngine() override;
    // Sends the text as it stands.
    bool MakeMoveText(const nuvobase::clsString& move) override;
    // Sends "setboard " and the FEN in either protocol.
    bool SetPosition(const nuvobase::clsString& fen) override;
    bool MakeMove(uint64_t from, uint64_t to, char promotion) override;
    // The next line of the child that means something, in normal form (ParseLine); the lines before it
    // are read and passed over. Empty text while none waits.
    nuvobase::clsString ReadReply() override;
    // Wakes when the child has written a line or has ended.
    void WaitForReply(int timeoutMs) override;
    // Writes the line to the child while it runs, then pauses PaceMs in any case.
    void SendLine(const nuvobase::clsString& line) override;

    nuvobase::clsString GetInfoLine() override;
    nuvobase::clsString GetPosition() override;
    nuvobase::clsString GetBestMoveText(bool consume, int& score) override;
    nuvobase::clsString GetSpareText() override;
    uint64_t PositionHash() override;
    int PawnValue() override;
    void CrossSoul(clsEngineInterface* other) override;
    nuvobase::clsString GetSoulText() override;
    void LoadDefaultSoul() override;
    uint64_t Perft(int depth, bool divide) override;
    nuvobase::clsString SanToCoordinates(const nuvobase::clsString& san, bool generateFirst) override;

    // The engine has answered its handshake and its child runs.
    bool IsWorking();
    // Tells the child to quit and ends it.
    void Quit();

    int PaceMs = DefaultPaceMs;

private:
    // Ends the child and waits for the reader thread.
    void EndChild();
};

} // namespace nvoChess
