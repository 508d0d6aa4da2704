#include "host/zyr_encoder_options.h"

#include <algorithm>
#include <cmath>

namespace zyr::host {

namespace {

std::vector<std::string> split(const std::string& p_text, char p_separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    while (start < p_text.size()) {
        const size_t end = std::min(p_text.find(p_separator, start), p_text.size());
        parts.push_back(p_text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

} // namespace

EncoderOptions::EncoderOptions(const std::string& p_text) {
    for (const std::string& pair : split(p_text, ',')) {
        const size_t equals = pair.find('=');
        m_pairs.emplace_back(pair.substr(0, equals), equals == std::string::npos ? "" : pair.substr(equals + 1));
    }
}

bool EncoderOptions::has(const std::string& p_key) const {
    return std::any_of(m_pairs.begin(), m_pairs.end(), [&](const auto& p_pair) { return p_pair.first == p_key; });
}

void EncoderOptions::set(const std::string& p_key, const std::string& p_value) {
    for (auto& [key, value] : m_pairs) {
        if (key == p_key) {
            value = p_value;
            return;
        }
    }
    m_pairs.emplace_back(p_key, p_value);
}

void EncoderOptions::remove(const std::string& p_key) {
    std::erase_if(m_pairs, [&](const auto& p_pair) { return p_pair.first == p_key; });
}

void EncoderOptions::add(const EncoderOptions& p_other) {
    for (const auto& [key, value] : p_other.m_pairs) {
        set(key, value);
    }
}

std::vector<std::string> EncoderOptions::getKeys() const {
    std::vector<std::string> keys;
    for (const auto& [key, value] : m_pairs) {
        keys.push_back(key);
    }
    return keys;
}

std::string EncoderOptions::toText() const {
    std::string text;
    for (const auto& [key, value] : m_pairs) {
        text += (text.empty() ? "" : ",") + key + "=" + value;
    }
    return text;
}

bool EncoderOptions::isWellFormed(const std::string& p_text) {
    const std::vector<std::string> pairs = split(p_text, ',');
    return !pairs.empty() && p_text.back() != ',' &&
           std::all_of(pairs.begin(), pairs.end(), [](const std::string& p_pair) {
               const size_t equals = p_pair.find('=');
               return equals != 0 && equals != std::string::npos && equals + 1 < p_pair.size();
           });
}

bool isSteeredByCrf(const EncoderOptions& p_options) {
    return p_options.has("crf");
}

int crfOfQuality(unsigned p_quality) {
    return int(50.0 - double(p_quality) * 35.0 / 100.0);
}

EncoderOptions getScreenOptions(const std::string& p_implementation) {
    if (p_implementation == "libvpx-vp9") {
        return EncoderOptions("tune-content=screen,row-mt=1,tile-columns=2");
    }
    return EncoderOptions();
}

EncoderOptions getRateOptions(const std::string& p_implementation, int p_numerator, int p_denominator) {
    EncoderOptions options;
    if (p_implementation != "mpeg1video") {
        return options;
    }
    constexpr int RATES[][2] = {{24000, 1001}, {24, 1}, {25, 1},       {30000, 1001},
                                {30, 1},       {50, 1}, {60000, 1001}, {60, 1}};
    const double wanted = double(p_numerator) / p_denominator;
    const auto distance = [&](const int(&p_rate)[2]) { return std::fabs(double(p_rate[0]) / p_rate[1] - wanted); };
    const auto* nearest = &RATES[0];
    for (const auto& rate : RATES) {
        if (distance(rate) < distance(*nearest)) {
            nearest = &rate;
        }
    }
    options.set("time_base", std::to_string((*nearest)[1]) + "/" + std::to_string((*nearest)[0]));
    return options;
}

} // namespace zyr::host
