#include "book/clsbook.h"

#include "nuvobase/clsfile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <type_traits>

namespace nvoChess {

namespace {

const unsigned char Magic[6] = {'N', 'V', 'O', 'B', 'K', 0};
const unsigned char Trailer[6] = {'*', 'E', 'N', 'D', '*', 0};
const uint32_t FormatVersion = 1;
const int ReservedNumbers = 32;
const size_t BufferSize = 1 << 16;
// The fewest bytes an entry takes in a file: three one-byte counters and the key.
const uint64_t SmallestEntryBytes = 3 + 8;

static_assert(std::is_trivially_copyable_v<clsBookEntry>, "the book moves its entries as bytes");

// Buffered writing of the format's numbers; remembers whether any write failed.
class clsBookWriter {
public:
    explicit clsBookWriter(FILE* file) : File(file), Buffer(new unsigned char[BufferSize]) {}

    void Bytes(const unsigned char* bytes, size_t count) {
        for (size_t i = 0; i < count; ++i) Byte(bytes[i]);
    }
    void Word32(uint32_t value) { LittleEndian(value, 4); }
    void Word64(uint64_t value) { LittleEndian(value, 8); }
    // Base-128, least significant group first, the top bit set on all bytes but the last.
    void Number(uint64_t value) {
        while (value >= 0x80) {
            Byte(uint8_t(value | 0x80));
            value >>= 7;
        }
        Byte(uint8_t(value));
    }
    bool Flush() {
        if (Used > 0 && std::fwrite(Buffer.get(), 1, Used, File) != Used) Failed = true;
        Used = 0;
        return !Failed;
    }

private:
    void Byte(uint8_t value) {
        if (Used == BufferSize) Flush();
        Buffer[Used++] = value;
    }
    void LittleEndian(uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i, value >>= 8) Byte(uint8_t(value));
    }

    FILE* File;
    std::unique_ptr<unsigned char[]> Buffer;
    size_t Used = 0;
    bool Failed = false;
};

// Buffered reading of the format's numbers. Every read says whether the file
// held all of it; it never reads past the end.
class clsBookReader {
public:
    explicit clsBookReader(const char* path)
        : File(std::fopen(path, "rb")), Buffer(new unsigned char[BufferSize]) {}
    ~clsBookReader() {
        if (File != nullptr) std::fclose(File);
    }
    clsBookReader(const clsBookReader&) = delete;
    clsBookReader& operator=(const clsBookReader&) = delete;

    // Bytes of the file not read yet; 0 when unknown.
    uint64_t Remaining() const {
        struct stat status;
        if (File == nullptr || fstat(fileno(File), &status) != 0 || !S_ISREG(status.st_mode)) return 0;
        const uint64_t read = uint64_t(std::ftell(File)) - (Filled - Next);
        return uint64_t(status.st_size) > read ? uint64_t(status.st_size) - read : 0;
    }

    // Magic, version and count, then the reserved numbers, which are dropped.
    bool Header(uint32_t& count) {
        uint32_t version = 0;
        if (!Matches(Magic, sizeof Magic) || !Word32(version) || version != FormatVersion || !Word32(count))
            return false;
        for (int i = 0; i < ReservedNumbers; ++i) {
            uint64_t reserved;
            if (!Number(reserved)) return false;
        }
        return true;
    }

    bool Matches(const unsigned char* expected, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            int byte = Byte();
            if (byte != expected[i]) return false;
        }
        return true;
    }
    bool Word32(uint32_t& value) {
        uint64_t wide = 0;
        bool complete = LittleEndian(wide, 4);
        value = uint32_t(wide);
        return complete;
    }
    bool Word64(uint64_t& value) { return LittleEndian(value, 8); }
    // Takes any number of bytes; groups beyond 64 bits are dropped.
    bool Number(uint64_t& value) {
        value = 0;
        for (int shift = 0;; shift += 7) {
            int byte = Byte();
            if (byte < 0) return false;
            if (shift < 64) value |= uint64_t(byte & 0x7F) << shift;
            if ((byte & 0x80) == 0) return true;
        }
    }
    // A counter cut by the end of the file keeps the bits it has; a key cut
    // short reads as 0. Returns whether the entry was whole.
    bool Entry(clsBookEntry& entry) {
        uint64_t wins = 0, losses = 0, draws = 0;
        Number(wins);
        Number(losses);
        Number(draws);
        const bool complete = Word64(entry.Key);
        if (!complete) entry.Key = 0;
        entry.Wins = uint32_t(wins);
        entry.Losses = uint32_t(losses);
        entry.Draws = uint32_t(draws);
        return complete;
    }

private:
    int Byte() {
        if (Next == Filled) {
            if (File == nullptr) return -1;
            Filled = std::fread(Buffer.get(), 1, BufferSize, File);
            Next = 0;
            if (Filled == 0) return -1;
        }
        return Buffer[Next++];
    }
    bool LittleEndian(uint64_t& value, int bytes) {
        value = 0;
        for (int i = 0; i < bytes; ++i) {
            int byte = Byte();
            if (byte < 0) return false;
            value |= uint64_t(byte) << (8 * i);
        }
        return true;
    }

    FILE* File;
    std::unique_ptr<unsigned char[]> Buffer;
    size_t Next = 0;
    size_t Filled = 0;
};

// Walks two lists in key order as a merge, handing each entry of the result to take: the smaller key
// first, and for a key on both sides the left entry with the right one's counters added. Lists that are
// out of order are walked the same way, entry by entry.
template <class Take>
void MergeWalk(const clsBookEntry* left, int leftCount, const clsBookEntry* right, int rightCount,
               Take take) {
    int l = 0, r = 0;
    while (l < leftCount || r < rightCount) {
        if (r == rightCount || (l < leftCount && right[r].Greater(left[l]))) {
            take(left[l++]);
        } else if (l == leftCount || left[l].Greater(right[r])) {
            take(right[r++]);
        } else {
            clsBookEntry joined = left[l++];
            joined.AddCounters(right[r++]);
            take(joined);
        }
    }
}

int64_t MergedCount(const clsBookEntry* left, int leftCount, const clsBookEntry* right, int rightCount) {
    int64_t count = 0;
    MergeWalk(left, leftCount, right, rightCount, [&count](const clsBookEntry&) { ++count; });
    return count;
}

} // namespace

clsBook::~clsBook() {
    std::free(Items);
}

void clsBook::Clear() {
    std::free(Items);
    Items = nullptr;
    Count = Capacity = 0;
}

bool clsBook::Reserve(int64_t capacity) {
    if (capacity <= Capacity) return true;
    if (capacity > INT32_MAX) return false;
    auto* grown = static_cast<clsBookEntry*>(std::realloc(Items, size_t(capacity) * sizeof(clsBookEntry)));
    if (grown == nullptr) return false;
    Items = grown;
    Capacity = int32_t(capacity);
    return true;
}

// Grows by a quarter, as the program's other arrays do, when the array is full.
bool clsBook::RoomForOne() {
    return Count < Capacity || Reserve(int64_t(Capacity) * 5 / 4 + 1);
}

bool clsBook::Save(const nuvobase::clsString& file, int limit) const {
    nuvobase::clsString temporary;
    FILE* stream = nuvobase::clsFile::CreateBeside(file, temporary);
    if (stream == nullptr) return false;
    clsBookWriter writer(stream);
    writer.Bytes(Magic, sizeof Magic);
    writer.Word32(FormatVersion);
    writer.Word32(uint32_t(CountReaching(limit)));
    for (int i = 0; i < ReservedNumbers; ++i) writer.Number(0);
    for (int i = 0; i < Count; ++i) {
        const clsBookEntry& entry = Items[i];
        if (!entry.Reaches(limit)) continue;
        writer.Number(entry.Wins);
        writer.Number(entry.Losses);
        writer.Number(entry.Draws);
        writer.Word64(entry.Key);
    }
    writer.Bytes(Trailer, sizeof Trailer);
    return nuvobase::clsFile::ReplaceWith(stream, temporary, file, writer.Flush());
}

// The header is checked whole before the book is touched. Its entry count
// reserves no more than the rest of the file can hold.
bool clsBook::Load(const nuvobase::clsString& file, int limit) {
    clsBookReader reader(file.Text());
    uint32_t count = 0;
    if (!reader.Header(count)) return false;
    Clear();
    Reserve(int64_t(std::min<uint64_t>(count, reader.Remaining() / SmallestEntryBytes)));
    for (uint32_t i = 0; i < count; ++i) {
        clsBookEntry read;
        const bool complete = reader.Entry(read);
        if (read.Reaches(limit)) {
            if (!RoomForOne()) return false;
            Items[Count++] = read;
        }
        // An entry cut by the end of the file is kept, and it is the last one.
        if (!complete) return false;
    }
    return reader.Matches(Trailer, sizeof Trailer);
}

void clsBook::AddSorted(clsBook& other) {
    AddSorted(other.Items, other.Count);
    other.Clear();
}

// The book's entries move up by as many places as the merge adds entries, and the merge writes from the
// front: its writing never overtakes the book's entries still to be read. Only the room the book needs is
// taken.
void clsBook::AddSorted(const clsBookEntry* entries, int count) {
    if (count <= 0) return;
    const int64_t merged = MergedCount(Items, Count, entries, count);
    if (!Reserve(merged)) return;
    const int shift = int(merged - Count);
    if (Count > 0) std::memmove(Items + shift, Items, sizeof(clsBookEntry) * size_t(Count));
    int made = 0;
    MergeWalk(Items + shift, Count, entries, count,
              [this, &made](const clsBookEntry& entry) { Items[made++] = entry; });
    Count = made;
}

const clsBookEntry* clsBook::Find(uint64_t key) const {
    const clsBookEntry* begin = Items;
    const clsBookEntry* end = Items + Count;
    const clsBookEntry* found = std::lower_bound(
        begin, end, key, [](const clsBookEntry& entry, uint64_t wanted) { return entry.Key < wanted; });
    return found != end && found->Key == key ? found : nullptr;
}

int clsBook::CountReaching(int limit) const {
    return int(std::count_if(Items, Items + Count,
                             [limit](const clsBookEntry& entry) { return entry.Reaches(limit); }));
}

} // namespace nvoChess
