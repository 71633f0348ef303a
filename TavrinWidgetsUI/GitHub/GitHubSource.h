#pragma once

#include "TavrinCore/Kinds/GitHub/GitHubQuery.h"
#include "TavrinCore/Kinds/GitHub/GitHubSettings.h"
#include "TavrinPlatform/FileManager.h"
#include "TavrinPlatform/ProcessRunner.h"
#include "TavrinPlatform/UserDefaults.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tavrin {

/// Asks GitHub through its command line tool, gh, which keeps the login.
class GitHubSource {
public:
  struct Trouble {
    enum class Kind { failed, toolMissing, signedOut };
    Kind kind = Kind::failed;
    /// What the tool said; for `failed`.
    std::string text = {};
    bool operator==(const Trouble&) const = default;
  };

  /// An answer may be there in part, beside the trouble with the rest.
  struct Result {
    std::vector<GitHubItem> items;
    std::optional<GitHubContributions> contributions;
    std::optional<Trouble> trouble;
    /// Whether items or contributions are what GitHub has, and not merely missing.
    bool hasData = false;
  };

  static constexpr const char* pathDefault = "GitHubCLIPath";

  /// gh is ended after `timeLimit` seconds.
  GitHubSource(RunLoop& runLoop, ProcessRunner& processes, const FileManager& fileManager,
               const UserDefaults& defaults, double timeLimit = 20)
      : runLoop_(runLoop), processes_(processes), fileManager_(fileManager), defaults_(defaults),
        timeLimit_(timeLimit) {}

  /// The first place where gh is: the user default "GitHubCLIPath", then the folders of tools.
  std::optional<std::filesystem::path> toolURL() const;
  bool isAvailable() const { return toolURL().has_value(); }

  /// Runs gh and calls `done` on the main thread, later, unless the token goes first.
  [[nodiscard]] TokenPtr load(const GitHubSettings& settings,
                              std::function<void(const Result&)> done);

  /// What a run that did not end well says.
  static Trouble trouble(const ProcessResult& run);
  /// What to show of a run's end.
  static Result result(const ProcessResult& run, const GitHubSettings& settings);

private:
  ProcessRequest request(const std::filesystem::path& tool, const GitHubSettings& settings) const;

  RunLoop& runLoop_;
  ProcessRunner& processes_;
  const FileManager& fileManager_;
  const UserDefaults& defaults_;
  double timeLimit_;
};

} // namespace tavrin
