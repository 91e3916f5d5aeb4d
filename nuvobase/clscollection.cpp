#include "nuvobase/clscollection.h"

namespace nuvobase {

clsString ElementToText(const clsString& value) {
    return value;
}

clsString ElementToText(int value) {
    return VariantText::FromNumber(value);
}

clsString ElementToText(uint64_t value) {
    return VariantText::FromNumber(value);
}

void ElementFromText(const clsString& text, clsString& value) {
    value = text;
}

void ElementFromText(const clsString& text, int& value) {
    value = VariantText::ToInt(text);
}

void ElementFromText(const clsString& text, uint64_t& value) {
    value = VariantText::ToUInt64(text);
}

} // namespace nuvobase
