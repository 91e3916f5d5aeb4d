#pragma once
// A player of a tournament: who it is, how its engine is started, and the points it has made.

#include "match/clsengineinterface.h"
#include "nuvobase/clsmutex.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace nvoChess {

class clsPlayer {
public:
    // Points of one game.
    static constexpr int32_t WinPoints = 2;
    static constexpr int32_t DrawPoints = 1;

    clsPlayer() = default;
    clsPlayer(const nuvobase::clsString& name, const nuvobase::clsString& protocol,
              const nuvobase::clsString& fileName, const nuvobase::clsString& parameters);
    virtual ~clsPlayer() = default;

    // Adds points under the lock; returns the new total.
    int32_t AddScore(int32_t points);
    int32_t GetScore();
    void SetScore(int32_t score);
    // "embedded" plays inside this process; the others are programs spoken to over UCI or XBoard.
    bool IsEmbedded() const { return Protocol == "embedded"; }
    bool IsUci() const { return Protocol == "uci"; }
    // A program of the player that has ended its game soundly waits here for the player's next game.
    void KeepIdle(std::unique_ptr<clsEngineInterface> engine);
    // A waiting program of the player, or null.
    std::unique_ptr<clsEngineInterface> TakeIdle();
    // Ends the waiting programs.
    void EndIdle();

    nuvobase::clsMutex Lock; // guards Score and IdleEngines
    nuvobase::clsCInts Soul;
    int32_t Score = 0;
    bool Keep = false;
    nuvobase::clsString Name;
    clsEngineInterface* Engine = nullptr; // not owned
    nuvobase::clsString Protocol;
    nuvobase::clsString FileName;
    nuvobase::clsString Parameters;
    // Options the engine is given before each game, name and value ("Skill Level", "3").
    nuvobase::clsStrings EngineOptions;

private:
    std::vector<std::unique_ptr<clsEngineInterface>> IdleEngines;
};

} // namespace nvoChess
