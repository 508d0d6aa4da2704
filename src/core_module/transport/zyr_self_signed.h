/// Makes certificates that sign themselves. Safe on any thread.
#pragma once

#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

namespace zyr {

/// PEM texts.
struct SelfSigned {
    String m_key;
    String m_certificate;
    String m_fingerprint;
};

/// See ICertificatesHandler. False with p_reason.
bool zyr_makeSelfSigned(const String& p_commonName, const List<String>* p_alternativeNames, uint32_t p_days,
                        SelfSigned& p_made, String& p_reason);

/// Writes a file that appears whole or not at all, with these access rights. False with p_reason.
bool zyr_writeWholeFile(const String& p_path, const String& p_text, uint32_t p_mode, String& p_reason);

} // namespace zyr
