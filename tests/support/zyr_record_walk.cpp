#include "support/zyr_record_walk.h"

namespace zyr::test {

namespace {

/// A record of a kind that is only known at run time.
class AnyRecord {
public:
    explicit AnyRecord(const RecordKind& p_kind) : m_kind(p_kind), m_record(p_kind.m_create()) {}
    ~AnyRecord() { m_kind.m_destroy(m_record); }
    AnyRecord(const AnyRecord&) = delete;
    AnyRecord& operator=(const AnyRecord&) = delete;

    void* get() const { return m_record; }
    void fill() const {
        uint32_t number = 1;
        for (const RecordLeaf& leaf : m_kind.m_leaves) {
            leaf.m_kind->m_makeDifferent(leaf.at(m_record), number++);
        }
    }
    bool equals(const AnyRecord& p_other) const { return m_kind.m_equal(m_record, p_other.m_record) != 0; }
    void expectSameFields(const AnyRecord& p_other) const {
        for (const RecordLeaf& leaf : m_kind.m_leaves) {
            EXPECT_TRUE(leaf.m_kind->m_isSame(leaf.at(m_record), leaf.at(p_other.m_record))) << leaf.m_path;
        }
    }
    void expectNothingAt(const std::string& p_path) const {
        VariableReference* reference = m_kind.m_find(m_record, p_path.c_str());
        EXPECT_EQ(reference, nullptr) << p_path;
        if (reference) {
            reference->release();
        }
    }

private:
    const RecordKind& m_kind;
    void* m_record;
};

} // namespace

void expectPathsReachFields(const RecordKind& p_kind) {
    uint32_t number = 0;
    for (const RecordLeaf& leaf : p_kind.m_leaves) {
        SCOPED_TRACE(leaf.m_path);
        AnyRecord record(p_kind);
        AnyRecord changed(p_kind);
        record.expectNothingAt(leaf.m_path + ".x");
        record.expectNothingAt("." + leaf.m_path);
        if (leaf.m_kind->m_type == ZYR_VARIABLE_NONE) {
            record.expectNothingAt(leaf.m_path);
            continue;
        }
        VariableReference* reference = p_kind.m_find(record.get(), leaf.m_path.c_str());
        ASSERT_NE(reference, nullptr);
        EXPECT_EQ(reference->getType(), leaf.m_kind->m_type);
        EXPECT_EQ(reference->getPointer(), leaf.at(record.get()));
        leaf.m_kind->m_makeDifferent(leaf.at(changed.get()), number++);
        EXPECT_EQ(leaf.m_kind->m_change(reference, leaf.at(changed.get())), 1);
        reference->release();
        record.expectSameFields(changed);
        EXPECT_FALSE(leaf.m_kind->m_isSame(leaf.at(record.get()), leaf.at(AnyRecord(p_kind).get())));
    }
}

void expectEqualitySeesEachField(const RecordKind& p_kind) {
    uint32_t number = 0;
    for (const RecordLeaf& leaf : p_kind.m_leaves) {
        SCOPED_TRACE(leaf.m_path);
        AnyRecord plain(p_kind);
        AnyRecord changed(p_kind);
        EXPECT_TRUE(plain.equals(changed));
        leaf.m_kind->m_makeDifferent(leaf.at(changed.get()), number++);
        EXPECT_FALSE(plain.equals(changed));
        EXPECT_FALSE(changed.equals(plain));
        leaf.m_kind->m_copy(leaf.at(plain.get()), leaf.at(changed.get()));
        EXPECT_TRUE(plain.equals(changed));
    }
}

void expectCopyAndClear(const RecordKind& p_kind) {
    AnyRecord plain(p_kind);
    AnyRecord filled(p_kind);
    filled.fill();
    AnyRecord copy(p_kind);
    p_kind.m_copy(copy.get(), filled.get());
    copy.expectSameFields(filled);
    EXPECT_TRUE(copy.equals(filled));
    p_kind.m_clear(copy.get());
    copy.expectSameFields(plain);
    EXPECT_TRUE(copy.equals(plain));
}

void expectReadsBackWhatItWrites(const RecordKind& p_kind, RecordingSerializer::Kind p_format) {
    AnyRecord filled(p_kind);
    filled.fill();
    RecordingSerializer serializer(p_format);
    bool_t result = 0;
    EXPECT_EQ(p_kind.m_write(filled.get(), &serializer, 0, result), 1);
    EXPECT_EQ(result, 1);
    AnyRecord read(p_kind);
    RecordingDeserializer deserializer(serializer.m_root);
    EXPECT_EQ(p_kind.m_read(read.get(), &deserializer), 1);
    read.expectSameFields(filled);
}

void expectDeclaresEachKeyInOrder(const RecordKind& p_kind) {
    AnyRecord record(p_kind);
    RecordingSerializer serializer(RecordingSerializer::c_binary);
    bool_t result = 0;
    EXPECT_EQ(p_kind.m_write(record.get(), &serializer, 1, result), 1);
    EXPECT_EQ(result, 1);
    Calls declared;
    for (const std::string& call : serializer.m_calls) {
        if (call.rfind("declare", 0) == 0) {
            declared.push_back(call.substr(call.find(' ') + 1));
        }
    }
    EXPECT_EQ(declared, p_kind.m_keys);
}

void walkRecord(const RecordKind& p_kind) {
    SCOPED_TRACE(p_kind.m_name);
    expectPathsReachFields(p_kind);
    expectEqualitySeesEachField(p_kind);
    expectCopyAndClear(p_kind);
    expectReadsBackWhatItWrites(p_kind, RecordingSerializer::c_text);
    expectReadsBackWhatItWrites(p_kind, RecordingSerializer::c_binary);
    expectDeclaresEachKeyInOrder(p_kind);
}

} // namespace zyr::test
