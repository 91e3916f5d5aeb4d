// Arbitrary bytes through the XML reader and its writer, and what it wrote through the reader again.
// The text claims to come from a folder that does not exist, so the directives find no files.
#include <cstdint>
#include <cstdlib>

#include "nuvobase/clsxml.h"

using nuvobase::clsString;
using nuvobase::clsXML;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    clsString text;
    text.Assign(reinterpret_cast<const char*>(data), int(size));
    clsXML document;
    document.Parse(text, "/nonexistent-fuzz-folder/input.xml");
    const clsString written = document.ToText();
    clsXML again;
    again.Parse(written, "/nonexistent-fuzz-folder/input.xml");
    (void)again.ToText();
    (void)document.FindPath("a/b", "id", "1");
    return 0;
}
