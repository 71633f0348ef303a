#include "TavrinWidgetsUI/GitHub/GitHubSource.h"

#include "TavrinCore/Base/Lifetime.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinCore/Text/Text.h"
#include "TavrinCore/Text/Texts.h"

#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using Kind = GitHubSource::Trouble::Kind;

/// More of what a tool says is not for a panel.
constexpr std::size_t longestText = 300;

bool isExecutable(const fs::path& file) {
  std::error_code ignored;
  return fs::is_regular_file(file, ignored) && ::access(file.c_str(), X_OK) == 0;
}

/// The start of a text, not cut within a character.
std::string shortened(std::string_view text) {
  text = trimmed(text);
  if (text.size() <= longestText)
    return std::string(text);
  std::size_t end = longestText;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
    --end;
  return std::string(text.substr(0, end)) + "…";
}

} // namespace

std::optional<fs::path> GitHubSource::toolURL() const {
  if (const auto chosen = defaults_.value(pathDefault); chosen && chosen->string() != nullptr)
    if (const fs::path path = *chosen->string(); path.is_absolute() && isExecutable(path))
      return path;
  for (const auto& folder : fileManager_.toolFolders())
    if (const fs::path path = folder / "gh"; isExecutable(path))
      return path;
  return std::nullopt;
}

ProcessRequest GitHubSource::request(const fs::path& tool, const GitHubSettings& settings) const {
  ProcessRequest request;
  request.program = tool.string();
  request.arguments = GitHubQuery::arguments(settings);
  request.environment = {{"HOME", fileManager_.homeFolder().string()},
                         {"PATH", ProcessRequest::systemPath},
                         {"NO_COLOR", "1"},
                         {"GH_NO_UPDATE_NOTIFIER", "1"}};
  request.inheritsEnvironment = false;
  request.timeLimit = timeLimit_;
  return request;
}

TokenPtr GitHubSource::load(const GitHubSettings& settings,
                            std::function<void(const Result&)> done) {
  struct Load final : Token {
    TokenPtr process;
    Lifetime alive;
  };
  auto load = std::make_unique<Load>();
  const auto tool = toolURL();
  if (!tool) {
    runLoop_.post([done = std::move(done), alive = load->alive.watch()] {
      if (!alive.expired())
        done({{}, {}, Trouble{Kind::toolMissing}, false});
    });
    return load;
  }
  // An answer can be megabytes: it is read beside the main thread.
  load->process = processes_.run(
      request(*tool, settings), [&runLoop = runLoop_, settings, done = std::move(done),
                                 alive = load->alive.watch()](const ProcessResult& run) {
        auto read = std::make_shared<Result>();
        runLoop.background([read, run, settings] { *read = result(run, settings); }, alive,
                           [read, done] { done(*read); });
      });
  return load;
}

GitHubSource::Trouble GitHubSource::trouble(const ProcessResult& run) {
  if (run.outcome == ProcessResult::Outcome::timedOut)
    return {Kind::failed, translated("gh timed out")};
  const std::string& error = run.standardError;
  if (error.find("gh auth ") != std::string::npos ||
      error.find("authentication token") != std::string::npos)
    return {Kind::signedOut};
  const auto text = shortened(error);
  return {Kind::failed, text.empty() ? translated("gh failed") : text};
}

GitHubSource::Result GitHubSource::result(const ProcessResult& run,
                                          const GitHubSettings& settings) {
  const bool ended = run.outcome == ProcessResult::Outcome::exited;
  const bool succeeded = ended && run.status == 0;
  auto answer = ended ? GitHubQuery::answer(run.standardOutput) : std::nullopt;
  Result result;
  if (answer) {
    result.hasData = answer->hasData;
    result.items = GitHubBoard::select(std::move(answer->items), settings);
    result.contributions = std::move(answer->contributions);
  }
  if (!succeeded)
    result.trouble = trouble(run);
  else if (!answer)
    result.trouble = Trouble{Kind::failed, translated("gh's answer could not be read")};
  else if (!answer->error.empty() || !answer->hasData)
    result.trouble = Trouble{Kind::failed, answer->error.empty() ? translated("gh failed")
                                                                 : shortened(answer->error)};
  return result;
}

} // namespace tavrin
