#include "TavrinHost/Dock/WorkspaceBackups.h"

#include "TavrinStorage/StoragePath.h"

namespace tavrin {
namespace {

bool holdsWidgets(const WorkspaceBackupStore& store, const WorkspaceBackup& backup) {
  try {
    const auto contents = store.contents(backup);
    return !contents.widgets.widgets.empty() || !contents.widgets.unrecognized.empty();
  } catch (const std::exception&) {
    return false;
  }
}

} // namespace

WorkspaceBackupStore workspaceBackups(HostContext& context) {
  auto& platform = context.platform();
  return WorkspaceBackupStore(
      StoragePath(platform.fileManager(), platform.mainBundle()).appSupportDirectory(true));
}

std::optional<WorkspaceBackup> newestWholeBackup(HostContext& context) {
  try {
    const auto store = workspaceBackups(context);
    for (auto& backup : store.list())
      if (holdsWidgets(store, backup))
        return std::move(backup);
  } catch (const std::exception&) {
    // Where they cannot be listed there are none to offer.
  }
  return std::nullopt;
}

void backUpWorkspace(HostContext& context, WorkspaceBackup::Reason reason) {
  try {
    workspaceBackups(context).backUp(reason, context.platform().clock().now());
  } catch (const std::exception& error) {
    context.remark(error.what());
  }
}

} // namespace tavrin
