/// A named lock between processes.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// The lock of all objects with one name, in this and other processes: an advisory lock on the file `/tmp/<name>.lock`.
/// A holder that dies gives it up. The file is made where it is missing and is never deleted.
///
///     InterprocessMutex mutex("updater");
///     if (mutex.tryLock()) { ... mutex.unlock(); }
///
/// Two objects with one name exclude each other within a process as well. One thread at a time may use an object. A
/// child of fork shares the lock of the objects that it inherits; launched programs don't.
class InterprocessMutex {
public:
    /// A name is made of ASCII letters, digits, "_", "-" and "."; any other one gives an invalid object, in silence. A
    /// file that can't be opened is logged. Whatever stands at the path and isn't a regular file is refused.
    explicit InterprocessMutex(const String& p_name);
    /// Unlocks.
    ~InterprocessMutex();
    InterprocessMutex(const InterprocessMutex&) = delete;
    InterprocessMutex& operator=(const InterprocessMutex&) = delete;

    bool_t isValid() const;

    /// Waits for the lock. False when the object is invalid or holds the lock already.
    bool_t lock();
    /// The same without waiting: false also when somebody else holds the lock.
    bool_t tryLock();
    /// Does nothing unless this object holds the lock.
    void unlock();

private:
    bool openLockFile(const char* p_path);
    bool_t takeLock(int p_operation);

    bool_t m_valid;
    bool_t m_locked;
    int32_t m_descriptor;
};

} // namespace zyr
