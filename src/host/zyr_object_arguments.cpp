#include "host/zyr_object_arguments.h"

#include "host/zyr_framework_arguments.h"

namespace zyr::host {

namespace {

const std::vector<std::string> FORMATS = {"raw", "zbf", "xml", "json"};

} // namespace

void ObjectArguments::add(CLI::App& p_program, int& p_result) {
    CLI::App* object = p_program.add_subcommand("object", "Work on files that hold saved objects");
    object->require_subcommand(1);
    addShow(*object, p_result);
    addConvert(*object, p_result);
    addCheck(*object, p_result);
    addDiff(*object, p_result);
    m_pack.add(*object, p_result);
}

void ObjectArguments::addShow(CLI::App& p_object, int& p_result) {
    CLI::App* command = p_object.add_subcommand("show", "Show the fields of a saved object: name, type and value");
    command->add_option("file", m_show.m_file, "File with a saved object")->required();
    command->add_option("--field", m_show.m_field, "Show only this field, such as items[2].name");
    command->add_option("--depth", m_show.m_depth, "Show so many levels below the first one");
    command->add_option("--format", m_show.m_format, "Format to read (default: by what the file begins with)")
        ->check(CLI::IsMember(FORMATS));
    command->add_flag("--full", m_show.m_full, "Cut no values and arrays short");
    command->add_flag("--json", m_show.m_json, "Print JSON, with all values in full");
    addFrameworkOptions(*command, m_show.m_framework);
    command->callback([this, &p_result] { p_result = runObjectShow(m_show); });
}

void ObjectArguments::addCheck(CLI::App& p_object, int& p_result) {
    CLI::App* command =
        p_object.add_subcommand("check", "Tell whatever is wrong with saved objects, a line for each problem");
    command->add_option("files", m_check.m_files, "Files with saved objects")->required();
    command->add_flag("--json", m_check.m_json, "Print JSON");
    addFrameworkOptions(*command, m_check.m_framework);
    command->callback([this, &p_result] { p_result = runObjectCheck(m_check); });
}

void ObjectArguments::addDiff(CLI::App& p_object, int& p_result) {
    CLI::App* command = p_object.add_subcommand("diff", "Tell in which fields two saved objects differ");
    command->add_option("first", m_diff.m_first, "File with a saved object")->required();
    command->add_option("second", m_diff.m_second, "File with another one, in the same or another format")->required();
    command->add_flag("--json", m_diff.m_json, "Print JSON");
    addFrameworkOptions(*command, m_diff.m_framework);
    command->footer("Exit codes: 0 the same, 1 different, 2 wrong usage or files that cannot be compared, 4 a module "
                    "failed to load.");
    command->callback([this, &p_result] { p_result = runObjectDiff(m_diff); });
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
