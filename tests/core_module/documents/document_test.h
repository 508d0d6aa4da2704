/// What the tests of parsers share.
#pragma once

#include "core_module/core_module_test.h"
#include "zyr_common/documents/zyr_text_parser.h"

#include <gmock/gmock.h>
#include <string>

namespace zyr {

template <class Parser> class ParserTest : public CoreModuleUpTest {
protected:
    void SetUp() override {
        CoreModuleUpTest::SetUp();
        m_parser = zyr_createObject<Parser>();
        ASSERT_NE(m_parser, nullptr);
    }
    void TearDown() override {
        if (m_parser != nullptr) {
            m_parser->release();
        }
    }

    /// The text is kept in a block of its own size, so that a byte beyond is seen by the address sanitizer. The parser
    /// alone holds it.
    bool_t parse(const std::string& p_text) {
        Array<unsigned char>* data = new Array<unsigned char>;
        data->setAllocationModel(ZYR_ALLOC_CONDITION_ON_RESIZE, 1);
        data->pushBackRange(p_text.data(), p_text.size());
        m_parser->setInputData(data);
        data->release();
        return m_parser->parse();
    }

    static std::string show(const WrappedString& p_text) { return std::string(p_text.getData(), p_text.getSize()); }
    static std::string show(const String& p_text) { return show(p_text.getWrapped()); }

    /// "line:column text" of each message.
    std::vector<std::string> getMessages() const {
        std::vector<std::string> messages;
        for (const ParserLogMessage* message : m_parser->getLogMessages()) {
            EXPECT_EQ(message->m_level, ZYR_LOG_LEVEL_WARN);
            messages.push_back(std::to_string(message->m_cursor.m_line) + ":" +
                               std::to_string(message->m_cursor.m_column) + " " + message->m_text.getData());
        }
        return messages;
    }

    /// The message of a text that has a fault.
    std::string getFault(const std::string& p_text) {
        if (parse(p_text)) {
            return "good";
        }
        const std::vector<std::string> messages = getMessages();
        return messages.size() == 1 ? messages[0] : std::to_string(messages.size()) + " messages";
    }

    Parser* m_parser = nullptr;
};

} // namespace zyr
