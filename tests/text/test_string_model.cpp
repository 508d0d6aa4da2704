/// Random operations on a String and on a plain model must give the same bytes.
#include "zyr_common/text/zyr_string.h"

#include <gmock/gmock.h>
#include <random>

using namespace zyr;

namespace {

/// The capacity that the growth rules give, beside the bytes.
struct Model {
    std::string m_text;
    size_t m_capacity = 64;

    void assign(const std::string& p_text) {
        const size_t size = p_text.size() + 1;
        m_text = p_text;
        m_capacity = size <= 64 ? 64 : size <= m_capacity ? m_capacity : 2 * size;
    }
    void change(const std::string& p_text) {
        m_text = p_text;
        if (m_text.size() + 1 > m_capacity) {
            m_capacity = 2 * (m_text.size() + 1);
        }
    }
};

class StringModel : public testing::TestWithParam<unsigned> {
protected:
    StringModel() : m_seed(GetParam() != 0 ? GetParam() : std::random_device()()), m_random(m_seed) {}

    size_t pick(size_t p_limit) { return m_random() % p_limit; }

    std::string makeText(size_t p_limit) {
        std::string text(pick(p_limit), ' ');
        for (char& byte : text) {
            byte = static_cast<char>('a' + pick(4));
        }
        return text;
    }

    void runStep(String& p_text, Model& p_model) {
        const std::string before = p_model.m_text;
        const std::string other = makeText(pick(8) == 0 ? 200 : 20);
        const size_t position = pick(before.size() + 3);
        const size_t count = pick(30);
        switch (pick(12)) {
        case 0:
            p_text = other.c_str();
            p_model.assign(other);
            break;
        case 1:
            p_text = String(other.c_str());
            p_model.assign(other);
            break;
        case 2:
            p_text.pushBackAsciiCharacter('x');
            p_model.change(before + "x");
            break;
        case 3:
            p_text += other.c_str();
            p_model.change(before + other);
            break;
        case 4:
            if (before.size() < 1000) {
                p_text += p_text;
                p_model.change(before + before);
            }
            break;
        case 5:
            p_text.insertString(String(other.c_str()), position);
            if (position <= before.size()) {
                p_model.change(std::string(before).insert(position, other));
            }
            break;
        case 6:
            p_text.deleteRange(position, count);
            if (position <= before.size()) {
                p_model.change(std::string(before).erase(position, count));
            }
            break;
        case 7:
            if (position < before.size()) {
                p_text.assignUTF8SubString(p_text.getData() + position, before.size() - position);
                p_model.assign(before.substr(position));
            }
            break;
        case 8:
            if (position < before.size() && before.size() < 1000) {
                p_text.pushBackUTF8SubString(p_text.getData() + position, before.size() - position);
                p_model.change(before + before.substr(position));
            }
            break;
        case 9:
            p_text.insertAsciiCharacter('y', position);
            if (position <= before.size()) {
                p_model.change(std::string(before).insert(position, 1, 'y'));
            }
            break;
        case 10: {
            size_t found = 0;
            const std::string needle = makeText(3);
            const size_t expected = before.find(needle);
            EXPECT_EQ(p_text.searchString(String(needle.c_str()), 0, found), expected != std::string::npos);
            EXPECT_EQ(found, expected != std::string::npos ? expected : 0);
            break;
        }
        default:
            if (pick(10) == 0) {
                p_text.clear();
                p_model.assign("");
            } else {
                const String copy(p_text);
                EXPECT_EQ(copy, p_text);
                EXPECT_EQ(copy.getAllocatedSize(), before.size() < 64 ? 64 : 2 * (before.size() + 1));
            }
        }
    }

    /// The parameter, or a number at random for 0.
    const unsigned m_seed;

private:
    std::mt19937 m_random;
};

} // namespace

TEST_P(StringModel, FollowsThePlainModel) {
    SCOPED_TRACE("seed " + std::to_string(m_seed));
    String text;
    Model model;
    for (int step = 0; step < 10000 && !HasFailure(); step++) {
        runStep(text, model);
        ASSERT_EQ(text.getSize(), model.m_text.size() + 1) << "step " << step;
        ASSERT_EQ(std::string(text.getData()), model.m_text) << "step " << step;
        ASSERT_EQ(text.getAllocatedSize(), model.m_capacity) << "step " << step;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StringModel, testing::Values(1u, 2u, 3u, 0u));
