// Arbitrary bytes through the JSON reader and its XML rendering, and that text through the XML reader.
#include <cstdint>
#include <cstdlib>

#include "nuvobase/clsjson.h"
#include "nuvobase/clsxml.h"

using nuvobase::clsJSON;
using nuvobase::clsString;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    clsString text;
    text.Assign(reinterpret_cast<const char*>(data), int(size));
    clsJSON json;
    json.Parse(text);
    clsString indent;
    const clsString xml = json.ToXmlText(indent);
    if (!indent.IsEmpty()) std::abort(); // the indent must come back as it was given
    nuvobase::clsXML document;
    document.Parse(xml, "/nonexistent-fuzz-folder/input.json");
    (void)document.ToText();
    return 0;
}
