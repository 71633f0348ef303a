#include "TavrinCommand/Widgets/EditDraft.h"

#include "TavrinCommand/Widgets/EditForm.h"
#include "TavrinCommand/Widgets/EditorRun.h"
#include "TavrinCore/Base/Errors.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/HostError.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>

namespace tavrin {
namespace {

std::filesystem::path recordOf(const std::filesystem::path& form) {
  return form.string() + ".base";
}

/// What was typed when it was last taken from a window that goes on showing it.
std::filesystem::path takenOf(const std::filesystem::path& form) {
  return form.string() + ".taken";
}

/// No value where the record is gone or says nothing any more.
std::optional<DockWidget> recordBeside(const std::filesystem::path& form) {
  try {
    if (const auto text = readFile(recordOf(form)))
      return decode<DockWidget>(JSONValue::parse(*text));
  } catch (const std::exception&) {
    return std::nullopt;
  }
  return std::nullopt;
}

std::filesystem::path newForm(const std::filesystem::path& folder, const UUID& id) {
  for (int number = 1;; ++number) {
    auto form = folder / (number == 1 ? fmt::format("{}.form", id.text())
                                      : fmt::format("{}-{}.form", id.text(), number));
    if (auto* file = std::fopen(form.c_str(), "wx")) {
      std::fclose(file);
      return form;
    }
    if (errno != EEXIST)
      throw FileError(
          failure(translated("make \"{form}\"", {{"form", form.string()}}), std::strerror(errno)));
  }
}

} // namespace

EditDraft EditDraft::make(const std::filesystem::path& folder, const DockWidget& base) {
  EditDraft draft{newForm(folder, base.id), base, nullptr};
  draft.lock = std::make_shared<DocumentLock>(draft.form);
  writeFileAtomically(recordOf(draft.form), encode(base).compact(), FileAccess::ownerOnly);
  writeFileAtomically(draft.form, editForm(base), FileAccess::ownerOnly);
  return draft;
}

std::vector<EditDraft> EditDraft::leftBehind(CommandContext& context,
                                             const std::optional<UUID>& id) {
  std::vector<EditDraft> drafts;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::directory_iterator(context.stateFolder(), ignored)) {
    if (entry.path().extension() != ".form")
      continue;
    const auto base = recordBeside(entry.path());
    if (!base || (id && base->id != *id) || isOpenInEditor(context, entry.path(), false))
      continue;
    auto lock = std::make_shared<DocumentLock>(entry.path());
    std::error_code isGone;
    if (lock->isTaken() || !std::filesystem::exists(entry.path(), isGone))
      continue;
    EditDraft draft{entry.path(), *base, std::move(lock)};
    if (!draft.isUntouched())
      drafts.push_back(std::move(draft));
    else if (!isOpenInEditor(context, entry.path(), true))
      draft.remove();
  }
  std::ranges::sort(drafts, {}, &EditDraft::form);
  return drafts;
}

EditDraft EditDraft::at(const std::filesystem::path& form) {
  auto base = recordBeside(form);
  std::error_code isGone;
  if (!base || !std::filesystem::exists(form, isGone))
    throw HostError(ExitCode::notFound,
                    translated("\"{form}\" is no form of an edit", {{"form", form.string()}}));
  return {form, std::move(*base), nullptr};
}

void EditDraft::take(const std::string& typed, const DockWidget& made) {
  base = made;
  writeFileAtomically(takenOf(form), typed, FileAccess::ownerOnly);
  writeFileAtomically(recordOf(form), encode(made).compact(), FileAccess::ownerOnly);
}

bool EditDraft::follow() {
  const auto taken = readFile(takenOf(form));
  if (const auto recorded = taken ? recordBeside(form) : std::nullopt)
    base = *recorded;
  return taken && *taken == text();
}

std::string EditDraft::text() const {
  return readFile(form).value_or("");
}

bool EditDraft::isUntouched() const {
  const auto typed = text();
  return typed == editForm(base) || typed == readFile(takenOf(form));
}

void EditDraft::remove() const {
  std::error_code ignored;
  std::filesystem::remove(form, ignored);
  std::filesystem::remove(recordOf(form), ignored);
  std::filesystem::remove(takenOf(form), ignored);
  forgetEditor(form);
}

} // namespace tavrin
