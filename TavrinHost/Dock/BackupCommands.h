#pragma once

#include "TavrinHost/HostContext.h"
#include "TavrinStorage/Dock/WorkspaceBackupStore.h"

namespace tavrin {

/// `tavrin backups`: list, show, restore and create.
void addBackupCommands(CLI::App& app, HostContext& context);

/// Backs up profiles and widgets where they changed since the last backup. A failure is a remark:
/// it is no reason not to start or to quit.
void backUpWorkspace(HostContext& context, WorkspaceBackup::Reason reason);

/// The newest backup that can be read and has widgets in it.
std::optional<WorkspaceBackup> newestWholeBackup(HostContext& context);

} // namespace tavrin
