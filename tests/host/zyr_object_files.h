/// Files with saved objects for the tests of "zyr-host object": written by hand as JSON, and converted by the program.
#pragma once

#include "support/zyr_temporary_directory.h"
#include "zyr_program_run.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace zyr {

class ObjectFiles : public testing::Test {
protected:
    void SetUp() override;

    /// "zyr-host object" with these arguments, relative to the directory of the files.
    ProgramRun run(const std::vector<std::string>& p_arguments) const;
    std::string getPath(const std::string& p_name) const;
    void write(const std::string& p_name, const std::string& p_text) const;
    std::string read(const std::string& p_name) const;
    /// A JSON file around an object.
    void writeObject(const std::string& p_name, const std::string& p_object) const;
    /// picture.json: an object with a text, a path, a truth value, an enumeration and bytes.
    void writePicture(const std::string& p_name, const std::string& p_formatName) const;
    /// A list of the same, of an object in compressed form and of null.
    void writeList(const std::string& p_name) const;
    /// An object that stands for one in another file.
    void writeDeferred(const std::string& p_name, const std::string& p_path) const;

    TemporaryDirectory m_directory;
};

} // namespace zyr
