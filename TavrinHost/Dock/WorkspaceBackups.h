#pragma once

#include "TavrinHost/HostContext.h"
#include "TavrinStorage/Dock/WorkspaceBackupStore.h"

#include <optional>

namespace tavrin {

/// The backups of all profiles and widgets in the data folder. Throws FileError.
WorkspaceBackupStore workspaceBackups(HostContext& context);

/// Backs up profiles and widgets where they changed since the last backup. A failure is a remark:
/// it is no reason not to start or to quit.
void backUpWorkspace(HostContext& context, WorkspaceBackup::Reason reason);

/// The newest backup that can be read and has widgets in it.
std::optional<WorkspaceBackup> newestWholeBackup(HostContext& context);

} // namespace tavrin
