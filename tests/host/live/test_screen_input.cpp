#include "host/live/zyr_screen_clipboard.h"
#include "host/live/zyr_screen_input.h"
#include "zyr_test_screen.h"

#include <set>

namespace zyr::host {

namespace {

constexpr uint16_t KEY_A = 30;
constexpr uint8_t X_KEY_A = 38;
constexpr uint32_t SYMBOL_EURO = 0x20AC + 0x1000000;

} // namespace

class ScreenInputTest : public ScreenTest {
protected:
    uint8_t awaitKey(uint8_t p_type) {
        const auto event = await<xcb_key_press_event_t>(p_type, [](const auto&) { return true; });
        return event ? reinterpret_cast<const xcb_key_press_event_t*>(event.get())->detail : 0;
    }

    uint32_t symbolOf(xcb_keycode_t p_code) {
        const ReplyHandle<xcb_get_keyboard_mapping_reply_t> map(
            xcb_get_keyboard_mapping_reply(m_own.get(), xcb_get_keyboard_mapping(m_own.get(), p_code, 1), nullptr));
        return map ? xcb_get_keyboard_mapping_keysyms(map.get())[0] : 0;
    }

    const xcb_window_t m_window = showWindow(XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                                             XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE);
    ScreenInput m_input{m_screen.getDisplay()};
};

TEST_F(ScreenInputTest, PressesAndReleasesAKey) {
    m_input.press({'a', KEY_A, true});
    EXPECT_EQ(awaitKey(XCB_KEY_PRESS), X_KEY_A);
    m_input.press({'a', KEY_A, false});
    EXPECT_EQ(awaitKey(XCB_KEY_RELEASE), X_KEY_A);
    EXPECT_FALSE(m_input.isHolding());
}

TEST_F(ScreenInputTest, ReleasesTheKeyThatWasPressedThoughItsSymbolHasChanged) {
    m_input.press({'A', KEY_A, true});
    EXPECT_EQ(awaitKey(XCB_KEY_PRESS), X_KEY_A);
    m_input.press({'a', KEY_A, false});
    EXPECT_EQ(awaitKey(XCB_KEY_RELEASE), X_KEY_A);
}

TEST_F(ScreenInputTest, ReleasesAllThatIsHeld) {
    m_input.press({'a', KEY_A, true});
    m_input.point(5, 6, 1);
    EXPECT_TRUE(m_input.isHolding());
    m_input.releaseAll();
    EXPECT_EQ(awaitKey(XCB_KEY_RELEASE), X_KEY_A);
    EXPECT_TRUE(await<xcb_button_press_event_t>(XCB_BUTTON_RELEASE, [](const auto& p) { return p.detail == 1; }));
    EXPECT_FALSE(m_input.isHolding());
}

TEST_F(ScreenInputTest, PressesShiftForATypedCapital) {
    m_input.press({'A', 0, true});
    m_input.press({'A', 0, false});
    EXPECT_NE(awaitKey(XCB_KEY_PRESS), X_KEY_A);
    const auto event = await<xcb_key_press_event_t>(XCB_KEY_PRESS, [](const auto&) { return true; });
    const auto& press = *reinterpret_cast<const xcb_key_press_event_t*>(event.get());
    EXPECT_EQ(press.detail, X_KEY_A);
    EXPECT_EQ(press.state & XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_SHIFT);
}

TEST_F(ScreenInputTest, PutsASymbolThatNoKeyHasOnASpareKey) {
    m_input.press({SYMBOL_EURO, 0, true});
    const uint8_t code = awaitKey(XCB_KEY_PRESS);
    EXPECT_EQ(symbolOf(code), SYMBOL_EURO);
}

TEST_F(ScreenInputTest, MovesThePointerAndPressesItsButtons) {
    m_input.point(50, 60, 4);
    const auto event = await<xcb_button_press_event_t>(XCB_BUTTON_PRESS, [](const auto&) { return true; });
    const auto& press = *reinterpret_cast<const xcb_button_press_event_t*>(event.get());
    EXPECT_EQ(press.detail, 3);
    EXPECT_EQ(press.root_x, 50);
    EXPECT_EQ(press.root_y, 60);
}

TEST_F(ScreenInputTest, TurnsTheWheelByButtons) {
    m_input.point(50, 60, 0);
    m_input.turnWheel(-1, 2);
    for (const uint8_t button : {5, 5, 6}) {
        const auto event = await<xcb_button_press_event_t>(XCB_BUTTON_PRESS, [](const auto&) { return true; });
        EXPECT_EQ(reinterpret_cast<const xcb_button_press_event_t*>(event.get())->detail, button);
    }
}

TEST_F(ScreenInputTest, HoldsNoMoreKeysThanFingersCan) {
    for (uint16_t code = 1; code <= 80; code++) {
        m_input.press({0, code, true});
    }
    m_input.releaseAll();
    constexpr uint8_t LAST = 80 + 8;
    m_input.press({0, 80, true}); // It was one too many before, and comes behind all others now.
    std::set<uint8_t> pressed;    // The server may repeat one meanwhile.
    for (uint8_t code = awaitKey(XCB_KEY_PRESS); code != LAST; code = awaitKey(XCB_KEY_PRESS)) {
        ASSERT_NE(code, 0);
        pressed.insert(code);
    }
    EXPECT_EQ(pressed.size(), 32u);
}

class ScreenClipboardTest : public ScreenTest {
protected:
    /// Asks one clipboard for what the other one offers.
    std::string fetch(ScreenClipboard& p_reader) {
        std::string text;
        p_reader.request();
        serve(p_reader);
        while (!p_reader.update(text)) {
            pollfd waits[] = {{p_reader.getDescriptor(), POLLIN, 0}, {m_writer.getDescriptor(), POLLIN, 0}};
            if (poll(waits, 2, 60'000) <= 0) {
                return "nothing came";
            }
            serve(p_reader);
        }
        return text;
    }

    void serve(const ScreenClipboard& p_reader) {
        std::string none;
        if (&p_reader != &m_writer) {
            m_writer.update(none);
        }
    }

    static constexpr size_t LARGEST = 262'144;
    ScreenClipboard m_writer{m_screen.getDisplay(), LARGEST};
    ScreenClipboard m_reader{m_screen.getDisplay(), LARGEST};
};

TEST_F(ScreenClipboardTest, GivesWhatAnotherOneOffers) {
    ASSERT_TRUE(m_writer.offer("Grüße"));
    EXPECT_EQ(fetch(m_reader), "Grüße");
    ASSERT_TRUE(m_writer.offer("more"));
    EXPECT_EQ(fetch(m_reader), "more");
}

TEST_F(ScreenClipboardTest, RefusesATextAboveTheLimit) {
    ASSERT_TRUE(m_writer.offer("kept"));
    EXPECT_FALSE(m_writer.offer(std::string(LARGEST + 1, 'x')));
    EXPECT_EQ(fetch(m_reader), "kept");
}

TEST_F(ScreenClipboardTest, GivesLongTextsPieceByPiece) {
    for (const size_t size : {size_t{65'536}, size_t{65'537}, size_t{131'072}, LARGEST}) {
        std::string text;
        for (unsigned line = 0; text.size() < size; line++) {
            text += std::to_string(line) + "\n";
        }
        text.resize(size);
        ASSERT_TRUE(m_writer.offer(text));
        EXPECT_TRUE(fetch(m_reader) == text) << size;
        EXPECT_TRUE(fetch(m_writer) == text) << "from itself, " << size;
    }
}

TEST_F(ScreenClipboardTest, TellsTheSizeOfALongText) {
    ASSERT_TRUE(m_writer.offer(std::string(100'000, 'x')));
    const xcb_window_t window = showWindow(XCB_EVENT_MASK_PROPERTY_CHANGE);
    const xcb_atom_t property = m_own.getAtom("PLACE");
    xcb_convert_selection(m_own.get(), window, m_own.getAtom("CLIPBOARD"), m_own.getAtom("UTF8_STRING"), property,
                          XCB_CURRENT_TIME);
    sync();
    std::string none;
    m_writer.update(none);
    await<xcb_selection_notify_event_t>(XCB_SELECTION_NOTIFY, [](const auto&) { return true; });
    const ReplyHandle<xcb_get_property_reply_t> value(xcb_get_property_reply(
        m_own.get(), xcb_get_property(m_own.get(), 0, window, property, XCB_ATOM_ANY, 0, 1), nullptr));
    ASSERT_TRUE(value);
    EXPECT_EQ(value->type, m_own.getAtom("INCR"));
    ASSERT_EQ(xcb_get_property_value_length(value.get()), 4);
    EXPECT_EQ(*static_cast<const uint32_t*>(xcb_get_property_value(value.get())), 100'000u);
}

TEST_F(ScreenClipboardTest, TakesNoTextAboveItsLimit) {
    ScreenClipboard small(m_screen.getDisplay(), 70'000);
    ASSERT_TRUE(m_writer.offer(std::string(200'000, 'x')));
    std::string text = "before";
    std::string none;
    small.request();
    // The first piece is taken, and the second one is too much.
    for (unsigned turns = 0; turns < 2; turns++) {
        pollfd wait{m_writer.getDescriptor(), POLLIN, 0};
        ASSERT_GT(poll(&wait, 1, 60'000), 0);
        m_writer.update(none);
        wait.fd = small.getDescriptor();
        ASSERT_GT(poll(&wait, 1, 60'000), 0);
        EXPECT_FALSE(small.update(text));
    }
    EXPECT_EQ(text, "before");
    ASSERT_TRUE(m_writer.offer("short"));
    EXPECT_EQ(fetch(small), "short");
}

} // namespace zyr::host
