#include "zyr_common/documents/zyr_config_section.h"

namespace zyr {

ConfigPair& ConfigPair::operator=(const ConfigPair& p_src) {
    if (this != &p_src) {
        clear();
        copy_This(p_src);
    }
    return *this;
}

void ConfigPair::init_This() {
    m_name.clear();
    m_value.clear();
    m_numeric = 0;
}

void ConfigPair::copy_This(const ConfigPair& p_src) {
    m_name = p_src.m_name;
    m_value = p_src.m_value;
    m_numeric = p_src.m_numeric;
}

ConfigSection& ConfigSection::operator=(const ConfigSection& p_src) {
    if (this != &p_src) {
        clear();
        copy_This(p_src);
    }
    return *this;
}

void ConfigSection::pushBackPair(ConfigPair* p_pair) {
    if (p_pair != nullptr) {
        p_pair->addRef();
        m_pairs.pushBack(p_pair);
    }
}

void ConfigSection::clearPairs() {
    for (auto it = m_pairs.begin(); it != m_pairs.end(); ++it) {
        ZYR_ASSERT(*it != NULL);
        (*it)->release();
    }
    m_pairs.clear();
}

void ConfigSection::copy_This(const ConfigSection& p_src) {
    m_name = p_src.m_name;
    for (ConfigPair* pair : p_src.m_pairs) {
        pushBackPair(pair);
    }
}

} // namespace zyr
