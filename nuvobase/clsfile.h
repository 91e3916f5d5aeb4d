// clsFile: an open file over the C library's buffered stream, with the few typed binary fields the books
// use; a directory entry (folder, name, size, attributes), of which ListFiles makes a list; and the
// replacing of a whole file, so that a reader finds its old content or its new one, never a part.
#pragma once

#include <cstdint>
#include <cstdio>

#include "nuvobase/clscollection.h"
#include "nuvobase/clsstring.h"

namespace nuvobase {

class clsFile {
public:
    // Most bytes ReadSized puts together into one value.
    static constexpr int MaxSizedBytes = 4;

    std::FILE* Stream = nullptr; // null when closed
    bool OwnsStream = true;      // Close, Open and the destructor close the stream only when set
    clsString Folder;            // directory entry: the folder listed
    clsString Name;              // the file name, or the path given to Open
    uint64_t Size = 0;           // directory entry: bytes
    uint32_t Attributes = 0;     // directory entry: the file system's mode word

    clsFile() = default;
    // A copy is the directory entry only: the stream stays with the original.
    clsFile(const clsFile& other);
    clsFile& operator=(const clsFile& other);
    virtual ~clsFile();

    // Closes any stream it owns, keeps path in Name and opens with a C library mode ("rb", "wb", "ab+").
    // True when the stream is open and shows no error.
    bool Open(const char* path, const char* mode);
    // Closes the stream if owned and forgets it. Always true.
    bool Close();
    // The file's length in bytes; -1 when closed.
    int64_t Length();
    bool SeekEnd();
    bool SeekStart();
    // Reads at most count bytes into buffer; returns the bytes read (0 when closed).
    int Read(void* buffer, int count);
    // Writes value as base-128, low 7 bits first, high bit set on every byte but the last. Returns the
    // bytes written, 0 on failure or when closed.
    int WriteVarInt(uint64_t value);
    // Reads what WriteVarInt wrote; the end of the file (or a value too long for 64 bits) gives 0.
    uint64_t ReadVarInt();
    // The length by WriteVarInt, then the bytes. Returns the bytes written, 0 on failure.
    int WriteText(const clsString& text);
    // count bytes (at most MaxSizedBytes), low byte first. A last byte of 255 in fewer than four bytes
    // fills the upper bytes with 255, so short fields keep their sign. A bad count or a short read gives 0.
    int32_t ReadSized(int count);

    // Adds to list the files of folder (not its sub-folders, nor names starting with '.'), keyed by folder
    // and name joined by PathJoin. A non-empty pattern filters by ComparePattern ("%.cbk"). The list is not
    // emptied; an unreadable folder leaves it as it was. Returns the count of list.
    static int ListFiles(const char* folder, const char* pattern, clsCollection<clsFile>& list);

    // A new file beside file, under a name of its own in temporary, open for writing; null when none can be
    // made. ReplaceWith finishes it.
    static std::FILE* CreateBeside(const clsString& file, clsString& temporary);
    // Closes stream, made by CreateBeside, and when written holds and its bytes reached the disk renames it
    // over file; otherwise removes it and leaves file as it was. True when file has the new content.
    static bool ReplaceWith(std::FILE* stream, const clsString& temporary, const clsString& file,
                            bool written);
    // Writes text to file, behind the file's present content when append is set, by way of a file beside
    // it. False, and file as it was, when anything fails.
    static bool SaveReplacing(const clsString& file, const clsString& text, bool append);
};

} // namespace nuvobase
