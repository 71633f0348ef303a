#include "TavrinPlatform/Linux/Wayland/DataControlReader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace tavrin {

namespace {

/// Without an answer, or without the next piece.
constexpr std::chrono::milliseconds patience{1500};
constexpr std::chrono::seconds longestFormat{6};
/// Copies whose reading is under way at the same time.
constexpr std::size_t mostReadings = 32;

} // namespace

void DataControlReader::begin(std::int64_t changeCount, zwlr_data_control_offer_v1* offer,
                              std::vector<std::string> types, bool isDoubtful) {
  const auto now = std::chrono::steady_clock::now();
  // Whoever has been replaced is given the time of one piece.
  for (auto& reading : readings_)
    for (auto& stream : reading.streams)
      stream.last = std::min(stream.last, now + patience);
  if (readings_.size() >= mostReadings) {
    for (auto& stream : readings_.front().streams)
      stream.isLate = true;
    proceed();
  }
  Reading& reading = readings_.emplace_back();
  // The protocol gives a copy no name that others see, too.
  reading.plan.begin(changeCount, {}, limits_);
  reading.plan.offered(std::move(types), isDoubtful);
  for (const auto& wish : reading.plan.wishes()) {
    Pipe pipe = Pipe::make();
    Stream& stream = reading.streams.emplace_back();
    stream.bound = reading.plan.bound(wish);
    stream.isImage = wish.isImage();
    stream.deadline = now + patience;
    stream.last = now + longestFormat;
    stream.isLate = !pipe.reading;
    if (!pipe.reading)
      continue;
    ::fcntl(pipe.reading.number(), F_SETFL, O_NONBLOCK);
    zwlr_data_control_offer_v1_receive(offer, wish.target.c_str(), pipe.writing.number());
    stream.end = std::move(pipe.reading);
  }
}

void DataControlReader::add(Pasteboard::Capture capture) {
  readings_.emplace_back().known = std::move(capture);
  proceed();
}

void DataControlReader::watch(std::vector<pollfd>& descriptors) const {
  for (const auto& reading : readings_)
    for (const auto& stream : reading.streams)
      if (stream.end)
        descriptors.push_back({stream.end.number(), POLLIN, 0});
}

/// One piece at a time, so that nobody who sends without end keeps the others waiting.
void DataControlReader::read(Stream& stream) {
  std::array<char, 64 * 1024> piece;
  const auto count = ::read(stream.end.number(), piece.data(), piece.size());
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
    stream.isLate = std::chrono::steady_clock::now() >= std::min(stream.deadline, stream.last);
  } else if (count <= 0) {
    stream.end.close();
  } else {
    const auto length = static_cast<std::size_t>(count);
    const std::size_t room = stream.bound - std::min(stream.bound, stream.bytes.size());
    stream.bytes.append(piece.data(), std::min(room, length));
    stream.size += length;
    const auto now = std::chrono::steady_clock::now();
    stream.deadline = now + patience;
    stream.isLate = now >= stream.last;
    if (stream.size > stream.bound && (!stream.isImage || stream.size > CapturePlan::mostCounted))
      stream.end.close();
  }
}

bool DataControlReader::advance(Reading& reading) {
  if (reading.known)
    return true;
  while (reading.plan.wish() != nullptr) {
    Stream& stream = reading.streams.front();
    if (stream.end && !stream.isLate)
      return false;
    if (stream.isLate)
      reading.plan.missed();
    else
      reading.plan.arrived(std::move(stream.bytes), stream.size);
    reading.streams.pop_front();
  }
  return true;
}

void DataControlReader::proceed() {
  for (auto& reading : readings_)
    for (auto& stream : reading.streams)
      if (stream.end && !stream.isLate)
        read(stream);
  while (!readings_.empty() && advance(readings_.front())) {
    Reading reading = std::move(readings_.front());
    readings_.pop_front();
    done_(reading.known ? std::move(*reading.known) : reading.plan.finish());
  }
}

std::optional<DataControlReader::Time> DataControlReader::deadline() const {
  std::optional<Time> first;
  for (const auto& reading : readings_)
    for (const auto& stream : reading.streams)
      if (const Time due = std::min(stream.deadline, stream.last);
          stream.end && !stream.isLate && (!first || due < *first))
        first = due;
  return first;
}

} // namespace tavrin
