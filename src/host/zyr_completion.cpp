#include "host/zyr_completion.h"

#include <vector>

namespace zyr::host {

namespace {

struct OptionWords {
    std::vector<std::string> m_names; ///< With their dashes.
    std::vector<std::string> m_values;
    std::string m_description;
    bool m_takesValue = false;
};

/// A command, or the program itself.
struct CommandWords {
    std::string m_place; ///< The words that lead here, each behind a space. Empty: the program.
    std::vector<std::pair<std::string, std::string>> m_commands; ///< Those below, with their descriptions.
    std::vector<OptionWords> m_options;
};

/// The values in what a check says about itself: "{hw,sw}", or "value in {error->1,warn->2} OR {1,2}".
std::vector<std::string> takeValues(const std::string& p_text) {
    std::vector<std::string> values;
    const size_t start = p_text.find('{');
    const size_t end = p_text.find('}');
    if (start == std::string::npos || end == std::string::npos) {
        return values;
    }
    std::istringstream list(p_text.substr(start + 1, end - start - 1));
    for (std::string value; std::getline(list, value, ',');) {
        values.push_back(value.substr(0, value.find("->")));
    }
    return values;
}

OptionWords describeOption(const CLI::Option& p_option) {
    OptionWords words;
    for (const std::string& name : p_option.get_snames()) {
        words.m_names.push_back("-" + name);
    }
    for (const std::string& name : p_option.get_lnames()) {
        words.m_names.push_back("--" + name);
    }
    words.m_description = p_option.get_description();
    words.m_takesValue = p_option.get_items_expected_max() > 0;
    if (words.m_takesValue) {
        words.m_values = takeValues(p_option.get_type_name());
    }
    return words;
}

void addCommands(const CLI::App& p_app, const std::string& p_place, std::vector<CommandWords>& p_all) {
    CommandWords words;
    words.m_place = p_place;
    for (const CLI::Option* option : p_app.get_options()) {
        if (!option->get_positional() || !option->get_lnames().empty()) {
            words.m_options.push_back(describeOption(*option));
        }
    }
    const auto commands = p_app.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* command : commands) {
        words.m_commands.emplace_back(command->get_name(), command->get_description());
    }
    p_all.push_back(words);
    for (const CLI::App* command : commands) {
        addCommands(*command, p_place + " " + command->get_name(), p_all);
    }
}

std::string join(const std::vector<std::string>& p_words, const char* p_between) {
    std::string text;
    for (const std::string& word : p_words) {
        text += (text.empty() ? "" : p_between) + word;
    }
    return text;
}

/// A text in single quotes, as all three shells read it when it has none itself; behind `p_colons` those are escaped.
std::string inQuotes(const std::string& p_text, bool p_colons = false) {
    std::string text = "'";
    for (const char c : p_text) {
        text += c == '\'' ? std::string("'\\''") : c == ':' && p_colons ? std::string("\\:") : std::string(1, c);
    }
    return text + "'";
}

/// The patterns of "place word" for which something is done.
std::string placesOfCommands(const std::vector<CommandWords>& p_all) {
    std::string text;
    for (const CommandWords& command : p_all) {
        if (!command.m_place.empty()) {
            text += (text.empty() ? "" : "|") + inQuotes(command.m_place);
        }
    }
    return text;
}

/// Branches of a case over "place option" for options with a value.
std::string makeValueBranches(const std::vector<CommandWords>& p_all, const char* p_values, const char* p_files) {
    std::string text;
    for (const CommandWords& command : p_all) {
        for (const OptionWords& option : command.m_options) {
            if (!option.m_takesValue) {
                continue;
            }
            std::vector<std::string> patterns;
            for (const std::string& name : option.m_names) {
                patterns.push_back(inQuotes(command.m_place + " " + name));
            }
            text += "    " + join(patterns, "|") + ") ";
            const size_t mark = std::string(p_values).find('@');
            text +=
                option.m_values.empty() ? p_files : std::string(p_values).replace(mark, 1, join(option.m_values, " "));
            text += " ;;\n";
        }
    }
    return text;
}

std::string makeBash(const std::vector<CommandWords>& p_all) {
    std::string text =
        "# bash completion for zyr-host, written by \"zyr-host completion bash\"\n"
        "_zyr_host() {\n"
        "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}\n"
        "    local place='' words='' word i\n"
        "    COMPREPLY=()\n"
        "    for ((i = 1; i < COMP_CWORD; i++)); do\n"
        "        word=${COMP_WORDS[i]}\n"
        "        case \"$place $word\" in\n        " +
        placesOfCommands(p_all) +
        ") place=\"$place $word\" ;;\n"
        "        esac\n"
        "    done\n"
        "    case \"$place $previous\" in\n" +
        makeValueBranches(p_all, "mapfile -t COMPREPLY < <(compgen -W '@' -- \"$current\"); return", "return") +
        "    esac\n"
        "    case \"$place\" in\n";
    for (const CommandWords& command : p_all) {
        std::vector<std::string> words;
        for (const auto& [name, description] : command.m_commands) {
            words.push_back(name);
        }
        for (const OptionWords& option : command.m_options) {
            words.insert(words.end(), option.m_names.begin(), option.m_names.end());
        }
        text += "    " + inQuotes(command.m_place) + ") words=" + inQuotes(join(words, " ")) + " ;;\n";
    }
    return text + "    esac\n"
                  "    case \"$current\" in\n"
                  "    '') case \"$words\" in -*) return ;; esac ;;\n"
                  "    esac\n"
                  "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
                  "}\n"
                  "complete -o default -F _zyr_host zyr-host\n";
}

std::string makeZsh(const std::vector<CommandWords>& p_all) {
    std::string text = "#compdef zyr-host\n"
                       "# written by \"zyr-host completion zsh\"\n"
                       "_zyr-host() {\n"
                       "    local place='' word\n"
                       "    local -a commands options\n"
                       "    for word in ${words[2,CURRENT-1]}; do\n"
                       "        case \"$place $word\" in\n        " +
                       placesOfCommands(p_all) +
                       ") place=\"$place $word\" ;;\n"
                       "        esac\n"
                       "    done\n"
                       "    case \"$place ${words[CURRENT-1]}\" in\n" +
                       makeValueBranches(p_all, "compadd -- @; return", "_files; return") +
                       "    esac\n"
                       "    case \"$place\" in\n";
    for (const CommandWords& command : p_all) {
        std::vector<std::string> commands;
        for (const auto& [name, description] : command.m_commands) {
            commands.push_back(inQuotes(name + ":" + description));
        }
        std::vector<std::string> options;
        for (const OptionWords& option : command.m_options) {
            for (const std::string& name : option.m_names) {
                options.push_back(inQuotes(name) + ":" + inQuotes(option.m_description, true));
            }
        }
        text += "    " + inQuotes(command.m_place) + ")\n        commands=(" + join(commands, " ") +
                ")\n        options=(" + join(options, "\n            ") + ") ;;\n";
    }
    return text + "    esac\n"
                  "    if [[ $PREFIX == -* ]]; then\n"
                  "        _describe -o option options\n"
                  "    elif (( $#commands )); then\n"
                  "        _describe command commands\n"
                  "    else\n"
                  "        _files\n"
                  "    fi\n"
                  "}\n"
                  "_zyr-host \"$@\"\n";
}

std::string makeFish(const std::vector<CommandWords>& p_all) {
    std::string text = "# fish completion for zyr-host, written by \"zyr-host completion fish\"\n";
    for (const CommandWords& command : p_all) {
        // Every word that leads here was seen, and none of those below.
        std::string condition;
        std::istringstream places(command.m_place);
        for (std::string word; places >> word;) {
            condition += (condition.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + word);
        }
        std::vector<std::string> names;
        for (const auto& [name, description] : command.m_commands) {
            names.push_back(name);
        }
        const std::string begin = "complete -c zyr-host";
        const std::string here = condition.empty() ? "" : " -n " + inQuotes(condition);
        if (!names.empty()) {
            const std::string none = "not __fish_seen_subcommand_from " + join(names, " ");
            const std::string open = condition.empty() ? none : condition + "; and " + none;
            for (const auto& [name, description] : command.m_commands) {
                text += begin + " -n " + inQuotes(open) + " -f -a " + name + " -d " + inQuotes(description) + "\n";
            }
        }
        for (const OptionWords& option : command.m_options) {
            text += begin + here;
            for (const std::string& name : option.m_names) {
                text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
            }
            text += option.m_takesValue ? " -r" : "";
            text += option.m_values.empty() ? "" : " -f -a " + inQuotes(join(option.m_values, " "));
            text += " -d " + inQuotes(option.m_description) + "\n";
        }
    }
    return text;
}

} // namespace

std::string makeCompletion(const CLI::App& p_app, const std::string& p_shell) {
    std::vector<CommandWords> all;
    addCommands(p_app, "", all);
    return p_shell == "bash" ? makeBash(all) : p_shell == "zsh" ? makeZsh(all) : p_shell == "fish" ? makeFish(all) : "";
}

} // namespace zyr::host
