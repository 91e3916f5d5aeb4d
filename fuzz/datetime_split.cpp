// Arbitrary bytes through the readers of the base library's value types: date-time parsing, the text lists
// (Split in every mode, SetText) and the binary records of every variant class. The first byte chooses the
// separator; the rest is the text or the record buffer.
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "nuvobase/clsstrings.h"
#include "nuvobase/clsvariant.h"

using namespace nuvobase;

// Stops the run when a rule is broken.
static void Check(bool condition) {
    if (!condition) std::abort();
}

static void ParseDate(const clsString& text) {
    clsDateTime when;
    const bool valid = when.Parse(text);
    Check(valid == when.IsValid());
    Check(valid != when.IsNull());
    if (!valid) return;
    // A valid date-time prints and reads back as itself through the sortable date.
    clsDateTime again;
    Check(again.Parse(when.SortableDate()) && again.ToDays() == when.ToDays());
    Check(again.FromDays(when.ToDays()) && again.SortableDate() == when.SortableDate());
}

static void SplitText(const clsString& text, char separator) {
    for (int mode = 0; mode <= 3; mode++)
        for (int flags = 0; flags < 4; flags++) {
            clsStrings list;
            list.Split(text, separator, mode, flags & 1, flags & 2);
            Check(list.Count >= 1 && list.Count <= text.Size() + 1);
            (void)list.Join(clsString(separator, 1), mode != 0);
            list.Sort();
            // Where every entry has a name, the sorted names are found again (by bisection beyond five
            // entries; in mode 3 a node without name in the way ends a bisection, as it should).
            if (mode == clsStrings::SplitNameIsValue || mode == clsStrings::SplitNameValue)
                for (int i = 0; i < list.Count; i++) Check(list.Find(*list.KeyAt(i)) >= 0);
        }
    clsCStrings texts;
    texts.SetText(text, separator, false);
    Check(texts.Count <= text.Size() + 1);
    (void)texts.GetText(",", true);
    clsCInts numbers;
    numbers.SetText(text, separator, true);
    (void)numbers.GetText(",");
}

static void ReadRecords(const clsString& buffer) {
    const std::unique_ptr<clsVariant> kinds[] = {
        std::make_unique<clsVariantBool>(),     std::make_unique<clsVariantInt>(),
        std::make_unique<clsVariantInt64>(),    std::make_unique<clsVariantUInt64>(),
        std::make_unique<clsVariantDouble>(),   std::make_unique<clsVariantString>(),
        std::make_unique<clsVariantCurrency>(), std::make_unique<clsVariantDateTime>(),
    };
    for (const auto& value : kinds) {
        // Walk the buffer as a row of records of this kind for as long as they read.
        int position = 0;
        while (position < buffer.Size()) {
            const int before = position;
            if (!value->Read(buffer, position)) break;
            Check(position > before && position <= buffer.Size());
            // What was read writes and reads back to the same value.
            clsString record;
            int written = 0;
            value->Write(record, written);
            std::unique_ptr<clsVariant> copy(value->Clone());
            int read = 0;
            Check(copy->Read(record, read) && read == written);
            const bool notANumber = value->GetDouble() != value->GetDouble();
            Check(copy->Compare(*value) == 0 || notANumber);
            (void)value->GetString();
            (void)value->ToSqlText();
            (void)value->GetDateTime();
        }
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1 || size > 4096) return 0;
    const char separator = static_cast<char>(data[0]);
    clsString text;
    text.Append(reinterpret_cast<const char*>(data + 1), static_cast<int>(size - 1));
    ParseDate(text);
    SplitText(text, separator);
    ReadRecords(text);
    return 0;
}
