#include "app/learnfile.h"

#include "app/clschessapplication.h"

#include <vector>

namespace nvoChess {

namespace {

using nuvobase::clsString;

constexpr int FieldGeneration = 0, FieldName = 2, FieldScore = 3, FieldSoul = 4;
constexpr int SoulFields = 16;
constexpr int GenerationDigits = 3;

std::vector<clsString> Fields(const clsString& line) {
    std::vector<clsString> fields;
    for (int position = 0; position >= 0;) fields.push_back(line.NextWord('\t', position));
    return fields;
}

// A decimal integer, as the result file writes them.
bool IsNumber(const clsString& text) {
    const char* c = text.Text();
    if (*c == '-') ++c;
    if (!*c) return false;
    for (; *c; ++c)
        if (*c < '0' || *c > '9') return false;
    return true;
}

} // namespace

nuvobase::clsCStrings TextLines(const clsString& text) {
    nuvobase::clsCStrings lines;
    for (int position = 0; position >= 0;) {
        clsString line = text.NextWord('\n', position);
        line.TrimRight('\r').Trim();
        if (!line.IsEmpty()) lines.Add(line);
    }
    return lines;
}

clsString TabField(const clsString& line, int index) {
    int position = 0;
    for (int field = 0; position >= 0; ++field) {
        clsString text = line.NextWord('\t', position);
        if (field == index) return text;
    }
    return clsString();
}

nuvobase::clsCStrings FileLines(const clsString& path) {
    clsString text;
    text.LoadFromFile(path.Text());
    return TextLines(text);
}

int64_t HighestGeneration(const nuvobase::clsCStrings& lines, int& first) {
    int64_t highest = 0;
    first = 0;
    for (int i = 0; i < lines.Count; ++i) {
        const int64_t generation =
            TabField(lines.GetAt(i), FieldGeneration).ToDecimal();
        if (generation > highest) {
            highest = generation;
            first = i;
        }
    }
    return highest;
}

clsLearnLine ReadLearnLine(const clsString& line) {
    const std::vector<clsString> fields = Fields(line);
    clsLearnLine read;
    // The name stands between single quotes, any inside it as they are.
    if (fields.size() > FieldName) read.Name = fields[FieldName];
    if (read.Name.Size() >= 2 && *read.Name.At(0) == '\'' && *read.Name.At(read.Name.Size() - 1) == '\'')
        read.Name = read.Name.Mid(1, read.Name.Size() - 2);
    if (fields.size() > FieldScore) read.Score = fields[FieldScore].ToDecimal();
    read.Soul = read.Name + "=";
    int parameters = 0;
    for (size_t f = FieldScore; f < fields.size(); ++f) {
        // A whole line ends with a tab, so its last field is empty.
        if (f + 1 == fields.size() && fields[f].IsEmpty()) break;
        if (!IsNumber(fields[f])) read.Numeric = false;
        if (f < FieldSoul) continue;
        read.Soul += (parameters++ > 0 ? " " : "") + fields[f];
    }
    read.Complete = parameters >= SoulFields;
    return read;
}

clsString GenerationFile(const clsString& file, int64_t generation) {
    const int slash = file.FindLast('/');
    const int dot = file.FindLast('.');
    const bool hasExtension = dot > slash;
    clsString name = hasExtension ? file.Left(dot) : file;
    name += clsString(".") + clsString(int(generation), GenerationDigits);
    if (hasExtension) name += file.From(dot);
    return name;
}

} // namespace nvoChess
