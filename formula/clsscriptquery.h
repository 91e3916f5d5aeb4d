// One open query of a script: the row set that loop, next and seek walk, and a second one of the same
// statement that new, copy, update and set change.
#pragma once

#include <cstdint>

#include "archive/clsarchivio.h"

namespace velmora {

class clsScriptQuery {
public:
    clsScriptQuery(clsArchivio* archive, const clsString& sql);
    ~clsScriptQuery(); // closes both row sets
    clsScriptQuery(const clsScriptQuery&) = delete;
    clsScriptQuery& operator=(const clsScriptQuery&) = delete;

    clsArchivio* Archive;
    int32_t ReadSet;
    int32_t WriteSet;
};

} // namespace velmora
