#include "match/clssprt.h"

#include <cmath>
#include <cstdlib>

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr double EloScale = 400.0;

double ExpectedScore(double elo) {
    return 1.0 / (1.0 + std::pow(10.0, -elo / EloScale));
}

// The attribute as a number, or the value it has when the attribute is absent.
void ReadAttribute(nuvobase::clsXML& element, const char* name, double& value) {
    const clsString text = element.GetAttribute(name);
    if (!text.IsEmpty()) value = std::strtod(text.Text(), nullptr);
}

} // namespace

bool clsSprt::Read(nuvobase::clsXML& element) {
    ReadAttribute(element, "elo0", Elo0);
    ReadAttribute(element, "elo1", Elo1);
    ReadAttribute(element, "alpha", Alpha);
    ReadAttribute(element, "beta", Beta);
    return Elo1 > Elo0 && Alpha > 0 && Alpha < 1 && Beta > 0 && Beta < 1;
}

double clsSprt::LowerBound() const {
    return std::log(Beta / (1 - Alpha));
}

double clsSprt::UpperBound() const {
    return std::log((1 - Beta) / Alpha);
}

void clsSprt::Update(const std::vector<double>& scores) {
    if (Verdict != Undecided) return;
    Llr = LogLikelihoodRatio(scores, Elo0, Elo1);
    if (Llr <= LowerBound())
        Verdict = AcceptH0;
    else if (Llr >= UpperBound())
        Verdict = AcceptH1;
}

clsString clsSprt::VerdictText() const {
    return Verdict == AcceptH0   ? clsString("H0 accepted")
           : Verdict == AcceptH1 ? clsString("H1 accepted")
                                 : clsString();
}

double clsSprt::LogLikelihoodRatio(const std::vector<double>& scores, double elo0, double elo1) {
    if (scores.empty()) return 0;
    const double n = double(scores.size());
    double sum = 0;
    for (double score : scores) sum += score;
    const double mean = sum / n;
    double squares = 0;
    for (double score : scores) squares += (score - mean) * (score - mean);
    const double variance = squares / n;
    // Scores that do not vary say nothing about their spread: no decision yet.
    if (variance <= 0) return 0;
    const double s0 = ExpectedScore(elo0), s1 = ExpectedScore(elo1);
    return n / 2 * ((mean - s0) * (mean - s0) - (mean - s1) * (mean - s1)) / variance;
}

} // namespace nvoChess
