// clsFile: buffered files with typed fields, folder listings, and files replaced whole.
#include "nuvobase/clsfile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace nuvobase {

namespace {
constexpr int VarIntBits = 7;
constexpr uint8_t VarIntMore = 0x80;
constexpr uint8_t VarIntPayload = 0x7F;
constexpr int MaxVarIntShift = 63;
constexpr uint8_t FilledByte = 0xFF;
constexpr int BitsPerByte = 8;
// Names tried for a file beside another before giving up.
constexpr int BesideNameTries = 100;
constexpr size_t CopyChunkBytes = 1 << 16;

// Copies the whole of the file at path to stream; a file that does not exist copies nothing.
bool CopyInto(const clsString& path, std::FILE* stream) {
    std::FILE* source = std::fopen(path.Text(), "rb");
    if (source == nullptr) return errno == ENOENT;
    char chunk[CopyChunkBytes];
    bool copied = true;
    size_t got;
    while (copied && (got = std::fread(chunk, 1, sizeof chunk, source)) > 0)
        copied = std::fwrite(chunk, 1, got, stream) == got;
    copied = copied && !std::ferror(source);
    std::fclose(source);
    return copied;
}
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

std::FILE* clsFile::CreateBeside(const clsString& file, clsString& temporary) {
    static std::atomic<unsigned> serial{0};
    for (int attempt = 0; attempt < BesideNameTries; ++attempt) {
        char suffix[48];
        std::snprintf(suffix, sizeof suffix, ".%ld-%u.tmp", long(getpid()), serial++);
        temporary = file + suffix;
        // O_EXCL refuses a name that exists, such as one left by a process that died while writing.
        const int descriptor = open(temporary.Text(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor < 0) {
            if (errno == EEXIST) continue;
            return nullptr;
        }
        std::FILE* stream = fdopen(descriptor, "wb");
        if (stream == nullptr) {
            close(descriptor);
            std::remove(temporary.Text());
        }
        return stream;
    }
    return nullptr;
}

bool clsFile::ReplaceWith(std::FILE* stream, const clsString& temporary, const clsString& file,
                          bool written) {
    written = written && std::fflush(stream) == 0 && fsync(fileno(stream)) == 0;
    written = std::fclose(stream) == 0 && written;
    if (written && std::rename(temporary.Text(), file.Text()) == 0) return true;
    std::remove(temporary.Text());
    return false;
}

bool clsFile::SaveReplacing(const clsString& file, const clsString& text, bool append) {
    clsString temporary;
    std::FILE* stream = CreateBeside(file, temporary);
    if (stream == nullptr) return false;
    bool written = !append || CopyInto(file, stream);
    written = written && std::fwrite(text.Text(), 1, size_t(text.Size()), stream) == size_t(text.Size());
    return ReplaceWith(stream, temporary, file, written);
}

} // namespace nuvobase
