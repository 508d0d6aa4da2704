/// Undoing what a launch has left: groups, children, session directories.
#pragma once

#include "zyr_common/zyr_types.h"

namespace zyr {

/// Ends the group of a child made by launchUserProcess(): SIGTERM, up to half a second of grace, SIGKILL; then waits
/// for the child. Nothing at all happens where the id is not that of a group's leader. The grace is used in full when
/// only the child's own status keeps the group: it is waited for at the end.
void stopUserProcessGroup(uint32_t p_processId);

/// Kills the children of the process's main thread, and children that come to it meanwhile, and waits for them. It is
/// for a process that ends a session. Children of other threads are not touched.
void stopUserSessionChildren();

/// Removes "/tmp/zvd-vsession-" + six ASCII letters or digits with everything in it; any other path is refused. True
/// when the directory is gone, also when there was none. What can't be removed stays, and everything else goes.
///
/// The contents may be hostile and may change meanwhile: links are removed and never followed, and nothing behind a
/// mount point inside is touched.
bool_t removeUserSessionDirectory(const String& p_path);

} // namespace zyr
