#include "host/zyr_pack_arguments.h"

#include "host/zyr_framework_arguments.h"

namespace zyr::host {

void PackArguments::add(CLI::App& p_object, int& p_result) {
    addPack(p_object, p_result);
    addList(p_object, p_result);
    addExtract(p_object, p_result);
}

void PackArguments::addPack(CLI::App& p_object, int& p_result) {
    CLI::App* command = p_object.add_subcommand("pack", "Put the files of a directory into a resources pack");
    command->add_option("directory", m_pack.m_directory, "Directory whose files are packed, with those below")
        ->required();
    command->add_option("out", m_pack.m_output, "Pack to write; its extension says the format, such as zbf")
        ->required();
    command->add_flag("--force", m_pack.m_force, "Replace a file that is there");
    command->add_flag("!--no-progress", m_pack.m_progress, "Show no progress on a terminal");
    m_pack.m_framework.m_coreOnly = true;
    addFrameworkOptions(*command, m_pack.m_framework);
    command->callback([this, &p_result] { p_result = runObjectPack(m_pack); });
}

void PackArguments::addList(CLI::App& p_object, int& p_result) {
    CLI::App* command = p_object.add_subcommand("list", "List the resources of a pack: size in bytes, and path");
    command->add_option("pack", m_list.m_pack, "File with a saved resources pack")->required();
    command->add_flag("--json", m_list.m_json, "Print JSON, with class, GUID and digest");
    addFrameworkOptions(*command, m_list.m_framework);
    command->callback([this, &p_result] { p_result = runObjectList(m_list); });
}

void PackArguments::addExtract(CLI::App& p_object, int& p_result) {
    CLI::App* command = p_object.add_subcommand("extract", "Write the files of a resources pack to a directory");
    command->add_option("pack", m_extract.m_pack, "File with a saved resources pack")->required();
    command->add_option("names", m_extract.m_names,
                        "Paths of files, or of directories with all below (default: everything)");
    command->add_option("-C,--directory", m_extract.m_directory, "Directory to write to, which must be there")
        ->capture_default_str();
    command->add_flag("--force", m_extract.m_force, "Replace files that are there");
    command->add_flag("!--no-progress", m_extract.m_progress, "Show no progress on a terminal");
    addFrameworkOptions(*command, m_extract.m_framework);
    command->callback([this, &p_result] { p_result = runObjectExtract(m_extract); });
}

} // namespace zyr::host
