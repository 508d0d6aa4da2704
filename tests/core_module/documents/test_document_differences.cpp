// The parsers beside nlohmann's and pugixml on random documents, whole ones and damaged ones: the same tree, or both
// refuse. Where the two differ on purpose:
//
// JSON: of equal keys the first one stays here and the last one there; numbers beyond a double are texts here and
// refused there; nesting beyond 1000 levels is refused here. The documents have neither.
//
// XML: pugixml takes what is not well-formed: a second root, attributes that stand twice, "<" in attributes, "]]>" in
// texts, "--" in comments, unknown entities and references without end, names of any bytes, control characters, bytes
// that are no UTF-8. So what this parser takes must be the same tree there, and what pugixml refuses must be refused
// here, but for a faulty document type declaration, which is only skipped here.
#include "core_module/documents/document_test.h"
#include "zyr_common/documents/zyr_json_parser.h"
#include "zyr_common/documents/zyr_xml_parser.h"

#include <nlohmann/json.hpp>
#include <pugixml.hpp>
#include <random>

namespace zyr {
namespace {

constexpr int NUM_OF_DOCUMENTS = 3000;

class RandomTexts {
public:
    explicit RandomTexts(uint32_t p_seed) : m_engine(p_seed) {}

    int below(int p_end) { return static_cast<int>(m_engine() % static_cast<uint32_t>(p_end)); }
    std::string pick(const std::vector<std::string>& p_texts) {
        return p_texts[static_cast<size_t>(below(static_cast<int>(p_texts.size())))];
    }
    /// Takes a few bytes away, doubles them or puts others there.
    std::string damage(std::string p_text) {
        static const std::string bytes = "{}[]\",:\\/<>&;='!-?x0 \n\x01\x80\xC3";
        for (int i = below(3) + 1; i > 0 && !p_text.empty(); i--) {
            const size_t place = static_cast<size_t>(below(static_cast<int>(p_text.size())));
            switch (below(4)) {
            case 0:
                p_text.erase(place, static_cast<size_t>(below(4)));
                break;
            case 1:
                p_text.insert(place, p_text.substr(place, static_cast<size_t>(below(4))));
                break;
            case 2:
                p_text[place] = bytes[static_cast<size_t>(below(static_cast<int>(bytes.size())))];
                break;
            default:
                p_text.resize(place);
            }
        }
        return p_text;
    }

private:
    std::mt19937 m_engine;
};

class JsonDifferences : public ParserTest<IJsonParser>, protected RandomTexts {
protected:
    JsonDifferences() : RandomTexts(20260101) {}

    std::string blank() { return pick({"", "", "", " ", "\n", "\r\n\t"}); }
    std::string text() {
        std::string text = "\"";
        for (int i = below(4); i > 0; i--) {
            text += pick({"a", "longer text", "ä", "€", "\xF0\x9D\x84\x9E", "\\n", "\\\"", "\\\\", "\\u0041", "\\u00e4",
                          "\\ud834\\udd1e", "\\/", "\x7f"});
        }
        return text + "\"";
    }
    std::string value(int p_depth) {
        switch (below(p_depth > 0 ? 6 : 4)) {
        case 0:
            return pick({"true", "false", "null"});
        case 1:
        case 2:
            return pick({"0", "-0", "1", "-12", "1.5", "1e3", "-2.5E-3", "12345678901234567890"});
        case 3:
            return text();
        case 4: {
            std::string array = "[" + blank();
            for (int i = 0, n = below(4); i < n; i++) {
                array += (i != 0 ? "," : "") + blank() + value(p_depth - 1) + blank();
            }
            return array + "]";
        }
        default: {
            std::string object = "{" + blank();
            for (int i = 0, n = below(5); i < n; i++) {
                object += (i != 0 ? "," : "") + blank() + "\"k" + std::to_string(i) + text().substr(1) + blank() + ":" +
                          blank() + value(p_depth - 1) + blank();
            }
            return object + "}";
        }
        }
    }

    static void showText(std::string& p_out, const std::string& p_text) {
        p_out += std::to_string(p_text.size()) + ":" + p_text;
    }
    /// Scalars first, then containers, since elements keep them apart. Numbers as the peer writes them.
    static std::string show(const JsonElement& p_element) {
        std::string out = "(";
        for (const auto& entry : p_element.getAttributes()) {
            showText(out, ParserTest::show(entry.m_first));
            showText(out, ParserTest::show(entry.m_second));
        }
        if (p_element.getNodes() != nullptr) {
            for (const auto& entry : *p_element.getNodes()) {
                showText(out, ParserTest::show(entry.m_first));
                out += show(static_cast<const JsonElement&>(*entry.m_second));
            }
        }
        for (uint32_t i = 0; i < p_element.getNumOfItems(); i++) {
            out += "," + show(*p_element.getItem(i));
        }
        showText(out, ParserTest::show(p_element.getContent()));
        return out + ")";
    }

    /// A tree of the peer that keeps the texts of numbers and the order of keys.
    struct Reader : nlohmann::json_sax<nlohmann::json> {
        struct Level {
            bool m_array = false;
            std::string m_attributes;
            std::string m_children;
            std::string m_items;
            std::string m_key;
            std::vector<std::string> m_seenAttributes;
            std::vector<std::string> m_seenChildren;
        };
        std::vector<Level> m_levels{1};

        bool scalar(const std::string& p_text) {
            Level& level = m_levels.back();
            if (m_levels.size() == 1) {
                showText(level.m_items, p_text);
            } else if (level.m_array) {
                level.m_items += ",(";
                showText(level.m_items, p_text);
                level.m_items += ")";
            } else if (std::find(level.m_seenAttributes.begin(), level.m_seenAttributes.end(), level.m_key) ==
                       level.m_seenAttributes.end()) {
                level.m_seenAttributes.push_back(level.m_key);
                showText(level.m_attributes, level.m_key);
                showText(level.m_attributes, p_text);
            }
            return true;
        }
        bool begin(bool p_array) {
            m_levels.emplace_back();
            m_levels.back().m_array = p_array;
            return true;
        }
        bool end() {
            const Level done = m_levels.back();
            m_levels.pop_back();
            Level& level = m_levels.back();
            const std::string text = "(" + done.m_attributes + done.m_children + done.m_items + "0:)";
            if (m_levels.size() == 1) {
                level.m_children = text;
            } else if (level.m_array) {
                level.m_items += "," + text;
            } else if (std::find(level.m_seenChildren.begin(), level.m_seenChildren.end(), level.m_key) ==
                       level.m_seenChildren.end()) {
                level.m_seenChildren.push_back(level.m_key);
                showText(level.m_children, level.m_key);
                level.m_children += text;
            }
            return true;
        }
        std::string getTree() const {
            return m_levels[0].m_children.empty() ? "(" + m_levels[0].m_items + ")" : m_levels[0].m_children;
        }

        bool null() override { return scalar("null"); }
        bool boolean(bool p_value) override { return scalar(p_value ? "true" : "false"); }
        // The place of an integer is not told; the documents' are written as the peer writes them, but for "-0".
        bool number_integer(number_integer_t p_value) override { return scalar(std::to_string(p_value)); }
        bool number_unsigned(number_unsigned_t p_value) override { return scalar(std::to_string(p_value)); }
        bool number_float(number_float_t, const std::string& p_text) override { return scalar(p_text); }
        bool string(std::string& p_text) override { return scalar(p_text); }
        bool binary(binary_t&) override { return false; }
        bool start_object(std::size_t) override { return begin(false); }
        bool key(std::string& p_key) override {
            m_levels.back().m_key = p_key;
            return true;
        }
        bool end_object() override { return end(); }
        bool start_array(std::size_t) override { return begin(true); }
        bool end_array() override { return end(); }
        bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }
    };

    void compare(const std::string& p_text) {
        Reader reader;
        const bool good = nlohmann::json::sax_parse(p_text, &reader);
        ASSERT_EQ(static_cast<bool>(parse(p_text)), good) << p_text;
        if (good) {
            std::string tree = show(*m_parser->getElementTree());
            for (size_t place; (place = tree.find("2:-0")) != std::string::npos;) {
                tree.replace(place, 4, "1:0");
            }
            ASSERT_EQ(tree, reader.getTree()) << p_text;
        }
    }
};

TEST_F(JsonDifferences, ReadsRandomDocumentsAsThePeerDoes) {
    for (int i = 0; i < NUM_OF_DOCUMENTS && !HasFatalFailure(); i++) {
        compare(blank() + value(5) + blank());
    }
}

TEST_F(JsonDifferences, RefusesDamagedDocumentsAsThePeerDoes) {
    for (int i = 0; i < NUM_OF_DOCUMENTS && !HasFatalFailure(); i++) {
        compare(damage(blank() + value(5) + blank()));
    }
}

class XmlDifferences : public ParserTest<IXmlParser>, protected RandomTexts {
protected:
    XmlDifferences() : RandomTexts(20260102) {}

    std::string text() {
        std::string text;
        for (int i = below(4); i > 0; i--) {
            text += pick({"a", " ", "longer text", "ä", "€", "&lt;", "&amp;", "&#65;", "&#x20AC;", "\n", "\r\n", "\r",
                          "] ", ">", "\"", "'", "<![CDATA[<&]]>", "<!-- comment -->"});
        }
        return text;
    }
    std::string attributes() {
        std::string attributes;
        for (int i = 0, n = below(4); i < n; i++) {
            attributes += pick({" ", "\n"}) + "k" + std::to_string(i) + pick({"=", " = "}) +
                          pick({"'a\"b'", "\"c'd\"", "''", "\"&lt;&#10;\"", "' \t\n\r\n'", "'ä'"});
        }
        return attributes;
    }
    std::string element(int p_depth) {
        const std::string name = pick({"a", "item", "x:y", "_n-1.2", "ä"});
        if (p_depth == 0 || below(4) == 0) {
            return "<" + name + attributes() + pick({"/>", " />", "></" + name + " >"});
        }
        std::string out = "<" + name + attributes() + ">" + text();
        for (int i = below(4); i > 0; i--) {
            out += below(8) == 0 ? "<?target data?>" : element(p_depth - 1);
            out += text();
        }
        return out + "</" + name + ">";
    }
    std::string document() {
        return pick({"", "<?xml version='1.0'?>", "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"}) +
               pick({"", "<!-- first -->\n", "<!DOCTYPE a [<!ENTITY e 'x'>]>"}) + element(4) +
               pick({"", "\n", "<?end?>"});
    }

    static bool isBlank(const std::string& p_text) { return p_text.find_first_not_of(" \t\r\n") == std::string::npos; }

    static std::string show(XmlElement& p_element) {
        std::string out =
            (p_element.isProcessingInstruction() ? "?" : "") + ParserTest::show(p_element.getName()) + "{";
        for (const auto& entry : p_element.getAttributes()) {
            out += ParserTest::show(entry.m_first) + "=" + ParserTest::show(entry.m_second) + ";";
        }
        out += "|" + ParserTest::show(p_element.getContent()) + "|";
        if (p_element.getNodes() != nullptr) {
            for (auto& entry : *p_element.getNodes()) {
                for (auto* child : entry.m_second) {
                    out += show(static_cast<XmlElement&>(*child));
                }
            }
        }
        return out + "}";
    }

    static std::string show(const pugi::xml_node& p_node) {
        const bool isInstruction = p_node.type() == pugi::node_pi || p_node.type() == pugi::node_declaration;
        std::string out = std::string(isInstruction ? "?" : "") + p_node.name() + "{";
        for (const pugi::xml_attribute& attribute : p_node.attributes()) {
            out += std::string(attribute.name()) + "=" + attribute.value() + ";";
        }
        std::vector<std::pair<std::string, std::string>> children;
        std::vector<std::string> pieces{""}; // what stands in front of, between and behind the children
        for (const pugi::xml_node& child : p_node.children()) {
            if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
                pieces.back() += child.value();
                continue;
            }
            pieces.emplace_back();
            const auto place = std::find_if(children.begin(), children.end(),
                                            [&](const auto& p_entry) { return p_entry.first == child.name(); });
            if (place != children.end()) {
                place->second += show(child);
            } else {
                children.emplace_back(child.name(), show(child));
            }
        }
        out += "|" + std::string(p_node.type() == pugi::node_pi ? p_node.value() : "");
        for (const std::string& piece : pieces) {
            out += children.empty() || !isBlank(piece) ? piece : "";
        }
        out += "|";
        for (const auto& child : children) {
            out += child.second;
        }
        return out + "}";
    }

    /// Gives whether this parser took the text.
    bool compare(const std::string& p_text) {
        constexpr unsigned options = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol |
                                     pugi::parse_wconv_attribute | pugi::parse_ws_pcdata | pugi::parse_pi |
                                     pugi::parse_declaration;
        pugi::xml_document document;
        const pugi::xml_parse_result result =
            document.load_buffer(p_text.data(), p_text.size(), options, pugi::encoding_utf8);
        const bool taken = parse(p_text);
        if (taken && result.status != pugi::status_bad_doctype) {
            EXPECT_TRUE(result) << result.description() << ": " << p_text;
            EXPECT_EQ(show(*m_parser->getElementTree()), show(document)) << p_text;
        }
        return taken;
    }
};

TEST_F(XmlDifferences, ReadsRandomDocumentsAsThePeerDoes) {
    for (int i = 0; i < NUM_OF_DOCUMENTS && !HasFailure(); i++) {
        const std::string text = document();
        EXPECT_TRUE(compare(text)) << text << getMessages()[0];
    }
}

TEST_F(XmlDifferences, TakesOnlyDamagedDocumentsThatThePeerTakes) {
    int numOfTaken = 0;
    for (int i = 0; i < NUM_OF_DOCUMENTS && !HasFailure(); i++) {
        numOfTaken += compare(damage(document()));
    }
    EXPECT_GT(numOfTaken, NUM_OF_DOCUMENTS / 50);
    EXPECT_LT(numOfTaken, NUM_OF_DOCUMENTS);
}

} // namespace
} // namespace zyr
