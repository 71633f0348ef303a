#include "TavrinCommand/Widgets/EditorRun.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/HostError.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <charconv>
#include <chrono>
#include <fmt/format.h>

namespace tavrin {

// The user's editor as shell words, then those that Debian and others have. One that returns within
// two seconds and leaves the form as it was has most likely handed it to a window of its own.
const char* const editorScript =
    R"sh(for editor in "$VISUAL" "$EDITOR" sensible-editor editor nano vi; do
  [ -n "$editor" ] && command -v "${editor%% *}" >/dev/null && break
done
echo "$$" > "$1.shell"
name=${editor%% *}; name=${name##*/}
case "$name" in
  code|code-insiders|codium|subl|atom|zed|zeditor|gedit|xed) wait=--wait ;;
  mate) wait=-w ;;
  kate) wait=--block ;;
  gvim|mvim) wait=-f ;;
  *) wait= ;;
esac
case " $editor " in
  *" -w "*|*" --wait "*|*" -b "*|*" --block "*|*" -f "*|*" --nofork "*) wait= ;;
esac
before=$(cksum < "$1"); began=$(date +%s)
$editor $wait "$1"; status=$?
if [ "$status" = 0 ] && [ "$(($(date +%s) - began))" -le 2 ] &&
   [ "$(cksum < "$1")" = "$before" ]; then
  : > "$1.window"
  echo "$name has returned, and nothing was changed yet. If it shows the form in another window,"
  echo "save and close it there, then press Return here; otherwise press Return at once."
  echo "An editor that waits by itself is set like this: EDITOR=\"code --wait\""
  read -r answer || exit 1
  rm -f "$1.window"
fi
echo "$status" > "$1.done"
exit "$status")sh";

namespace {

constexpr double markerInterval = 0.2;
/// A terminal that has shown nothing in this long shows nothing.
constexpr double terminalLimit = 30;
constexpr int commandNotFound = 127;
/// A window that nobody has typed into for so long will not be typed into.
constexpr std::chrono::hours longestWindow{7 * 24};

/// A number alone on its line, once it was written.
std::optional<int> writtenNumber(const std::filesystem::path& file) {
  const auto text = readFile(file).value_or("");
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end != text.data() + text.size() ? std::optional(number)
                                                                  : std::nullopt;
}

std::filesystem::path mark(const std::filesystem::path& form, const char* name) {
  return form.string() + name;
}

void removeMarks(const std::filesystem::path& form, std::initializer_list<const char*> names) {
  std::error_code ignored;
  for (const auto* name : names)
    std::filesystem::remove(mark(form, name), ignored);
}

/// What the script around the editor leaves beside the form: a terminal may hand its window to a
/// server and end at once, so that these alone tell the editor's end.
class EditorMarks {
public:
  explicit EditorMarks(const std::filesystem::path& form) : form_(form) { forgetEditor(form); }
  ~EditorMarks() { removeMarks(form_, {".shell", ".done"}); }
  EditorMarks(const EditorMarks&) = delete;
  EditorMarks& operator=(const EditorMarks&) = delete;

  bool hasBegun() const { return shell().has_value() || status().has_value(); }
  std::optional<int> shell() const { return writtenNumber(mark(form_, ".shell")); }
  std::optional<int> status() const { return writtenNumber(mark(form_, ".done")); }

private:
  std::filesystem::path form_;
};

} // namespace

void forgetEditor(const std::filesystem::path& form) {
  removeMarks(form, {".shell", ".done", ".window"});
}

void runEditor(CommandContext& context, const std::filesystem::path& form, bool usesOwnTerminal) {
  auto& platform = context.platform();
  const EditorMarks marks(form);
  std::vector<std::string> words = {"sh", "-c", editorScript, "sh", form.string()};
  if (!usesOwnTerminal) {
    const auto terminal = platform.fileManager().environment("TERMINAL").value_or("");
    words.insert(words.begin(), {terminal.empty() ? "x-terminal-emulator" : terminal, "-e"});
  }
  const auto fail = [&](std::string_view reason) {
    throw HostError(ExitCode::failed, translated("Failed to edit \"{form}\" because {reason}",
                                                 {{"form", form.string()}, {"reason", reason}}));
  };
  const int status = platform.runInForeground(words);
  for (double waited = 0; status == 0 && !marks.hasBegun() && waited < terminalLimit;
       waited += markerInterval)
    platform.wait(markerInterval);
  if (!marks.hasBegun())
    fail(translated("no terminal could be started; set TERMINAL"));
  // The shell ends with its terminal, and says nothing then.
  while (!marks.status() && platform.applications().isAlive(marks.shell().value_or(0)))
    platform.wait(markerInterval);
  const auto result = marks.status();
  if (!result)
    fail(translated("its terminal was closed"));
  if (*result == commandNotFound)
    fail(translated("no editor could be started; set EDITOR"));
  if (*result != 0)
    fail(translated("the editor ended with status {status}", {{"status", *result}}));
}

bool isOpenInEditor(CommandContext& context, const std::filesystem::path& form, bool hasWindow) {
  std::error_code isMissing;
  const auto handedOver = std::filesystem::last_write_time(mark(form, ".window"), isMissing);
  if (hasWindow && !isMissing &&
      std::filesystem::file_time_type::clock::now() - handedOver < longestWindow)
    return true;
  const auto shell = writtenNumber(mark(form, ".shell"));
  return shell && context.platform().applications().isAlive(*shell);
}

} // namespace tavrin
