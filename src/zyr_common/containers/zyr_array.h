/// A growing array with an explicit allocation model, which can also be bound to memory that it does not own.
///
///     Array<uint32_t> sizes;
///     sizes.pushBack(3);
///     sizes.setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
///
/// The array owns its items unless it is bound to foreign memory. Items that are pointers are not deleted. It is not
/// thread safe: whoever shares an array between threads guards it.
#pragma once

#include "zyr_common/memory/zyr_allocator.h"
#include "zyr_common/memory/zyr_power_of_two.h"
#include "zyr_common/memory/zyr_ref_counted_data.h"

#include <type_traits>
#include <utility>

namespace zyr {

/// When the block of an Array is reallocated.
enum AllocConditionEnum : uint32_t {
    /// The array is bound to memory that it does not own, and its size is fixed.
    ZYR_ALLOC_CONDITION_FIXED_SIZE = 0,
    /// At every change of size, upward and downward.
    ZYR_ALLOC_CONDITION_ON_RESIZE = 1,
    /// Only when the new size exceeds the capacity; the block never shrinks.
    ZYR_ALLOC_CONDITION_ON_OVERFLOW = 6
};

/// How the capacity follows from a new size: one of these classes in the top four bits, or else the whole value is a
/// step to whose multiple the size is rounded up; a step of 0 or 1 gives exactly the size.
enum AllocStepEnum : uint32_t {
    /// Twice the size. Together with ZYR_ALLOC_CONDITION_ON_RESIZE this forbids every change of size instead.
    ZYR_ALLOC_STEP_DOUBLE = 0x10000000,
    /// The smallest power of two above the size.
    ZYR_ALLOC_STEP_POWER_OF_TWO = 0x20000000,
    ZYR_ALLOC_STEP_CLASS_MASK = 0xF0000000
};

#pragma pack(push, 1)

/// Items of class type are live objects in all slots of the block, not only in those in use; plain items are moved as
/// raw memory, and slots gained by growth are then uninitialised. A default array resizes its block at every change of
/// size, to a power of two.
///
/// Items handed in may lie in the array itself. The order of the virtual operations and of the fields is a contract
/// between separately built modules.
///
/// Which models give what, for an array that grows by one item at a time:
///
/// | Condition | Step | Use |
/// |---|---|---|
/// | ON_RESIZE | POWER_OF_TWO | the default: few blocks while it grows, and none that is far too large |
/// | ON_OVERFLOW | DOUBLE | buffers that are filled again and again: the block stays |
/// | ON_RESIZE | 0 or 1 | arrays of a known size that last: no byte too much, a new block at every push |
/// | FIXED_SIZE | | a view of foreign memory |
template <typename T> class Array : public RefCountedData {
public:
    /// Empty, without a block; allocates nothing.
    Array() { setDefaultState(); }
    /// A deep copy in the default state; the allocation model is not taken over.
    Array(const Array& p_other) : Array() { Array::copy(&p_other); }
    /// See copy(): the items only. This array's model returns to the default.
    Array& operator=(const Array& p_other) {
        copy(&p_other);
        return *this;
    }
    /// Destroys the items and gives the block back. Memory that the array is bound to stays as it is.
    ~Array() override { releaseData(); }

    /// Sets the source of memory and nothing else; a present block must be compatible with it. Null means the zyr_
    /// functions.
    virtual void setAllocatorUnsafe(Allocator* p_allocator) { m_allocator = p_allocator; }

    /// Exchanges the blocks together with their models and allocators.
    virtual void swap(Array& p_other) {
        std::swap(m_data, p_other.m_data);
        std::swap(m_size, p_other.m_size);
        std::swap(m_allocatedSize, p_other.m_allocatedSize);
        std::swap(m_allocCondition, p_other.m_allocCondition);
        std::swap(m_allocStep, p_other.m_allocStep);
        std::swap(m_allocator, p_other.m_allocator);
    }

    /// Clears and takes over the items of the source, not its model. A null source only clears.
    virtual void copy(const Array* p_source) {
        if (p_source == this) {
            return;
        }
        clear();
        if (p_source != nullptr && resize(p_source->m_size, 0, 0)) {
            assignItems(m_data, p_source->m_data, p_source->m_size);
        }
    }

    /// Gives the block back, unless it is foreign, and returns to the default state: allocator and model too.
    virtual void clear() {
        releaseData();
        setDefaultState();
    }

    /// Changes the number of items in use. With `p_tailCount` the last so many items end up `p_gap` places further on,
    /// which makes room in the middle of a growing array; a gap of 0 or beyond the growth means the whole growth.
    ///
    /// False, with nothing changed, when the array is fixed or its model forbids it, or when no memory was given.
    ///
    ///     numbers.resize(8, 2, 3); // of 5 numbers the last 2 move to the places 6 and 7; 3, 4 and 5 are free
    virtual bool resize(size_t p_newSize, size_t p_tailCount = 0, size_t p_gap = 0) {
        if (m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE) {
            return false;
        }
        if (m_allocCondition == ZYR_ALLOC_CONDITION_ON_RESIZE &&
            (m_allocStep & ZYR_ALLOC_STEP_CLASS_MASK) == ZYR_ALLOC_STEP_DOUBLE) {
            return false;
        }
        if (p_newSize == m_size) {
            return true;
        }
        size_t tail = 0;
        size_t gap = 0;
        if (p_newSize > m_size) {
            const size_t growth = p_newSize - m_size;
            gap = p_gap != 0 && p_gap <= growth ? p_gap : growth;
            tail = p_tailCount < m_size ? p_tailCount : m_size;
        }
        if (m_allocCondition == ZYR_ALLOC_CONDITION_ON_RESIZE || p_newSize > m_allocatedSize) {
            // Beyond this no block can be had, and the sums below would wrap.
            if (p_newSize > SIZE_MAX / 4 / sizeof(T)) {
                return false;
            }
            const size_t capacity = getCapacityFor(p_newSize);
            if (capacity != m_allocatedSize) {
                return changeBlock(p_newSize, capacity, tail, gap);
            }
        }
        if (tail != 0) {
            shiftItems(m_data + m_size - tail + gap, m_data + m_size - tail, tail);
        }
        m_size = p_newSize;
        return true;
    }

    /// Inserts `p_count` items at the position, which counts from the end with `p_fromEnd`. False, with nothing
    /// changed, when the count is 0, the position lies beyond the size, or the array can't grow.
    virtual bool insert(const void* p_items, size_t p_position, size_t p_count, bool p_fromEnd) {
        if (m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE || p_count == 0 || p_position > m_size ||
            p_count > SIZE_MAX - m_size) {
            return false;
        }
        if (isInside(p_items)) {
            Array items;
            items.pushBackRange(p_items, p_count);
            return insert(items.m_data, p_position, p_count, p_fromEnd);
        }
        const size_t start = p_fromEnd ? m_size - p_position : p_position;
        if (!resize(m_size + p_count, m_size - start, p_count)) {
            return false;
        }
        assignItems(m_data + start, static_cast<const T*>(p_items), p_count);
        return true;
    }

    /// Overwrites items from the position on, and grows where they reach beyond the end; a fixed array takes only what
    /// fits. Gives the number of items written, 0 when the position lies beyond the size or the array can't grow.
    virtual size_t replace(const void* p_items, size_t p_position, size_t p_count, bool p_fromEnd) {
        if (p_count == 0 || p_position > m_size) {
            return 0;
        }
        if (isInside(p_items)) {
            Array items;
            items.pushBackRange(p_items, p_count);
            return replace(items.m_data, p_position, p_count, p_fromEnd);
        }
        const size_t start = p_fromEnd ? m_size - p_position : p_position;
        size_t count = p_count;
        if (count > m_size - start) {
            if (m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE) {
                count = m_size - start;
            } else if (count > SIZE_MAX - start || !resize(start + count, 0, 0)) {
                return 0;
            }
        }
        assignItems(m_data + start, static_cast<const T*>(p_items), count);
        return count;
    }

    /// Removes `p_count` items from the position on. False when the array is fixed, the count is 0, or the range is not
    /// within the items.
    virtual bool remove(size_t p_position, size_t p_count, bool p_fromEnd) {
        if (m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE || p_count == 0 || p_position > m_size) {
            return false;
        }
        const size_t start = p_fromEnd ? m_size - p_position : p_position;
        if (p_count > m_size - start) {
            return false;
        }
        shiftItems(m_data + start, m_data + start + p_count, m_size - start - p_count);
        return resize(m_size - p_count, 0, 0);
    }

    /// Appends `p_count` items; null items only grow the size. On a fixed array nothing happens.
    virtual void pushBackRange(const void* p_items, size_t p_count) {
        if (p_count == 0 || p_count > SIZE_MAX - m_size) {
            return;
        }
        if (isInside(p_items)) {
            Array items;
            items.pushBackRange(p_items, p_count);
            pushBackRange(items.m_data, p_count);
            return;
        }
        const size_t oldSize = m_size;
        if (resize(m_size + p_count, 0, 0) && p_items != nullptr) {
            assignItems(m_data + oldSize, static_cast<const T*>(p_items), p_count);
        }
    }

    /// Appends one item. On a fixed array nothing happens.
    virtual void pushBack(const T& p_item) {
        if (m_allocCondition == ZYR_ALLOC_CONDITION_ON_OVERFLOW && m_size < m_allocatedSize) {
            m_data[m_size] = p_item;
            m_size++;
            return;
        }
        if constexpr (!std::is_trivially_copyable_v<T>) {
            if (!isInside(&p_item)) {
                if (resize(m_size + 1, 0, 0)) {
                    m_data[m_size - 1] = p_item;
                }
                return;
            }
        }
        T item(p_item);
        if (resize(m_size + 1, 0, 0)) {
            m_data[m_size - 1] = std::move(item);
        }
    }

    /// Takes up to `p_count` items off the end, in their order into `p_dest` unless that is null. Gives their number,
    /// 0 when the array can't change its size.
    virtual size_t popBackRange(void* p_dest, size_t p_count) {
        const size_t count = p_count < m_size ? p_count : m_size;
        if (count == 0 || m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE) {
            return 0;
        }
        if (p_dest != nullptr) {
            assignItems(static_cast<T*>(p_dest), m_data + m_size - count, count);
        }
        return resize(m_size - count, 0, 0) ? count : 0;
    }

    /// Takes the last item off and gives it. On an empty array the result means nothing: ask isEmpty() first.
    virtual T popBack() {
        if (m_size == 0) {
            return T();
        }
        T item(m_data[m_size - 1]);
        resize(m_size - 1, 0, 0);
        return item;
    }

    /// Sets the size to `p_position`, at most the capacity, and keeps the block from now on, so that later pushes
    /// overwrite from there. On a fixed array nothing happens.
    virtual void setOverridePosition(size_t p_position) {
        if (m_allocCondition != ZYR_ALLOC_CONDITION_FIXED_SIZE) {
            m_allocCondition = ZYR_ALLOC_CONDITION_ON_OVERFLOW;
            m_size = p_position < m_allocatedSize ? p_position : m_allocatedSize;
        }
    }

    /// Gives back what is held and looks at `p_count` items of somebody else's, which must outlive the binding. The
    /// array will neither free nor resize them; clear() ends the binding.
    ///
    ///     Array<float> view;
    ///     view.bindFixedSizeData(samples, 512);
    virtual void bindFixedSizeData(void* p_data, size_t p_count) {
        releaseData();
        m_data = static_cast<T*>(p_data);
        m_size = p_count;
        m_allocatedSize = p_count;
        m_allocCondition = ZYR_ALLOC_CONDITION_FIXED_SIZE;
        m_allocStep = 0;
    }

    /// Gives back what is held and takes ownership of a block of `p_count` live items from the default allocator.
    virtual void bindInitialData(void* p_data, size_t p_count) {
        clear();
        m_data = static_cast<T*>(p_data);
        m_size = p_count;
        m_allocatedSize = p_count;
    }

    /// Hands the block and the number of items in use to the caller, who owns the block from now on, and returns to the
    /// default state.
    virtual void unbindData(T** p_data, size_t* p_size) {
        *p_data = m_data;
        *p_size = m_size;
        setDefaultState();
    }

    /// Chooses when and how the block is resized from now on. True only between the conditions 1 and 6; otherwise
    /// nothing changes.
    virtual bool setAllocationModel(uint32_t p_condition, uint32_t p_step) {
        if (!isOwningCondition(m_allocCondition) || !isOwningCondition(p_condition)) {
            return false;
        }
        m_allocCondition = p_condition;
        m_allocStep = p_step;
        return true;
    }

    /// The model in force: one of AllocConditionEnum, and a step as AllocStepEnum tells.
    virtual uint32_t getAllocCondition() const { return m_allocCondition; }
    virtual uint32_t getAllocStep() const { return m_allocStep; }
    /// The first item; null when there is no block.
    virtual T* getData() const { return m_data; }
    /// The number of items in use.
    virtual size_t getSize() const { return m_size; }
    /// Whether no item is in use; the block may still be there.
    virtual bool isEmpty() const { return m_size == 0; }
    /// The capacity in items.
    virtual size_t getAllocatedSize() const { return m_allocatedSize; }
    /// Whether the items are somebody else's, so that the size can't change.
    virtual bool isFixedSizeDataBound() const { return m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE; }

    /// The index is not checked. Items and iterators are valid until the size changes.
    T& operator[](size_t p_index) { return m_data[p_index]; }
    const T& operator[](size_t p_index) const { return m_data[p_index]; }
    /// For loops over the items in use. Both are null while there is no block.
    T* begin() { return m_data; }
    T* end() { return m_data + m_size; }
    const T* begin() const { return m_data; }
    const T* end() const { return m_data + m_size; }

private:
    /// Whether the array owns its block under this condition. Values besides the three of AllocConditionEnum are
    /// refused.
    static bool isOwningCondition(uint32_t p_condition) {
        return p_condition == ZYR_ALLOC_CONDITION_ON_RESIZE || p_condition == ZYR_ALLOC_CONDITION_ON_OVERFLOW;
    }

    /// Copies items onto live ones. The ranges must not overlap; a count of 0 allows null pointers.
    static void assignItems(T* p_dest, const T* p_src, size_t p_count) {
        if constexpr (std::is_trivially_copyable_v<T>) {
            copyItems(p_dest, p_src, p_count);
        } else {
            for (size_t i = 0; i < p_count; i++) {
                p_dest[i] = p_src[i];
            }
        }
    }

    /// The same for overlapping ranges of one block.
    static void shiftItems(T* p_dest, T* p_src, size_t p_count) {
        if constexpr (std::is_trivially_copyable_v<T>) {
            moveItems(p_dest, p_src, p_count);
        } else if (p_dest < p_src) {
            for (size_t i = 0; i < p_count; i++) {
                p_dest[i] = std::move(p_src[i]);
            }
        } else {
            for (size_t i = p_count; i > 0; i--) {
                p_dest[i - 1] = std::move(p_src[i - 1]);
            }
        }
    }

    /// Whether the item lies in the array's own block, and would go with it when that is changed.
    bool isInside(const void* p_item) const {
        const char* item = static_cast<const char*>(p_item);
        const char* block = reinterpret_cast<const char*>(m_data);
        return block != nullptr && item >= block && item < block + m_allocatedSize * sizeof(T);
    }

    /// The capacity that the step gives for a size, both in items.
    size_t getCapacityFor(size_t p_size) const {
        switch (m_allocStep & ZYR_ALLOC_STEP_CLASS_MASK) {
        case ZYR_ALLOC_STEP_DOUBLE:
            return 2 * p_size;
        case ZYR_ALLOC_STEP_POWER_OF_TWO:
            return zyr_getNearestPowerOfTwo(p_size);
        default:
            return m_allocStep > 1 ? (p_size + m_allocStep - 1) / m_allocStep * m_allocStep : p_size;
        }
    }

    /// Moves the items into a block of another capacity, the last `p_tail` ones behind a hole of `p_gap` items.
    bool changeBlock(size_t p_newSize, size_t p_capacity, size_t p_tail, size_t p_gap) {
        T* data = nullptr;
        if (p_capacity != 0) {
            if constexpr (std::is_trivially_copyable_v<T>) {
                data = static_cast<T*>(allocArray(m_allocator, getArrayByteSize<T>(p_capacity)));
            } else {
                data = allocNewArray<T>(m_allocator, p_capacity);
            }
            if (data == nullptr) {
                return false;
            }
        }
        const size_t kept = m_size < p_capacity ? m_size : p_capacity;
        const size_t first = kept - p_tail;
        shiftItems(data, m_data, first);
        shiftItems(data + first + p_gap, m_data + first, p_tail);
        releaseData();
        m_data = data;
        m_size = p_newSize;
        m_allocatedSize = p_capacity;
        return true;
    }

    /// Frees the block that is owned and leaves the fields as they are: the caller sets them next.
    void releaseData() {
        if (m_allocCondition == ZYR_ALLOC_CONDITION_FIXED_SIZE || m_data == nullptr) {
            return;
        }
        if constexpr (std::is_trivially_copyable_v<T>) {
            freeArray(m_allocator, m_data);
        } else {
            freeNewArray(m_allocator, m_data, m_allocatedSize);
        }
    }

    /// The state of a new array. Frees nothing.
    void setDefaultState() {
        m_data = nullptr;
        m_size = 0;
        m_allocatedSize = 0;
        m_allocCondition = ZYR_ALLOC_CONDITION_ON_RESIZE;
        m_allocStep = ZYR_ALLOC_STEP_POWER_OF_TWO;
        m_allocator = getAllocator();
    }

    /// the block, null for none
    T* m_data;
    /// items in use
    size_t m_size;
    /// items that the block has room for
    size_t m_allocatedSize;
    /// one of AllocConditionEnum
    uint32_t m_allocCondition;
    /// see AllocStepEnum
    uint32_t m_allocStep;
    /// where blocks come from; never freed here
    Allocator* m_allocator;
};

#pragma pack(pop)

static_assert(sizeof(Array<int>) == 64 && alignof(Array<int>) == 1);

} // namespace zyr
