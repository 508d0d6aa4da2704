#include "host/zyr_command_line.h"
#include "host/zyr_pack_command.h"
#include "host/zyr_pack_contents.h"
#include "host/zyr_standard_output.h"

#include <nlohmann/json.hpp>

namespace zyr::host {

namespace {

std::string makeText(const PackContents& p_contents) {
    std::string text;
    for (const PackEntry& entry : p_contents.getEntries()) {
        const std::string size = entry.m_data != nullptr ? std::to_string(entry.m_data->getSize()) : "-";
        text +=
            std::string(size.size() < 12 ? 12 - size.size() : 0, ' ') + size + "  " + maskControls(entry.m_path) + "\n";
    }
    return text;
}

std::string makeJson(const std::string& p_file, const PackContents& p_contents) {
    nlohmann::ordered_json resources = nlohmann::ordered_json::array();
    for (const PackEntry& entry : p_contents.getEntries()) {
        nlohmann::ordered_json resource = {{"path", entry.m_path},
                                           {"category", entry.m_category},
                                           {"name", entry.m_name},
                                           {"class", toText(entry.m_resource->getClassName())},
                                           {"guid", toText(entry.m_resource->getGUID())},
                                           {"digest", toText(entry.m_resource->getContentDigest())},
                                           {"size", nullptr}};
        if (entry.m_data != nullptr) {
            resource["size"] = entry.m_data->getSize();
        }
        resources.push_back(resource);
    }
    const nlohmann::ordered_json pack = {{"pack", p_file}, {"resources", resources}};
    return pack.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

} // namespace

int runObjectList(const PackListOptions& p_options) {
    claimStandardOutput();
    Framework framework(p_options.m_framework);
    const PackContents contents(framework, p_options.m_pack);
    return printText(p_options.m_json ? makeJson(p_options.m_pack, contents) : makeText(contents)) ? EXIT_DONE
                                                                                                   : EXIT_RUN_FAILED;
}

} // namespace zyr::host
