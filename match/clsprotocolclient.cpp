#include "match/clsprotocolclient.h"

#include "match/clsengineinterface.h"
#include "match/clsuciclient.h"
#include "match/clsxboardclient.h"

#include <cstdlib>

using nuvobase::clsString;

namespace nvoChess {

std::unique_ptr<clsProtocolClient> clsProtocolClient::For(uint32_t protocol, clsEngineInterface& engine) {
    if (protocol == clsEngineInterface::Uci) return std::make_unique<clsUciClient>(engine);
    return std::make_unique<clsXBoardClient>(engine);
}

void clsProtocolClient::Settle() {
    Synchronise();
}

void clsProtocolClient::Quit() {
    Engine.SendLine("quit");
}

bool clsProtocolClient::FeaturesPending() const {
    return false;
}

void clsProtocolClient::NudgeFeatures() {}

bool clsProtocolClient::ReadSigned(const clsString& word, int32_t& value) {
    const char* start = word.Text();
    char* end = nullptr;
    const long number = std::strtol(start, &end, 10);
    if (word.IsEmpty() || *end != 0 || end == start) return false;
    value = int32_t(number);
    return true;
}

} // namespace nvoChess
