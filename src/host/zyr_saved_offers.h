/// What "inspect" shows of a file that keeps what codecs offered.
#pragma once

#include "host/zyr_command_line.h"

namespace zyr::host {

/// Shows the file of p_options.m_loadPath, or in what it and this machine differ. Gives the exit code: in a comparison
/// 1 stands for differences. Throws RunError.
int showSavedOffers(const InspectOptions& p_options, Framework& p_framework);

} // namespace zyr::host
