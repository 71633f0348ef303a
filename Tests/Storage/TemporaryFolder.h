#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace tavrin {

/// An empty folder of the test's own, removed at its end.
class TemporaryFolder {
public:
  TemporaryFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "tavrin-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
      throw std::runtime_error("cannot make a folder for the test");
    path_ = pattern;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  std::vector<std::string> names() const {
    std::vector<std::string> all;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
      all.push_back(entry.path().filename().string());
    return all;
  }

private:
  std::filesystem::path path_;
};

inline void put(const std::filesystem::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

inline std::string contents(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// What `action` says when it fails with an `Error`; empty when it does not fail.
template <class Error, class Action> std::string errorOf(const Action& action) {
  try {
    action();
  } catch (const Error& error) {
    return error.what();
  }
  return {};
}

} // namespace tavrin
