#pragma once

#include "TavrinPlatform/ApplicationLibrary.h"
#include "TavrinPlatform/RunLoop.h"
#include "Tests/Support/HandlerList.h"

#include <algorithm>

namespace tavrin::test {

/// Knows the applications in `installed`; answers when the run loop runs its posts.
class FakeApplicationLibrary final : public ApplicationLibrary {
public:
  explicit FakeApplicationLibrary(RunLoop& runLoop) : runLoop_(runLoop) {}

  TokenPtr list(std::function<void(std::vector<ApplicationInfo>)> answer) override {
    ++lists;
    return later([this, answer] { answer(installed); });
  }
  TokenPtr find(std::vector<AppEntry> entries,
                std::function<void(std::vector<std::optional<ApplicationInfo>>)> answer) override {
    return later([this, entries, answer] {
      std::vector<std::optional<ApplicationInfo>> infos;
      for (const auto& entry : entries) {
        const auto found = std::ranges::find_if(installed, [&](const auto& info) {
          return info.path == entry.path || info.id == entry.path ||
                 info.id == entry.bundleIdentifier;
        });
        infos.push_back(found == installed.end() ? std::nullopt : std::optional(*found));
      }
      answer(infos);
    });
  }
  TokenPtr icon(const std::string& icon, int points, int scale,
                std::function<void(QImage)> answer) override {
    icons.push_back(icon);
    return later([points, scale, answer] {
      QImage image(points * scale, points * scale, QImage::Format_ARGB32_Premultiplied);
      image.fill(Qt::green);
      answer(image);
    });
  }
  TokenPtr launch(const std::string& id, const std::string& action,
                  std::function<void(const std::string&)> answer) override {
    launches.push_back(action.empty() ? id : id + "/" + action);
    return later([this, answer] { answer(trouble); });
  }
  TokenPtr observe(std::function<void()> handler) override { return changes.add(handler); }

  static ApplicationInfo app(const std::string& name,
                             std::vector<ApplicationInfo::Action> actions = {}) {
    return {.id = name + ".desktop",
            .path = "/apps/" + name + ".desktop",
            .name = name,
            .genericName = {},
            .comment = {},
            .keywords = {},
            .icon = name,
            .actions = std::move(actions)};
  }

  std::vector<ApplicationInfo> installed;
  std::vector<std::string> launches;
  std::vector<std::string> icons;
  std::string trouble;
  int lists = 0;
  HandlerList changes;

private:
  template <class Work> TokenPtr later(Work work) {
    return runLoop_.after(0, [work = std::move(work)] { work(); });
  }

  RunLoop& runLoop_;
};

} // namespace tavrin::test
