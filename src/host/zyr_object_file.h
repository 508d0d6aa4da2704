/// A file that holds a saved object: its bytes, the format that it is in, and the object.
#pragma once

#include "host/zyr_framework.h"

#include <string>

namespace zyr::host {

/// The directory to which deferred files of a file are relative: "/" at the end, never empty.
std::string getDirectoryOf(const std::string& p_path);

/// The text behind the last period of the file's name; empty without one.
std::string getExtensionOf(const std::string& p_path);

bool isObjectFormat(const std::string& p_format);

/// The format in which the bytes begin: "raw", "zbf", "xml", "json", or empty for none of these.
std::string findObjectFormat(const std::string& p_bytes);

/// Reads the whole of a regular file; others (pipes, devices) could hold the program up. Throws RunError.
std::string readWholeFile(const std::string& p_path);

/// The same for a file with a saved object. Of one that does not begin like any format only the beginning is read.
std::string readObjectFile(const std::string& p_path);

/// p_format, or the one in which the bytes begin, or, with none of these, the extension. Throws RunError that names the
/// file for what is no saved object at all.
std::string chooseObjectFormat(const std::string& p_path, const std::string& p_bytes, const std::string& p_format);

/// What the log took between the two calls, without what is only informative: reasons for the user.
class ObjectLog {
public:
    explicit ObjectLog(Framework& p_framework) : m_data(p_framework.getApplicationData()) { m_data.startListening(); }
    /// The messages of warnings and errors, each once and in order; none from here on.
    std::vector<std::string> stop();

private:
    HostApplicationData& m_data;
};

/// Loads the object; null with the reasons in p_reasons.
Ref<IObject> loadObject(Framework& p_framework, const std::string& p_path, const std::string& p_format,
                        std::vector<std::string>& p_reasons);

/// Saves the object in the format, or that of the path's extension where it is empty. False with the reasons in
/// p_reasons; what stands at the path is as before then.
bool saveObject(Framework& p_framework, IObject& p_object, const std::string& p_path, const std::string& p_format,
                std::vector<std::string>& p_reasons);

} // namespace zyr::host
