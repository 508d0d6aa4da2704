/// The levels that writers share.
#pragma once

#include "zyr_common/documents/zyr_text_writer.h"
#include "zyr_common/implementation/zyr_implementation.h"
#include "zyr_common/memory/zyr_ref.h"

namespace zyr {

/// A copy has an array of its own with the same bytes, and nothing begun. A writer has no fields in a stream.
template <class Interface> class WriterLevel : public UnstoredLevel<ObjectLevel<Interface>, IWriter> {
public:
    WriterLevel() { WriterLevel::init_This(); }

    Array<unsigned char>* getOutputData(bool_t p_addReference) const override { return m_output.get(p_addReference); }
    void setOutputData(Array<unsigned char>* p_data) override {
        if (p_data != nullptr) {
            m_output = Ref<Array<unsigned char>>::share(p_data);
        } else {
            init_This();
        }
    }
    ILevelReserved* getWriterReserved() const override { return &m_writerReserved; }

    void init_This() {
        m_output = Ref<Array<unsigned char>>::adopt(new Array<unsigned char>);
        m_output->setAllocationModel(ZYR_ALLOC_CONDITION_ON_OVERFLOW, ZYR_ALLOC_STEP_DOUBLE);
    }
    void release_This() {}
    void copy_This(const IWriter* p_src) {
        this->setOutputData(nullptr);
        const Array<unsigned char>* bytes = p_src->getOutputData(0);
        append(bytes->getData(), bytes->getSize());
    }

protected:
    /// False, with nothing appended, when the array can't grow or there are no bytes.
    bool append(const void* p_bytes, size_t p_size) {
        if (p_bytes == nullptr && p_size != 0) {
            return false; // An array would grow by what was in the memory before.
        }
        const size_t size = m_output->getSize();
        m_output->pushBackRange(p_bytes, p_size);
        return m_output->getSize() == size + p_size;
    }

private:
    Ref<Array<unsigned char>> m_output;
    mutable LevelReserved<WriterLevel> m_writerReserved{this};
};

template <class Interface> class TextWriterLevel : public UnstoredLevel<WriterLevel<Interface>, ITextWriter> {
public:
    ILevelReserved* getTextWriterReserved() const override { return &m_textWriterReserved; }

    void init_This() {}
    void release_This() {}
    void copy_This(const ITextWriter*) {}

private:
    mutable LevelReserved<TextWriterLevel> m_textWriterReserved{this};
};

using Writer = Implementation<WriterLevel<IWriter>>;
using TextWriter = Implementation<TextWriterLevel<ITextWriter>>;

} // namespace zyr
