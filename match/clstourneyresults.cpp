// What a tournament leaves for other programs: every finished game appended to one standard PGN file, and
// the standings as JSON beside the log and as a table on the output.
#include "match/clstourney.h"

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr const char* UnknownDate = "????.??.??";
constexpr int DateLength = 10, TimeStart = 11, TimeLength = 8;
constexpr double MsPerSecond = 1000.0;
constexpr int FenFields = 6, SideField = 1, FullMoveField = 5;
constexpr int SprtDecimals = 3;

// The "Termination" tag of a result word.
const char* TerminationOf(uint32_t code) {
    if (code & (CodeUndecided | CodeAborted)) return "unterminated";
    if (code & CodeAdjudication) return "adjudication";
    if (code & CodeTimeForfeit) return "time forfeit";
    if (code & CodeIllegalMove) return "rules infraction";
    if (code & CodeEngineCrash) return "abandoned";
    return "normal";
}

clsString Seconds(int32_t ms) {
    return clsString().FromDouble(ms / MsPerSecond);
}

} // namespace

clsPgnExport clsTourney::ExportOf(const clsTourneyGame& game) const {
    clsPgnExport pgn;
    // The game's "Date" tag holds "2026-11-25 13:05:09", with milliseconds when there are any.
    const clsString started = game.Tags.GetValue("Date");
    clsString date = started.Left(DateLength);
    date.ReplaceAll("-", ".");
    const clsString result = game.ResultText();
    const bool decided = result == "1-0" || result == "0-1" || result == "1/2-1/2";
    const auto orUnknown = [](const clsString& value) { return value.IsEmpty() ? clsString("?") : value; };
    pgn.Tags.SetValue("Event", orUnknown(game.Tags.GetValue("Event")));
    pgn.Tags.SetValue("Site", orUnknown(game.Tags.GetValue("Site")));
    pgn.Tags.SetValue("Date", date.Size() == DateLength ? date : clsString(UnknownDate));
    pgn.Tags.SetValue("Round", orUnknown(game.Tags.GetValue("Round")));
    pgn.Tags.SetValue("White", game.WhitePlayer->Name);
    pgn.Tags.SetValue("Black", game.BlackPlayer->Name);
    pgn.Result = decided ? result : clsString("*");
    pgn.Tags.SetValue("Result", pgn.Result);
    if (started.Size() >= TimeStart + TimeLength)
        pgn.Tags.SetValue("Time", started.Mid(TimeStart, TimeLength));
    clsString control = Seconds(ClockGameMs);
    if (ClockIncrementMs != 0) control += "+" + Seconds(ClockIncrementMs);
    pgn.Tags.SetValue("TimeControl", control);
    pgn.Tags.SetValue("PlyCount", clsString(int64_t(game.SanMoves.size())));
    pgn.Tags.SetValue("Termination", TerminationOf(game.Code));
    if (!game.StartFen.IsEmpty()) {
        pgn.Tags.SetValue("FEN", game.StartFen);
        pgn.Tags.SetValue("SetUp", "1");
        clsString fields[FenFields];
        int position = 0;
        for (clsString& field : fields)
            if (position >= 0) field = game.StartFen.NextWord(' ', position, false, true);
        pgn.BlackMovesFirst = fields[SideField] == "b";
        const int32_t fullMove = int32_t(fields[FullMoveField].ToDecimal());
        pgn.FirstMoveNumber = fullMove > 0 ? fullMove : 1;
    }
    // With the round, the game id tells a resumed tournament which game this is.
    pgn.Tags.SetValue("GameId", clsString(int64_t(game.GameId)));
    pgn.SanMoves = game.SanMoves;
    return pgn;
}

void clsTourney::RecordResult(const clsTourneyGame& game) {
    if (!PgnOut.IsEmpty() && !clsPgnExport::AppendToFile(PgnOut, ExportOf(game).Text()))
        Output->Write("# tourney: cannot append to " + PgnOut, true);
    int32_t white = 0, black = 0;
    clsTourneyGame::Points(game.Code, white, black);
    if (white + black == 0) return; // an aborted or undecided game counts for nobody
    const bool undecided = Standings->Sprt && Standings->Sprt->Verdict == clsSprt::Undecided;
    Standings->Add({game.WhitePlayer->Name, game.BlackPlayer->Name, white, game.Round});
    if (undecided && Standings->Sprt->Verdict != clsSprt::Undecided)
        LogInRound(game.Round, game.GameId,
                   "sprt llr " + clsString().FromDouble(Standings->Sprt->Llr, SprtDecimals) + ": " +
                       Standings->Sprt->VerdictText() + ", no further game starts");
    WriteStandings(false);
}

void clsTourney::WriteStandings(bool print) {
    clsString path = LogFolder;
    path.PathJoin(FileStem().Text());
    path += ".results.json";
    if (!Standings->JsonText().SaveToFile(path.Text()))
        Output->Write("# tourney: cannot write " + path, true);
    if (!print) return;
    for (const clsString& line : Standings->TableLines()) Output->Write("# " + line, true);
}

} // namespace nvoChess
