// Runs the checks of check_live.py, each of which talks to a server of its own as browsers and viewers do.
#include "support/zyr_private_mounts.h"
#include "zyr_program_run.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace zyr {

namespace {

constexpr const char* PYTHON = "/usr/bin/python3";

class LiveServing : public testing::TestWithParam<const char*> {};

/// The checks that have mounts and accounts of their own.
bool hasPrivateSystem(const std::string& p_name) {
    return p_name == "accounts_come_in_by_their_passwords" || p_name == "root_becomes_the_user_at_the_console";
}

std::string nameOf(const testing::TestParamInfo<const char*>& p_info) {
    return p_info.param;
}

} // namespace

TEST_P(LiveServing, Holds) {
    if (hasPrivateSystem(GetParam())) {
        ZYR_NEEDS_PRIVATE_SYSTEM();
    }
    setenv("ZYR_HOST_PROGRAM", ZYR_HOST_PROGRAM, 1);
    setenv("ZYR_TEST_PAM_MODULE", ZYR_TEST_PAM_MODULE, 1);
    const ProgramRun run = runProgram(PYTHON, {std::string(ZYR_LIVE_CHECKS) + "/check_live.py", GetParam()});
    EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
}

class Publishing : public testing::TestWithParam<const char*> {};

TEST_P(Publishing, Holds) {
    setenv("ZYR_HOST_PROGRAM", ZYR_HOST_PROGRAM, 1);
    const ProgramRun run = runProgram(PYTHON, {std::string(ZYR_LIVE_CHECKS) + "/check_publishing.py", GetParam()});
    EXPECT_EQ(run.m_exitCode, 0) << run.m_err;
}

INSTANTIATE_TEST_SUITE_P(Check, Publishing,
                         testing::Values("a_media_server_gets_the_screen_from_a_key_frame_on",
                                         "a_screen_at_rest_has_its_key_frames", "key_frames_are_one_frame_each",
                                         "a_lost_server_is_found_again", "an_absent_server_holds_up_nobody",
                                         "a_server_that_takes_nothing_holds_up_nobody",
                                         "the_end_of_a_video_ends_the_stream",
                                         "what_cannot_be_published_is_refused_at_once"),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(
    Check, LiveServing,
    testing::Values(
        "a_viewer_gets_a_key_frame_first", "a_wrong_token_is_refused_and_not_logged",
        "broken_messages_end_the_connection", "a_viewer_may_ping_while_its_secret_is_checked",
        "no_common_codec_is_refused", "another_origin_is_refused", "the_page_comes_with_its_guards",
        "plain_http_is_not_spoken_on_the_secure_port", "the_fingerprint_is_that_of_the_certificate",
        "a_silent_viewer_gets_no_more_than_its_window", "a_film_goes_by_vp9_beside_blocks",
        "a_stopped_viewer_goes_on_with_the_newest_picture", "slow_viewers_and_new_ones_do_not_hold_up_others",
        "five_hundred_connections_leave_nothing_behind", "too_many_messages_end_the_connection",
        "who_says_nothing_is_turned_away", "viewers_that_join_together_share_key_frames",
        "a_broken_decoder_gets_a_key_frame", "many_connections_leave_nothing_behind",
        "accounts_come_in_by_their_passwords", "an_account_that_does_not_exist_is_refused_at_once",
        "root_becomes_the_user_at_the_console", "who_says_nothing_keeps_nobody_out",
        "a_refusal_is_printed_without_the_controls_of_the_server", "a_view_without_a_picture_has_failed",
        "a_crowd_takes_few_lines_of_the_log", "the_log_tells_why_a_viewer_was_refused",
        "vp9_has_the_range_that_every_browser_takes_it_for", "a_browser_that_keeps_nothing_shows_the_screen",
        "a_browser_without_webcodecs_tells_what_is_missing",
        "a_browser_does_not_wait_for_the_farewell_of_a_silent_server",
        "a_browser_takes_another_token_into_the_same_tab", "native_viewers_check_the_certificate",
        "the_window_shows_and_steers", "input_moves_the_pointer_of_the_screen", "the_clipboard_goes_both_ways",
        "a_browser_shows_the_screen_and_reloads", "a_browser_puts_a_film_among_the_blocks", "a_browser_decodes_vp9",
        "a_browser_moves_the_pointer", "a_browser_needs_no_mouse", "a_browser_fills_the_screen",
        "a_browser_shares_its_clipboard", "a_browser_follows_changes_of_size", "a_browser_types_into_a_terminal",
        "a_browser_comes_back_to_a_server_that_was_killed", "a_certificate_that_cannot_be_used_is_refused_at_once",
        "an_address_that_cannot_be_printed_is_a_failure", "a_report_that_cannot_be_written_is_a_failure",
        "names_and_accounts_take_one_word_each"),
    nameOf);

} // namespace zyr
