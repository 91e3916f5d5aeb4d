// The two lists of text.
//
// clsStrings: an ordered list of name and value texts (a clsCollection<clsString> whose keys are text
// variants). A node may have no name. Lookups by name ignore ASCII case and give the first match, or empty
// text. The list owns its values.
//
// clsCStrings, clsCInts: owning lists of texts and of integers, without names.
#pragma once

#include "nuvobase/clscollection.h"
#include "nuvobase/clsstring.h"

namespace nuvobase {

class clsStrings : public clsCollection<clsString> {
public:
    // How Split turns an entry into a node.
    enum SplitModes : int {
        SplitPlain = 0,       // the entry is the value, without a name
        SplitNameIsValue = 1, // the entry is both name and value
        SplitNameValue = 2,   // "name=value", cut at the first '=' (no '=': all name, empty value)
        SplitNamedLine =
            3, // the entry is the value; the text before its first '=' outside quotes is the name
    };

    clsStrings() = default;
    clsStrings(const clsStrings& other) = default;
    clsStrings& operator=(const clsStrings& other) = default;
    ~clsStrings() override;

    // Appends the entries of text, cut at separator. ' toggles quoting; with quoted a separator inside
    // quotes does not cut. With trim, leading spaces of an entry are skipped and name and value are trimmed
    // of spaces. The last entry ends at the end of the text, so an empty text gives one empty entry. The list
    // is not emptied first. Returns Count.
    int Split(const clsString& text, char separator, int mode = SplitPlain, bool trim = false,
              bool quoted = false);
    // All values in order, "name=value" with withNames for the entries that have a name, separator between
    // them. Entries without a value object are skipped; an empty value counts.
    clsString Join(const clsString& separator, bool withNames = false) const;
    // Appends a value without a name; returns its index.
    int AddLine(const clsString& text);
    // With replace, overwrites the value of the first entry of that name or adds one; otherwise always adds.
    // Returns the index.
    int SetValue(const clsString& name, const clsString& value, bool replace = true);
    // The value of the first entry of that name, else empty.
    clsString GetValue(const clsString& name) const;
    // The value at index, else empty.
    clsString GetAt(int index) const;
    // The name at index, else empty.
    clsString GetName(int index) const;

private:
    void AddEntry(clsString entry, int mode, bool trim);
};

class clsCStrings : public clsC<clsString> {
public:
    using clsC<clsString>::clsC;
};

class clsCInts : public clsC<int> {
public:
    using clsC<int>::clsC;
};

} // namespace nuvobase
