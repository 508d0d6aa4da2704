/// The owner of one reference on a counted object or record.
///
/// An object from a factory comes with one reference that belongs to the caller: adopt it. A pointer that somebody else
/// owns is shared, which adds a reference:
///
///     Ref<IImage> image = Ref<IImage>::adopt(new WImage());
///     m_image = Ref<IImage>::share(p_image);    // the former one gets its reference back
///     return image.release();                   // the caller owns it from here
///
/// Not thread safe by itself; the count of what it holds is.
#pragma once

#include "zyr_common/zyr_types.h"

#include <utility>

namespace zyr {

/// `T` has addRef() and release(): an object, or a record that derives from RefCountedData. May hold nothing.
template <class T> class Ref {
public:
    Ref() = default;
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
    Ref(Ref&& p_other) noexcept : m_target(p_other.release()) {}
    /// Takes over the reference of an owner of a derived class.
    template <class U> Ref(Ref<U>&& p_other) noexcept : m_target(p_other.release()) {}
    Ref& operator=(Ref&& p_other) noexcept {
        // In this order an owner that is assigned to itself keeps its target.
        const Ref former(std::exchange(m_target, p_other.release()));
        return *this;
    }
    ~Ref() { clear(); }

    /// Takes over the caller's reference; the target may be null.
    static Ref adopt(T* p_target) { return Ref(p_target); }
    /// Adds a reference; the target may be null.
    static Ref share(T* p_target) {
        if (p_target != nullptr) {
            p_target->addRef();
        }
        return Ref(p_target);
    }

    /// The target without a reference, or null.
    T* get() const { return m_target; }
    /// The target or null; with the flag set the caller gets a reference of its own.
    T* get(bool_t p_addReference) const { return p_addReference ? Ref::share(m_target).release() : m_target; }
    T* operator->() const { return m_target; }
    T& operator*() const { return *m_target; }
    explicit operator bool() const { return m_target != nullptr; }

    /// Hands the reference over to the caller and holds nothing from here on.
    T* release() { return std::exchange(m_target, nullptr); }
    /// Gives the reference back. The target's destructor finds this owner empty already.
    void clear() {
        if (T* former = release()) {
            former->release();
        }
    }

private:
    explicit Ref(T* p_target) : m_target(p_target) {}

    T* m_target = nullptr;
};

} // namespace zyr
