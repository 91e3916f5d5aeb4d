// clsFile: buffered files with typed fields, and folder listings.
#include "nuvobase/clsfile.h"

#include <dirent.h>
#include <sys/stat.h>

namespace nuvobase {

namespace {
constexpr int VarIntBits = 7;
constexpr uint8_t VarIntMore = 0x80;
constexpr uint8_t VarIntPayload = 0x7F;
constexpr int MaxVarIntShift = 63;
constexpr uint8_t FilledByte = 0xFF;
constexpr int BitsPerByte = 8;
} // namespace

clsFile::clsFile(const clsFile& other)
    : Folder(other.Folder), Name(other.Name), Size(other.Size), Attributes(other.Attributes) {}

clsFile& clsFile::operator=(const clsFile& other) {
    if (this != &other) {
        Close();
        OwnsStream = true;
        Folder = other.Folder;
        Name = other.Name;
        Size = other.Size;
        Attributes = other.Attributes;
    }
    return *this;
}

clsFile::~clsFile() {
    Close();
}

bool clsFile::Open(const char* path, const char* mode) {
    Close();
    OwnsStream = true;
    Name = path;
    if (!path || !mode) return false;
    Stream = std::fopen(path, mode);
    return Stream && !std::ferror(Stream);
}

bool clsFile::Close() {
    if (Stream && OwnsStream) std::fclose(Stream);
    Stream = nullptr;
    return true;
}

int64_t clsFile::Length() {
    if (!Stream) return -1;
    std::fflush(Stream); // pending writes count
    struct stat status;
    if (fstat(fileno(Stream), &status) != 0) return -1;
    return int64_t(status.st_size);
}

bool clsFile::SeekEnd() {
    return Stream && std::fseek(Stream, 0, SEEK_END) == 0;
}

bool clsFile::SeekStart() {
    return Stream && std::fseek(Stream, 0, SEEK_SET) == 0;
}

int clsFile::Read(void* buffer, int count) {
    if (!Stream || !buffer || count <= 0) return 0;
    return int(std::fread(buffer, 1, size_t(count), Stream));
}

int clsFile::WriteVarInt(uint64_t value) {
    if (!Stream) return 0;
    uint8_t bytes[10];
    int count = 0;
    while (value > VarIntPayload) {
        bytes[count++] = uint8_t(VarIntMore | (value & VarIntPayload));
        value >>= VarIntBits;
    }
    bytes[count++] = uint8_t(value);
    return std::fwrite(bytes, 1, size_t(count), Stream) == size_t(count) ? count : 0;
}

uint64_t clsFile::ReadVarInt() {
    if (!Stream) return 0;
    uint64_t value = 0;
    for (int shift = 0; shift <= MaxVarIntShift; shift += VarIntBits) {
        const int c = std::fgetc(Stream);
        if (c == EOF) return 0;
        value |= uint64_t(c & VarIntPayload) << shift;
        if (!(c & VarIntMore)) return value;
    }
    return 0;
}

int clsFile::WriteText(const clsString& text) {
    const int head = WriteVarInt(uint64_t(text.Size()));
    if (head == 0) return 0;
    if (text.Size() > 0 && std::fwrite(text.Text(), 1, size_t(text.Size()), Stream) != size_t(text.Size()))
        return 0;
    return head + text.Size();
}

int32_t clsFile::ReadSized(int count) {
    if (count <= 0 || count > MaxSizedBytes) return 0;
    uint8_t bytes[MaxSizedBytes];
    if (Read(bytes, count) != count) return 0;
    uint32_t value = 0;
    for (int i = 0; i < MaxSizedBytes; i++) {
        const uint8_t byte = i < count ? bytes[i] : (bytes[count - 1] == FilledByte ? FilledByte : 0);
        value |= uint32_t(byte) << (i * BitsPerByte);
    }
    return int32_t(value);
}

int clsFile::ListFiles(const char* folder, const char* pattern, clsCollection<clsFile>& list) {
    const clsString folderPath = clsString(folder).ToForwardSlashes();
    DIR* directory = opendir(folderPath.IsEmpty() ? "." : folderPath.Text());
    if (!directory) return list.Count;
    const bool filtered = pattern && *pattern;
    while (const dirent* entry = readdir(directory)) {
        const clsString name(entry->d_name);
        if (name.Text()[0] == '.') continue;
        if (filtered && !name.Compare(pattern, clsString::ComparePattern)) continue;
        clsString path(folderPath);
        path.PathJoin(name.Text());
        struct stat status;
        if (stat(path.Text(), &status) != 0 || S_ISDIR(status.st_mode)) continue;
        clsFile* file = new clsFile;
        file->Folder = folderPath;
        file->Name = name;
        file->Size = uint64_t(status.st_size);
        file->Attributes = uint32_t(status.st_mode);
        if (list.Add(path, file) < 0) delete file;
    }
    closedir(directory);
    return list.Count;
}

} // namespace nuvobase
