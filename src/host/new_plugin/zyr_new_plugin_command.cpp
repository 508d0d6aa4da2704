#include "host/new_plugin/zyr_new_plugin_command.h"

#include "host/new_plugin/zyr_plugin_templates.h"
#include "host/zyr_command_line.h"
#include "host/zyr_output_file.h"
#include "host/zyr_run_error.h"
#include "host/zyr_standard_output.h"
#include "zyr_common/digest/zyr_guid.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <sys/random.h>
#include <vector>

namespace zyr::host {

namespace {

namespace fs = std::filesystem;

constexpr size_t LONGEST_NAME = 40;
constexpr int NUM_OF_GUIDS = 10;
/// A plug-in's name is that of its codec: under one of these it would be offered to the decoders of others.
constexpr const char* CODECS_OF_OTHERS[] = {"vp9", "h264", "mpeg1video", "blocks"};
constexpr const char* CODEC_TOUR =
    "`src/%name%_codec.h` names the codec and its four classes, `src/%name%_codec.cpp` packs a picture and unpacks it, "
    "and\n`src/%name%_runs.cpp` is the codec proper: begin there. `src/%name%_plugin.cpp` tells hosts who you are.";
constexpr const char* OBJECTS_TOUR =
    "`src/%name%_note.h` is a class with two fields that are saved and loaded: begin there. `src/%name%_plugin.cpp` "
    "tells\nhosts who you are.";

/// Classes keep their GUIDs for good, so these come from the system's generator.
std::string drawGUID() {
    GUID_t guid;
    if (getrandom(guid.m_data, sizeof(guid.m_data), 0) != ssize_t(sizeof(guid.m_data))) {
        throw RunError("the system gives no random numbers");
    }
    guid.setVersion4();
    return toText(guid);
}

/// "my_codec" as "MyCodec".
std::string toClassName(const std::string& p_name) {
    std::string text;
    bool begins = true;
    for (const char c : p_name) {
        if (c != '_') {
            text += begins ? char(toupper(c)) : c;
        }
        begins = c == '_';
    }
    return text;
}

std::string toUpper(std::string p_text) {
    for (char& c : p_text) {
        c = char(toupper(c));
    }
    return p_text;
}

std::map<std::string, std::string> makeWords(const NewPluginOptions& p_options) {
    std::map<std::string, std::string> words = {
        {"%name%", p_options.m_name}, {"%Name%", toClassName(p_options.m_name)}, {"%NAME%", toUpper(p_options.m_name)}};
    for (int i = 0; i < NUM_OF_GUIDS; i++) {
        words["%guid" + std::to_string(i) + "%"] = drawGUID();
    }
    return words;
}

std::string replaceWords(std::string p_text, const std::map<std::string, std::string>& p_words) {
    for (const auto& [word, value] : p_words) {
        for (size_t at = p_text.find(word); at != std::string::npos; at = p_text.find(word, at + value.size())) {
            p_text.replace(at, word.size(), value);
        }
    }
    return p_text;
}

/// A path as shells take it.
std::string quote(const std::string& p_path) {
    if (p_path.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._+-") ==
        std::string::npos) {
        return p_path;
    }
    std::string text;
    for (const char c : p_path) {
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return "'" + text + "'";
}

/// The files of a project and their directories. Half a project is no use: what was made is removed unless it is kept.
class NewFiles {
public:
    NewFiles() = default;
    ~NewFiles() {
        std::error_code error;
        for (auto path = m_made.rbegin(); path != m_made.rend(); ++path) {
            fs::remove(*path, error);
        }
    }
    NewFiles(const NewFiles&) = delete;
    NewFiles& operator=(const NewFiles&) = delete;

    void keep() { m_made.clear(); }

    void write(const fs::path& p_path, const std::string& p_text) {
        makeDirectory(p_path.parent_path());
        OutputFile file(p_path.string());
        m_made.push_back(p_path);
        file.write(p_text.data(), p_text.size());
        file.close();
        if (p_text.compare(0, 2, "#!") == 0) {
            std::error_code error;
            fs::permissions(p_path, fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec,
                            fs::perm_options::add, error);
        }
    }

private:
    void makeDirectory(const fs::path& p_path) {
        std::error_code error;
        if (p_path.empty() || fs::is_directory(p_path, error)) {
            return;
        }
        makeDirectory(p_path.parent_path());
        if (fs::create_directory(p_path, error)) {
            m_made.push_back(p_path);
        } else if (error) {
            throw RunError("cannot make the directory '" + p_path.string() + "': " + error.message());
        }
    }

    std::vector<fs::path> m_made;
};

} // namespace

std::string checkPluginName(const std::string& p_name) {
    const char* allowed = "abcdefghijklmnopqrstuvwxyz0123456789_";
    const bool isName = !p_name.empty() && p_name.size() <= LONGEST_NAME && p_name[0] >= 'a' && p_name[0] <= 'z' &&
                        p_name.back() != '_' && p_name.find("__") == std::string::npos &&
                        p_name.find_first_not_of(allowed) == std::string::npos;
    if (!isName) {
        return "'" + p_name +
               "' is not a name of small letters, digits and single underscores, a letter first, of at most " +
               std::to_string(LONGEST_NAME) + " characters";
    }
    if (p_name.starts_with("zyr_")) {
        return "names such as '" + p_name + "' are those of the framework's own plug-ins";
    }
    return std::count(std::begin(CODECS_OF_OTHERS), std::end(CODECS_OF_OTHERS), p_name) == 0
               ? ""
               : "'" + p_name + "' is the name of a codec that is there already";
}

int runNewPlugin(const NewPluginOptions& p_options) {
    const fs::path directory = p_options.m_directory.empty() ? p_options.m_name : p_options.m_directory;
    std::error_code error;
    if (fs::exists(directory, error) && !fs::is_empty(directory, error)) {
        throw RunError("'" + directory.string() + "' is there already and not empty");
    }
    const std::map<std::string, std::string> words = makeWords(p_options);
    const std::map<std::string, std::string> tour = {
        {"%tour%", p_options.m_kind == "codec" ? CODEC_TOUR : OBJECTS_TOUR}};
    NewFiles files;
    for (const PluginTemplate& file : listPluginTemplates()) {
        const std::string folder = file.m_folder;
        if (folder == "common" || folder == p_options.m_kind) {
            files.write(directory / replaceWords(file.m_path, words),
                        replaceWords(replaceWords(file.m_text, tour), words));
        }
    }
    files.keep();
    const std::string where = quote(directory.string());
    const std::string build = quote((directory / "build").string());
    const bool done = printText("Wrote " + where + ". Build and test it:\n\n    cmake -S " + where + " -B " + build +
                                " && cmake --build " + build + " && ctest --test-dir " + build + "\n");
    return done ? EXIT_DONE : EXIT_RUN_FAILED;
}

} // namespace zyr::host
