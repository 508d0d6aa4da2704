/// What the tests of this folder share: the program that tells how it was started, and small look-ups.
#pragma once

#include "support/zyr_temporary_directory.h"
#include "zyr_common/containers/zyr_list.h"
#include "zyr_common/text/zyr_string.h"

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace zyr {

using Texts = std::vector<std::string>;

List<String> listOf(std::initializer_list<const char*> p_texts);
Texts textsOf(const List<String>& p_list);

/// The status of a child by waitpid; -1 when there is none.
int waitForStatus(uint32_t p_processId);
/// The exit status of a child; -1 when it did not end by itself.
int waitForExit(uint32_t p_processId);

/// The numbers of the descriptors that are open in this process.
std::vector<int> getOpenDescriptors();

/// Whether a process is there and has not ended.
bool isRunning(uint32_t p_processId);
/// Waits until there is no such process, or it has ended, for at most ten seconds. True when it is so.
bool waitUntilEnded(uint32_t p_processId);
/// Waits until a process has become the program of that name, for at most ten seconds. True when it is so.
bool waitUntilRuns(uint32_t p_processId, const std::string& p_program);
/// Waits for a file that appears whole, for at most ten seconds, and gives its text.
std::string waitForFile(const std::string& p_path);

/// What the probe program reported: the values of each key in their order.
class ProbeReport {
public:
    explicit ProbeReport(const std::string& p_path);

    Texts get(const std::string& p_key) const;
    /// The only value of a key; a text that says so when there is another number of values.
    std::string getOnly(const std::string& p_key) const;
    /// Whether a signal is in the mask of that name: SigIgn, SigCgt, SigBlk.
    bool hasSignal(const std::string& p_mask, int p_signal) const;

private:
    std::map<std::string, Texts> m_values;
};

/// A directory that every user may enter and write to, with a copy of the probe that every user may run.
class ProbeDirectory {
public:
    ProbeDirectory();

    std::string getPath() const { return m_directory.getPath(); }
    String getProbe() const { return String(getPath() + "probe"); }
    std::string getReportPath() const { return getPath() + "report"; }
    ProbeReport read() const { return ProbeReport(getReportPath()); }

private:
    TemporaryDirectory m_directory;
};

} // namespace zyr
