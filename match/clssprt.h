#pragma once
// The sequential probability ratio test of a match of two players: after each game pair the log-likelihood
// ratio of two Elo hypotheses from the first player's scores, and the verdict once it leaves its bounds.

#include "nuvobase/clsstring.h"
#include "nuvobase/clsxml.h"

#include <vector>

namespace nvoChess {

class clsSprt {
public:
    enum Verdicts { Undecided, AcceptH0, AcceptH1 };

    double Elo0 = 0, Elo1 = 5, Alpha = 0.05, Beta = 0.05;
    double Llr = 0;
    Verdicts Verdict = Undecided;

    // The attributes elo0, elo1, alpha and beta of the element; absent ones keep their defaults. False when
    // they make no test: elo1 not above elo0, or alpha or beta outside 0 to 1.
    bool Read(nuvobase::clsXML& element);
    // ln(beta / (1 - alpha)) and ln((1 - beta) / alpha).
    double LowerBound() const;
    double UpperBound() const;
    // Recomputes Llr from the first player's scores, one per pair (0 to 1), and decides when it leaves the
    // bounds. A verdict, once given, stands.
    void Update(const std::vector<double>& scores);
    // "H0 accepted", "H1 accepted", or empty text while undecided.
    nuvobase::clsString VerdictText() const;

    // N/2 ((mean - s0)^2 - (mean - s1)^2) / variance over the scores, s0 and s1 the expected scores of elo0
    // and elo1; 0 while the scores do not vary.
    static double LogLikelihoodRatio(const std::vector<double>& scores, double elo0, double elo1);
};

} // namespace nvoChess
