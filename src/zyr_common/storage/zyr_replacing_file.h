/// A file that takes the place of an old one only when it is whole.
#pragma once

#include "zyr_common/streams/zyr_file_stream.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// Writes beside the file that the path names (behind links, if it is one) and renames at the end, with the permissions
/// of the old file. What is no plain file, such as a pipe, is written to directly, and so is a file in a directory that
/// must not be changed. Without finish() nothing is left.
///
/// A stream of another make is told the path itself, once, and nothing but its open and writeBytes has to work: its
/// word for a byte is taken.
class ReplacingFile {
public:
    /// Takes over the stream.
    explicit ReplacingFile(IOutputStreamFile* p_stream);
    /// Removes the file beside where finish() has not been called or has failed, and releases the stream.
    ~ReplacingFile();
    ReplacingFile(const ReplacingFile&) = delete;
    ReplacingFile& operator=(const ReplacingFile&) = delete;

    /// Opens the file beside, or the path itself where it is no plain file. False, with nothing left behind, where that
    /// is not possible.
    bool_t open(const String& p_path);
    /// False as soon as one byte could not be written.
    bool_t write(const void* p_data, size_t p_size);
    /// Sees to it that every byte has reached the disk and puts the file in its place.
    bool_t finish();

private:
    IOutputStreamFile* m_stream;
    String m_path;
    /// The file beside; empty while there is none.
    String m_temporaryPath;
    /// The stream is of another make, or has no file of the system.
    bool_t m_isElsewhere = 0;
    uint64_t m_size = 0;
    /// Permissions of the old file, -1 without one.
    int64_t m_mode = -1;
};

} // namespace zyr
