#include "formula/clsscriptquery.h"

namespace velmora {

clsScriptQuery::clsScriptQuery(clsArchivio* archive, const clsString& sql)
    : Archive(archive), ReadSet(archive->OpenRowSet(sql, clsArchivio::ModeWritable)),
      WriteSet(archive->OpenRowSet(sql, clsArchivio::ModeWritable)) {}

clsScriptQuery::~clsScriptQuery() {
    Archive->CloseRowSet(ReadSet);
    Archive->CloseRowSet(WriteSet);
}

} // namespace velmora
