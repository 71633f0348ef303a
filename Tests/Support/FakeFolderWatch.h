#pragma once

#include "TavrinPlatform/FolderWatch.h"
#include "TavrinPlatform/UserFiles.h"

#include <list>

namespace tavrin::test {

/// Folders that hold what the test says.
class FakeFolderWatch final : public FolderWatch {
public:
  struct Follower {
    FolderRequest request;
    std::function<void(const FolderListing&)> told;
    int refreshes = 0;
  };

  std::unique_ptr<FolderFollower> follow(FolderRequest request,
                                         std::function<void(const FolderListing&)> told) override {
    followers.push_back({std::move(request), std::move(told), 0});
    return std::make_unique<Following>(*this, std::prev(followers.end()));
  }
  /// Tells every follower, as the adapter would.
  void tell(const FolderListing& listing) {
    for (const auto& follower : std::list(followers))
      follower.told(listing);
  }

  /// Those that follow now.
  std::list<Follower> followers;

private:
  struct Following final : FolderFollower {
    Following(FakeFolderWatch& watch, std::list<Follower>::iterator place)
        : watch(watch), place(place) {}
    ~Following() override { watch.followers.erase(place); }
    void refresh() override { ++place->refreshes; }
    FakeFolderWatch& watch;
    std::list<Follower>::iterator place;
  };
};

class FakeUserFiles final : public UserFiles {
public:
  std::filesystem::path homeFolder() const override { return "/home/user"; }
  std::filesystem::path downloadsFolder() const override { return "/home/user/Downloads"; }
  std::filesystem::path screenshotFolder() const override {
    return "/home/user/Pictures/Screenshots";
  }
  bool moveToTrash(const std::filesystem::path& file) override {
    trashed.push_back(file);
    return hasTrash;
  }
  bool restoreFromTrash(const std::filesystem::path& file) override {
    const auto found = std::find(trashed.rbegin(), trashed.rend(), file);
    if (found == trashed.rend())
      return false;
    trashed.erase(std::next(found).base());
    restored.push_back(file);
    return true;
  }
  void open(const std::filesystem::path& file) override { opened.push_back(file); }
  void reveal(const std::filesystem::path& file) override { revealed.push_back(file); }

  bool hasTrash = true;
  std::vector<std::filesystem::path> trashed;
  std::vector<std::filesystem::path> restored;
  std::vector<std::filesystem::path> opened;
  std::vector<std::filesystem::path> revealed;
};

} // namespace tavrin::test
