#include "TavrinCommand/Widgets/EditorRun.h"

#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/HostError.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <charconv>
#include <chrono>
#include <fmt/format.h>

namespace tavrin {

// The user's editor as shell words, then those that Debian and others have. One that is not known
// to stay until its window is closed, and returns with the form as it was, may have handed it to a
// window of its own: what is saved there is taken each time, until the user says that it is closed.
const char* const editorScript =
    R"sh(tavrin=$1 returned=$2 form=$3
for editor in "$VISUAL" "$EDITOR" sensible-editor editor nano vi; do
  [ -n "$editor" ] && command -v "${editor%% *}" >/dev/null && break
done
echo "$$" > "$form.shell"
name=${editor%% *}; name=${name##*/}
wait=; stays=
case "$name" in
  code|code-insiders|codium|subl|atom|zed|zeditor|gedit|xed) wait=--wait ;;
  mate) wait=-w ;;
  kate) wait=--block ;;
  gvim|mvim) wait=-f ;;
  sensible-editor|editor|vi|vim|nvim|ex|ed|nano|pico|emacs|emacsclient|joe|jed|jove|mg|ne) stays=1 ;;
  micro|hx|helix|kak|mcedit|tilde|dte|amp) stays=1 ;;
esac
case " $editor " in
  *" -w "*|*" --wait "*|*" -b "*|*" --block "*|*" -f "*|*" --nofork "*) wait=; stays=1 ;;
esac
sum() { cksum 2>/dev/null < "$form"; }
seen=$(sum)
$editor $wait "$form"; status=$?
if [ "$status" = 0 ] && [ -z "$wait$stays" ] && [ "$(sum)" = "$seen" ]; then
  : > "$form.window"
  printf '%s\n' "$returned" | sed "s|{editor}|$name|"
  rm -f "$form.answer"
  exec 3<&0
  { read -r line <&3; echo "$?" > "$form.answer"; } &
  before=$seen
  while [ ! -s "$form.answer" ]; do
    sleep 0.2
    now=$(sum)
    # Whole, as far as that can be seen: it stands as it did a moment ago.
    if [ "$now" = "$before" ] && [ "$now" != "$seen" ]; then
      seen=$now
      "$tavrin" edit --take "$form"
    fi
    before=$now
  done
  answer=$(cat "$form.answer"); rm -f "$form.answer"
  [ "$answer" = 0 ] || exit 1
  rm -f "$form.window"
fi
echo "$status" > "$form.done"
exit "$status")sh";

namespace {

/// Its place is filled in by the script.
constexpr const char* returnedEarly = marked(
    "{editor} has returned, and nothing was changed yet. If it shows the form in another "
    "window, what\nyou save there is taken each time. Press Return here once that window is "
    "closed; where there is\nnone, press Return at once. An editor that waits by itself is set "
    "like this:\nEDITOR=\"code --wait\"");
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
  removeMarks(form, {".shell", ".done", ".window", ".answer"});
}

void runEditor(CommandContext& context, const std::filesystem::path& form, bool usesOwnTerminal) {
  auto& platform = context.platform();
  const EditorMarks marks(form);
  std::vector<std::string> words = {"sh",
                                    "-c",
                                    editorScript,
                                    "sh",
                                    platform.program().string(),
                                    translated(returnedEarly),
                                    form.string()};
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
