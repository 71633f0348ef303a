#include "TavrinPlatform/Files/AtomicFile.h"

#include "Tests/Storage/TemporaryFolder.h"

#include <csignal>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

unsigned modeOf(const fs::path& file) {
  struct stat info {};
  EXPECT_EQ(::lstat(file.c_str(), &info), 0);
  return info.st_mode & 0777;
}

std::string writeError(const fs::path& file, const std::string& bytes = "new") {
  return errorOf<FileError>([&] { writeFileAtomically(file, bytes); });
}

TEST(AtomicFile, WritesAndReplaces) {
  const TemporaryFolder folder;
  const auto file = folder / "a.json";
  EXPECT_EQ(readFile(file), std::nullopt);
  for (const auto& bytes : {std::string("first"), std::string(), std::string(5'000'000, 'x'),
                            std::string("\0\xff\n", 3)}) {
    writeFileAtomically(file, bytes);
    EXPECT_EQ(readFile(file), bytes);
  }
  EXPECT_THAT(folder.names(), ElementsAre("a.json"));
}

TEST(AtomicFile, Permissions) {
  const TemporaryFolder folder;
  const auto file = folder / "a";
  const auto mask = ::umask(022);
  writeFileAtomically(file, "1");
  EXPECT_EQ(modeOf(file), 0644u);
  fs::permissions(file, fs::perms(0660));
  writeFileAtomically(file, "2");
  EXPECT_EQ(modeOf(file), 0660u);
  writeFileAtomically(file, "3", FileAccess::ownerOnly);
  EXPECT_EQ(modeOf(file), 0600u);
  writeFileAtomically(folder / "b", "4", FileAccess::ownerOnly);
  EXPECT_EQ(modeOf(folder / "b"), 0600u);
  ::umask(mask);
}

TEST(AtomicFile, ASymbolicLinkStays) {
  const TemporaryFolder folder;
  fs::create_directory(folder / "real");
  put(folder / "real/target", "old");
  fs::create_symlink("real/target", folder / "inner");
  fs::create_symlink(folder / "inner", folder / "outer");
  writeFileAtomically(folder / "outer", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "outer"));
  EXPECT_TRUE(fs::is_symlink(folder / "inner"));
  EXPECT_EQ(contents(folder / "real/target"), "new");

  fs::create_symlink("real/later", folder / "dangling");
  EXPECT_EQ(readFile(folder / "dangling"), std::nullopt);
  writeFileAtomically(folder / "dangling", "made");
  EXPECT_EQ(contents(folder / "real/later"), "made");

  fs::create_symlink("circle", folder / "circle");
  EXPECT_THAT(writeError(folder / "circle"), HasSubstr("symbolic links lead in a circle"));
  fs::create_symlink("nowhere/file", folder / "lost");
  EXPECT_THAT(writeError(folder / "lost"), HasSubstr("No such file or directory"));
}

TEST(AtomicFile, FailuresNameStageFileAndReason) {
  const TemporaryFolder folder;
  put(folder / "plain", "x");
  fs::create_directory(folder / "dir");
  ::mkfifo((folder / "pipe").c_str(), 0600);
  const auto path = [&](const char* name) { return (folder / name).string(); };
  EXPECT_EQ(writeError(folder / "none/file"), "Failed to make a temporary file for " +
                                                  path("none/file") +
                                                  " because No such file or directory");
  EXPECT_EQ(writeError(folder / "plain/file"), "Failed to make a temporary file for " +
                                                   path("plain/file") + " because Not a directory");
  EXPECT_EQ(writeError(folder / "dir"),
            "Failed to replace " + path("dir") + " because it is not a regular file");
  EXPECT_EQ(writeError(folder / "pipe"),
            "Failed to replace " + path("pipe") + " because it is not a regular file");
  const auto readError = [](const fs::path& file) {
    return errorOf<FileError>([&] { readFile(file, 100); });
  };
  EXPECT_EQ(readError(folder / "dir"),
            "Failed to read " + path("dir") + " because it is not a regular file");
  EXPECT_EQ(readError(folder / "pipe"),
            "Failed to read " + path("pipe") + " because it is not a regular file");
  EXPECT_EQ(readError(folder / "plain/file"),
            "Failed to open " + path("plain/file") + " because Not a directory");
  put(folder / "big", std::string(101, 'x'));
  EXPECT_EQ(readError(folder / "big"),
            "Failed to read " + path("big") + " because it holds more than 100 bytes");
  put(folder / "big", std::string(100, 'x'));
  EXPECT_EQ(readFile(folder / "big", 100)->size(), 100u);
  // Endless, whatever its size says.
  EXPECT_THAT(readError("/dev/zero"), HasSubstr("not a regular file"));
}

TEST(AtomicFile, AnUnwritableFolderKeepsTheOldFile) {
  const TemporaryFolder folder;
  put(folder / "a", "old");
  fs::permissions(folder.path(), fs::perms(0555));
  constexpr uid_t nobody = 65534;
  const bool isRoot = ::geteuid() == 0; // who may write everywhere
  ASSERT_TRUE(!isRoot || ::seteuid(nobody) == 0);
  const auto error = writeError(folder / "a");
  ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
  EXPECT_THAT(error, HasSubstr("Permission denied"));
  EXPECT_EQ(contents(folder / "a"), "old");
}

/// The file size limit stands in for a full disk: both stop a write in the middle.
TEST(AtomicFile, AFailedWriteLeavesTheOldFileAndNothingElse) {
  const TemporaryFolder folder;
  put(folder / "a", "old");
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  rlimit limited = before;
  limited.rlim_cur = 10'000;
  ::setrlimit(RLIMIT_FSIZE, &limited);
  const auto error = writeError(folder / "a", std::string(50'000, 'x'));
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error, "Failed to write the new contents of " + (folder / "a").string() +
                       " because File too large");
  EXPECT_EQ(contents(folder / "a"), "old");
  EXPECT_THAT(folder.names(), ElementsAre("a"));
}

TEST(AtomicFile, WhatKilledProcessesLeftIsCleanedUpInTime) {
  const TemporaryFolder folder;
  const auto put2HoursAgo = [&](const std::string& name) {
    put(folder / name, "x");
    fs::last_write_time(folder / name, fs::file_time_type::clock::now() - std::chrono::hours(2));
  };
  put2HoursAgo(".tavrin-old.tmp");
  put2HoursAgo(".tavrin-note");
  put2HoursAgo("other.tmp");
  put(folder / ".tavrin-new.tmp", "somebody is writing this now");
  writeFileAtomically(folder / "a", "1");
  EXPECT_THAT(folder.names(),
              UnorderedElementsAre("a", ".tavrin-note", "other.tmp", ".tavrin-new.tmp"));
}

TEST(AtomicFile, JSONDocuments) {
  const TemporaryFolder folder;
  const auto file = folder / "a.json";
  const auto document = JSONValue::parse(R"({"b":[1.0,1e400],"a":null})");
  writeJSONFile(file, document);
  EXPECT_EQ(contents(file), "{\n  \"a\": null,\n  \"b\": [\n    1.0,\n    1e400\n  ]\n}");
  EXPECT_EQ(readJSONFile(file), document);
  // Every shorter piece of it is a fault, never an empty document.
  const auto whole = contents(file);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    put(file, whole.substr(0, length));
    EXPECT_THAT(errorOf<FileError>([&] { readJSONFile(file); }),
                HasSubstr("Failed to read " + file.string() + " because "))
        << length;
  }
  const JSONValue big(std::string(JSONValue::maximumSize, 'x'));
  EXPECT_THAT(errorOf<FileError>([&] { writeJSONFile(folder / "big", big); }),
              HasSubstr("it would hold more than"));
  EXPECT_FALSE(fs::exists(folder / "big"));
}

} // namespace
} // namespace tavrin
