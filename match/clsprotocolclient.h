#pragma once
// The client side of one protocol: the words a tournament game says to another chess program and how the
// program's lines are read. The engine interface keeps the operations and hands them to the client of its
// Protocol; a client works on the fields of the engine it speaks for.

#include "nuvobase/clsstring.h"

#include <cstdint>
#include <memory>

namespace nvoChess {

class clsEngineInterface;

class clsProtocolClient {
public:
    virtual ~clsProtocolClient() = default;
    clsProtocolClient(const clsProtocolClient&) = delete;
    clsProtocolClient& operator=(const clsProtocolClient&) = delete;

    // The client of a Protocol value: UCI for Uci, XBoard for every other value, since a program that speaks
    // no UCI is read as XBoard.
    static std::unique_ptr<clsProtocolClient> For(uint32_t protocol, clsEngineInterface& engine);

    // Opens the protocol; the engine's Ready tells when the program has answered.
    virtual void Handshake() = 0;
    // Resets the program for a new game from the engine's options, opening position and opening moves.
    virtual void NewGame() = 0;
    // Tells the clocks and asks the program to move.
    virtual void Go() = 0;
    // Tells the program the opponent's move, already in MoveHistory, and sends it thinking.
    virtual void OpponentMoved(const nuvobase::clsString& move) = 0;
    // Asks the program for a sign of life; Ready has been cleared.
    virtual void Synchronise() = 0;
    // Ends a search the program may still run, then asks for a sign of life; Ready has been cleared.
    virtual void Settle();
    // Both protocols end with the same word.
    void Quit();
    // One line, not empty, split at its first blank, in the normal form of ParseLine of the engine.
    virtual nuvobase::clsString ParseLine(const nuvobase::clsString& line, const nuvobase::clsString& word,
                                          const nuvobase::clsString& rest) = 0;
    // The program may still be announcing features; only XBoard has them.
    virtual bool FeaturesPending() const;
    // Gives a program that holds its features back a line to answer.
    virtual void NudgeFeatures();

    const uint32_t Protocol; // the Protocol value of the client: Uci or XBoard

protected:
    clsProtocolClient(clsEngineInterface& engine, uint32_t protocol) : Protocol(protocol), Engine(engine) {}
    // A whole signed decimal number, "+15" and "-3" included.
    static bool ReadSigned(const nuvobase::clsString& word, int32_t& value);

    clsEngineInterface& Engine;
};

} // namespace nvoChess
