/// Records of codecs as JSON and as lines for people.
#pragma once

#include "host/zyr_negotiation.h"

#include <nlohmann/json.hpp>

#include <string>

namespace zyr::host {

/// What a record says. Features at "NONE" are left out.
nlohmann::json describeProposal(const FrameCodecProposal& p_proposal);
nlohmann::json describeRequest(const FrameCodecRequest& p_request);

/// A text of a description, fit for terminals.
std::string textOf(const nlohmann::json& p_value);

/// The text in a column that is so wide at least.
std::string padded(const std::string& p_text, size_t p_width);

/// The hardware of a described record, or "software".
std::string roadOf(const nlohmann::json& p_record);

/// A line for each described record, below the title.
std::string makeRecords(const char* p_title, const nlohmann::json& p_records);

/// Everything that a described record says.
std::string makeRecordInFull(const char* p_kind, const nlohmann::json& p_record);

} // namespace zyr::host
