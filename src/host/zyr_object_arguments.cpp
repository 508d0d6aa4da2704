#include "host/zyr_object_arguments.h"

#include "host/zyr_framework_arguments.h"

namespace zyr::host {

namespace {

const std::vector<std::string> FORMATS = {"raw", "zbf", "xml", "json"};

} // namespace

void ObjectArguments::add(CLI::App& p_program, int& p_result) {
    CLI::App* object = p_program.add_subcommand("object", "Work on files that hold saved objects");
    object->require_subcommand(1);
    addConvert(*object, p_result);
}

void ObjectArguments::addConvert(CLI::App& p_object, int& p_result) {
    CLI::App* command = p_object.add_subcommand("convert", "Save the object of a file in another format");
    command->add_option("in", m_convert.m_input, "File with a saved object")->required();
    command->add_option("out", m_convert.m_output, "File to write")->required();
    command->add_option("--format", m_convert.m_format, "Format to write (default: by the extension of the file)")
        ->check(CLI::IsMember(FORMATS));
    command
        ->add_option("--input-format", m_convert.m_inputFormat,
                     "Format to read (default: by what the file begins with)")
        ->check(CLI::IsMember(FORMATS));
    command->add_flag("--lossy", m_convert.m_lossy, "Leave out what is not known here, instead of refusing");
    addFrameworkOptions(*command, m_convert.m_framework);
    command->callback([this, &p_result] { p_result = runObjectConvert(m_convert); });
}

} // namespace zyr::host
