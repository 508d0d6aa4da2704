/// The text of options that an encoder is opened with: "key=value" pairs joined by commas.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace zyr::host {

class EncoderOptions {
public:
    EncoderOptions() = default;
    /// Takes a text apart. What is no pair is kept as a key without a value.
    explicit EncoderOptions(const std::string& p_text);

    bool has(const std::string& p_key) const;

    /// Replaces the value of a key, or adds the pair at the end.
    void set(const std::string& p_key, const std::string& p_value);

    void remove(const std::string& p_key);

    /// Sets each pair of the other.
    void add(const EncoderOptions& p_other);

    /// In their order.
    std::vector<std::string> getKeys() const;

    std::string toText() const;

    /// False when the text is not of the form.
    static bool isWellFormed(const std::string& p_text);

private:
    std::vector<std::pair<std::string, std::string>> m_pairs;
};

/// True for an encoder that takes its quality as a constant rate factor, and only when it is opened.
bool isSteeredByCrf(const EncoderOptions& p_options);

/// The constant rate factor of a quality from 0 (50) to 100 (15).
int crfOfQuality(unsigned p_quality);

/// What helps contents of a screen: sharp edges, few colours, large parts that stand still. Empty for encoders that
/// have no such choice.
EncoderOptions getScreenOptions(const std::string& p_implementation);

/// What makes the bitstream name the frame rate, for codecs whose bitstream has one: the nearest of those that the
/// codec knows. Empty for others.
EncoderOptions getRateOptions(const std::string& p_implementation, int p_numerator, int p_denominator);

} // namespace zyr::host
