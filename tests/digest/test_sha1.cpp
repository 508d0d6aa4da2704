#include "zyr_common/digest/zyr_sha1.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

namespace zyr {

static std::string getHex(const unsigned char* p_digest) {
    std::string text;
    for (size_t i = 0; i < SHA1_DIGEST_SIZE; i++) {
        char digits[3];
        snprintf(digits, sizeof(digits), "%02x", p_digest[i]);
        text += digits;
    }
    return text;
}

static std::string getSha1(const std::string& p_data) {
    unsigned char digest[SHA1_DIGEST_SIZE];
    zyr_sha1(p_data.data(), p_data.size(), digest);
    return getHex(digest);
}

TEST(Sha1, GivesThePublishedDigests) {
    EXPECT_EQ(getSha1(""), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
    EXPECT_EQ(getSha1("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
    EXPECT_EQ(getSha1("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
    EXPECT_EQ(getSha1("abcdefghbcdefghicdefghijdefghijkefghijklfghijklmghijklmn"
                      "hijklmnoijklmnopjklmnopqklmnopqrlmnopqrsmnopqrstnopqrstu"),
              "a49b2446a02c645bf419f995b67091253a04a259");
    EXPECT_EQ(getSha1(std::string(1000000, 'a')), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

TEST(Sha1, OfNullIsThatOfNothing) {
    unsigned char digest[SHA1_DIGEST_SIZE];
    zyr_sha1(nullptr, 7, digest);
    EXPECT_EQ(getHex(digest), "da39a3ee5e6b4b0d3255bfef95601890afd80709");
}

TEST(Sha1, IsTheSameInAnyPieces) {
    const std::string data(200, 'x');
    const std::string whole = getSha1(data);
    for (uint32_t piece = 1; piece <= 130; piece++) {
        SHA1_CTX context;
        SHA1Init(&context);
        for (uint32_t done = 0; done < data.size(); done += piece) {
            const uint32_t left = uint32_t(data.size()) - done;
            SHA1Update(&context, reinterpret_cast<const unsigned char*>(data.data()) + done, std::min(piece, left));
        }
        unsigned char digest[SHA1_DIGEST_SIZE];
        SHA1Final(digest, &context);
        EXPECT_EQ(getHex(digest), whole) << piece;
    }
}

TEST(Sha1, PadsEachLengthAroundTheBlockSize) {
    // The digests of 55, 56, 63, 64 and 65 letters "a".
    EXPECT_EQ(getSha1(std::string(55, 'a')), "c1c8bbdc22796e28c0e15163d20899b65621d65a");
    EXPECT_EQ(getSha1(std::string(56, 'a')), "c2db330f6083854c99d4b5bfb6e8f29f201be699");
    EXPECT_EQ(getSha1(std::string(63, 'a')), "03f09f5b158a7a8cdad920bddc29b81c18a551f5");
    EXPECT_EQ(getSha1(std::string(64, 'a')), "0098ba824b5c16427bd7a1122a5a442a25ec644d");
    EXPECT_EQ(getSha1(std::string(65, 'a')), "11655326c708d70319be2610e8a57d9a5b959d3b");
}

} // namespace zyr
