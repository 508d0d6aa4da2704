#include "host/zyr_output_file.h"

#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zyr::host {

OutputFile::OutputFile(const std::string& p_path) : m_path(p_path) {
    if (p_path == "-") {
        m_name = "the standard output";
        m_descriptor = getDataDescriptor();
    } else {
        m_name = "'" + p_path + "'";
        m_descriptor = open(p_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        m_owned = true;
        if (m_descriptor < 0) {
            fail(errno);
        }
    }
    struct stat status {};
    m_seekable = m_owned && fstat(m_descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

OutputFile::~OutputFile() {
    if (m_owned && m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

int OutputFile::tryWrite(const void* p_data, size_t p_size) {
    const char* data = static_cast<const char*>(p_data);
    while (p_size > 0 && m_error == 0) {
        const ssize_t count = ::write(m_descriptor, data, p_size);
        if (count >= 0) {
            data += count;
            p_size -= size_t(count);
        } else if (errno != EINTR) {
            m_error = errno;
        }
    }
    return m_error;
}

void OutputFile::write(const void* p_data, size_t p_size) {
    if (const int error = tryWrite(p_data, p_size); error != 0) {
        fail(error);
    }
}

bool OutputFile::seek(int64_t p_offset, int p_whence, int64_t& p_position) {
    if (!m_seekable) {
        return false;
    }
    p_position = lseek(m_descriptor, p_offset, p_whence);
    return p_position >= 0;
}

void OutputFile::close() {
    const int descriptor = m_descriptor;
    m_descriptor = -1;
    if (m_owned && descriptor >= 0 && ::close(descriptor) != 0 && errno != EINTR) {
        fail(errno);
    }
}

void OutputFile::writeWhole(const std::string& p_text) {
    try {
        write(p_text.data(), p_text.size());
        close();
    } catch (const RunError&) {
        if (m_seekable) {
            unlink(m_path.c_str());
        }
        throw;
    }
}

void OutputFile::fail(int p_error) const {
    throw RunError("cannot write " + m_name + ": " + std::strerror(p_error));
}

} // namespace zyr::host
