// The search below the engine's thread: the node walk to a nominal depth,
// one pass over the root moves, and the deepening by two plies that ends in
// BestMove.
#pragma once

#include <atomic>
#include <cstdint>

#include "nuvobase/clsmutex.h"
#include "search/clsengineshare.h"
#include "search/clsevaluation.h"

namespace nvoChess {

// Counts up a statistic that only the search thread writes and others read
// while it runs: a plain load and store, not a locked add.
inline void Bump(std::atomic<uint64_t>& counter) {
    counter.store(counter.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

class clsTreeSearch : public clsEvaluation {
public:
    // The lock guards BestMove; the table is not owned and may be null.
    clsTreeSearch(nuvobase::clsMutex& resultLock, clsEngineShare* share);

    // How the deepening ended.
    enum class eDeepening { DepthLimit, Stopped, Wins, Loses };

    // The walk from Current, a node whose parent's move has been made and the
    // sides swapped, to the nominal depth: returns Current's Best, with Current
    // and the board as they were.
    int32_t WalkTree(int32_t depth);

    // One pass over the root moves at SearchDepth; returns the root's Best.
    int32_t SearchRoot();

    // A new search: BestMove holds no move and no value, the statistics are
    // cleared.
    void BeginSearch();
    // Sets the nodes up for the board and makes its legal moves the root
    // list, sorted by Value; false if there is none.
    bool PrepareRoot();
    // Searches depths 2, 4, ... up to the limit, until stopped or a result is
    // forced.
    eDeepening Deepen(int32_t limit);
    // After a search: a legal root move drawn at random, or with a percentage
    // the first of the best-scored moves above a queen's loss that passes it.
    void ChooseAtRandom(int32_t percentage);

    // The value of the board's position at a depth, walked from the root
    // with alpha 0, on fresh nodes and statistics and a cleared stop flag; 0
    // below depth 1.
    int32_t SearchFixedDepth(int32_t depth, uint64_t& nodes);

    // Copies a record into BestMove under the lock; null only marks it empty.
    void SetBestMove(const clsMove* move);
    // BestMove as it stands, copied under the lock.
    clsMove CopyBestMove();
    void ResetStatistics();

    clsEngineShare* Share;
    uint64_t NodeLimit = 0;                       // the search stops itself once Nodes reaches it; 0 for none
    std::atomic<uint64_t> TTHits{0}, ReptHits{0}; // Nodes and StopFlag are the core's
    std::atomic<int32_t> SearchDepth{0};

protected:
    // Called by the deepening after every depth that the search finished.
    virtual void DepthFinished() {}

    nuvobase::clsMutex& BestMoveLock;
    clsMove BestMove; // guarded by BestMoveLock

private:
    void SortRoot(bool byScore);
    bool Stopped() const { return StopFlag.load(std::memory_order_relaxed) != 0; }
    // The slot of each node on the path loses its path flag.
    void ClearPathFlags(clsSimpleNode* from, clsSimpleNode* to);
};

} // namespace nvoChess
