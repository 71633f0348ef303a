#pragma once

#include "TavrinPlatform/Platform.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tavrin::test {

class FakePasteboard final : public Pasteboard {
public:
  bool canObserve() const override { return observable; }
  TokenPtr observe(const Limits& newLimits, Observer newObserver) override {
    limits = newLimits;
    observer = std::move(newObserver);
    struct Observation final : Token {
      explicit Observation(FakePasteboard& board) : board(board) {}
      ~Observation() override { board.observer = {}; }
      FakePasteboard& board;
    };
    return std::make_unique<Observation>(*this);
  }
  /// Tells the observer of the own change at once.
  void write(std::vector<Format> formats) override {
    written.push_back(std::move(formats));
    ++changeCount;
    if (observer.captured)
      observer.captured({changeCount, {}, {}, true});
  }
  /// Somebody copies.
  void copy(const std::vector<std::pair<std::string, std::string>>& formats) {
    Capture capture{++changeCount, {}, {}, false, {}};
    if (namesCopies)
      capture.copyName = "copy " + std::to_string(changeCount);
    for (const auto& [type, bytes] : formats) {
      capture.types.push_back(type);
      const bool isImage = type.starts_with("image/");
      const auto kept = isImage ? bytes : bytes.substr(0, limits.textBytes);
      capture.formats.push_back({type,
                                 isImage && bytes.size() > limits.imageBytes
                                     ? nullptr
                                     : std::make_shared<const Data>(Data::fromText(kept)),
                                 bytes.size()});
    }
    if (observer.changed)
      observer.changed(changeCount);
    if (observer.captured)
      observer.captured(std::move(capture));
  }
  std::string writtenText() const {
    return written.empty() ? "" : std::string(written.back().front().data->view());
  }

  bool observable = true;
  bool namesCopies = true;
  Limits limits;
  Observer observer;
  std::int64_t changeCount = 0;
  std::vector<std::vector<Format>> written;
};

class FakeKeychain final : public Keychain {
public:
  std::optional<Data> find(const std::string& service, const std::string& account) override {
    refuse();
    const auto found = secrets.find(service + " " + account);
    return found == secrets.end() ? std::nullopt : std::optional(found->second);
  }
  void add(const std::string& service, const std::string& account, const Data& secret) override {
    refuse();
    secrets[service + " " + account] = secret;
  }
  std::map<std::string, Data> secrets;
  /// Not 0: every call fails with it.
  int status = 0;

private:
  void refuse() const {
    if (status != 0)
      throw KeychainError(status);
  }
};

/// Answers when the test says so.
class FakeColourSampler final : public ColourSampler {
public:
  TokenPtr pick(std::function<void(const ColourSample&)> newDone) override {
    ++picks;
    struct Pick final : Token {
      std::shared_ptr<int> alive = std::make_shared<int>();
    };
    auto token = std::make_unique<Pick>();
    done = [newDone = std::move(newDone),
            alive = std::weak_ptr(token->alive)](const ColourSample& sample) {
      if (alive.lock())
        newDone(sample);
    };
    return token;
  }
  std::function<void(const ColourSample&)> done;
  int picks = 0;
};

} // namespace tavrin::test
