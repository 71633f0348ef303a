#include "TavrinWidgetsUI/Clipboard/ClipboardVault.h"

#include "Tests/Storage/TemporaryFolder.h"
#include "Tests/Support/FakePlatform.h"

#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

/// The history's words, its pictures and its key stand in the memory of the process where they have
/// to, and nowhere else: not in what a save or a load has given back, not on the stack.
namespace tavrin::test {
namespace {

/// Bytes to look for, which are kept in another form themselves.
class Needle {
public:
  explicit Needle(std::string_view bytes) {
    for (const char c : bytes)
      masked_ += static_cast<char>(c ^ mask);
  }
  std::size_t countIn(std::string_view memory) const {
    const char first = static_cast<char>(masked_[0] ^ mask);
    std::size_t found = 0;
    for (auto at = memory.find(first); at != std::string_view::npos;
         at = memory.find(first, at + 1))
      found += isAt(memory.substr(at)) ? 1 : 0;
    return found;
  }
  std::size_t length() const { return masked_.size(); }

private:
  static constexpr char mask = 0x5A;
  bool isAt(std::string_view memory) const {
    if (memory.size() < masked_.size())
      return false;
    for (std::size_t i = 0; i < masked_.size(); ++i)
      if ((memory[i] ^ mask) != masked_[i])
        return false;
    return true;
  }
  std::string masked_;
};

/// Looks through all that the process can write to.
class MemoryScan {
public:
  MemoryScan()
      : buffer_(static_cast<char*>(
            ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))),
        memory_(::open("/proc/self/mem", O_RDONLY | O_CLOEXEC)) {}
  ~MemoryScan() {
    ::munmap(buffer_, length);
    ::close(memory_);
  }
  MemoryScan(const MemoryScan&) = delete;
  MemoryScan& operator=(const MemoryScan&) = delete;

  std::size_t count(const Needle& needle) {
    std::size_t found = 0;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
      std::uintptr_t start = 0;
      std::uintptr_t end = 0;
      char access[5] = {};
      // What is larger belongs to a sanitizer.
      constexpr std::uintptr_t largest = std::uintptr_t{1} << 30;
      if (std::sscanf(line.c_str(), "%zx-%zx %4s", &start, &end, access) == 3 &&
          std::string_view(access).starts_with("rw") && end - start < largest &&
          line.find("/dev/") == std::string::npos)
        found += countBetween(start, end, needle);
    }
    return found;
  }

private:
  static constexpr std::size_t length = 1 << 20;

  std::size_t countBetween(std::uintptr_t at, std::uintptr_t end, const Needle& needle) {
    const auto own = reinterpret_cast<std::uintptr_t>(buffer_);
    std::size_t found = 0;
    while (at < end) {
      if (at >= own && at < own + length) {
        at = own + length;
        continue;
      }
      std::size_t piece = std::min(length, end - at);
      if (at < own)
        piece = std::min(piece, own - at);
      const ssize_t got = ::pread(memory_, buffer_, piece, static_cast<off_t>(at));
      if (got <= 0)
        break;
      const auto read = static_cast<std::size_t>(got);
      found += needle.countIn({buffer_, read});
      // What lies across the edge is found by the next piece.
      at += read > needle.length() && at + read < end ? read - needle.length() + 1 : read;
    }
    ::explicit_bzero(buffer_, length);
    return found;
  }

  char* buffer_;
  int memory_;
};

constexpr std::string_view base64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

class ClipboardMemory : public testing::Test {
protected:
  ClipboardMemory() {
    // The first call of a library's function writes the registers to the stack. Those calls are
    // made with other words.
    fill(word_);
    picture_.resize(24);
    vault_.save(history(), {}, now_);
    vault_.read();
    keychain_.secrets.clear();
    vault_.forget();

    fill(word_);
    words_ = std::make_unique<Needle>(std::string_view(word_, sizeof word_));
    char coded[sizeof word_];
    fill(coded);
    pictures_ = std::make_unique<Needle>(std::string_view(coded, sizeof coded));
    picture_ = Data::fromBase64({coded, sizeof coded})->bytes;
    ::explicit_bzero(coded, sizeof coded);
  }

  /// One character after the other, so that the word stands in no register.
  static void fill(volatile char (&word)[32]) {
    for (volatile char& c : word)
      c = base64Alphabet[static_cast<std::size_t>(std::rand()) % 62];
  }
  /// The word stands behind what the allocator itself writes into memory that is given back.
  std::string text(std::string_view before, std::string_view after = {}) const {
    constexpr std::string_view start = "which is long enough for the heap's own notes ";
    std::string made;
    made.reserve(before.size() + start.size() + sizeof word_ + after.size());
    made.append(before).append(start).append(word_, sizeof word_).append(after);
    return made;
  }
  static void add(ClipboardList& list, ClipboardItem item) {
    item.id = UUID::random();
    item.capturedAt = ISO8601Date{now_};
    list.push_back(std::make_shared<const ClipboardEntry>(std::move(item)));
  }
  ClipboardList history() const {
    ClipboardList list;
    ClipboardItem plain;
    plain.text = text("", std::string(5'000, '\x01'));
    plain.sourceAppName = text("Editor ");
    add(list, std::move(plain));
    ClipboardItem link;
    link.text = text("https://");
    link.ogTitle = text("a\n\"title\" ");
    link.ogDescription = text("Grüße ");
    link.ogImageData = Data{picture_};
    add(list, std::move(link));
    ClipboardItem file;
    file.kind = ClipboardItem::Kind::file;
    file.fileURL = text("file:///home/ada/", "%20x/y");
    add(list, std::move(file));
    ClipboardItem image;
    image.kind = ClipboardItem::Kind::image;
    image.imageData = Data{std::vector<std::uint8_t>(9'000, 7)};
    image.imageData->bytes.insert(image.imageData->bytes.end(), picture_.begin(), picture_.end());
    add(list, std::move(image));
    return list;
  }
  static constexpr std::size_t inHistory = 6;
  /// The test's own.
  static constexpr std::size_t here = 1;

  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer keeps what is given back, and more of the stack";
#endif
  }

  static constexpr Date now_ = Date::fromUnixSeconds(1'788'984'522);
  char word_[32];
  std::vector<std::uint8_t> picture_;
  std::unique_ptr<Needle> words_;
  std::unique_ptr<Needle> pictures_;
  MemoryScan scan_;
  TemporaryFolder folder_;
  FakeKeychain keychain_;
  ClipboardVault vault_{folder_ / "clipboard.json.enc", keychain_};
};

TEST_F(ClipboardMemory, HoldsNothingBesideTheHistory) {
  ASSERT_EQ(scan_.count(*words_), here) << "the test must see what it looks for";
  ClipboardList list = history();
  ASSERT_EQ(scan_.count(*words_), here + inHistory);
  ASSERT_FALSE(vault_.save(list, {}, now_).trouble);
  EXPECT_EQ(scan_.count(*words_), here + inHistory) << "a save leaves no copy";
  EXPECT_EQ(scan_.count(*pictures_), 0U) << "of a picture either";
  list.clear();
  EXPECT_EQ(scan_.count(*words_), here) << "nor do items that have gone";

  auto outcome = vault_.read();
  ASSERT_EQ(outcome.stored->size(), 4U);
  EXPECT_EQ(scan_.count(*words_), here + inHistory) << "a load leaves no copy";
  EXPECT_EQ(scan_.count(*pictures_), 0U);
  outcome.stored->clear();
  EXPECT_EQ(scan_.count(*words_), here);
}

TEST_F(ClipboardMemory, HoldsTheKeyWhereTheKeychainHasItOnly) {
  ASSERT_FALSE(vault_.save(history(), {}, now_).trouble);
  const auto halfKey = [this] { return keychain_.secrets.begin()->second.view().substr(16); };
  const Needle key(halfKey());
  EXPECT_EQ(scan_.count(key), 1U) << "after it was made";
  EXPECT_EQ(vault_.read().stored->size(), 4U);
  EXPECT_EQ(scan_.count(key), 1U) << "after it opened the file";
  ClipboardCrypto(keychain_).loadKey();
  EXPECT_EQ(scan_.count(key), 1U) << "after it was looked up";
  keychain_.secrets.begin()->second.bytes[31] ^= 1;
  EXPECT_TRUE(vault_.read().trouble);
  const Needle other(halfKey());
  EXPECT_EQ(scan_.count(other), 1U) << "after it did not fit";
}

} // namespace
} // namespace tavrin::test
