#include "TavrinWidgetsUI/Files/FileActions.h"

#include "TavrinCore/Base/FileURL.h"
#include "TavrinCore/Text/PictureFormat.h"
#include "TavrinPlatform/Files/FileBeginning.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelItems.h"
#include "TavrinWidgetsUI/Kit/Pictures/Thumbnail.h"

#include <QBuffer>
#include <limits>

namespace tavrin {

namespace {

constexpr std::size_t longestPicture = 64 * 1024 * 1024;

Pasteboard::Format offered(const char* type, std::string_view bytes) {
  return {type, std::make_shared<const Data>(Data::fromText(bytes)), bytes.size()};
}

std::vector<Pasteboard::Format> asFiles(const std::vector<std::filesystem::path>& files) {
  return {offered(Pasteboard::filesType, uriList(files))};
}

/// Empty where it is no picture.
std::string asPNG(const std::filesystem::path& file) {
  auto bytes = readBeginning(file, longestPicture + 1);
  if (!bytes || bytes->size() > longestPicture)
    return {};
  if (pictureFormat(*bytes) == "png")
    return std::move(*bytes);
  const QImage picture = thumbnail(*bytes, std::numeric_limits<short>::max());
  QByteArray encoded;
  QBuffer buffer(&encoded);
  if (picture.isNull() || !picture.save(&buffer, "PNG"))
    return {};
  return encoded.toStdString();
}

} // namespace

void FileActions::copy(const std::vector<std::filesystem::path>& files) {
  if (!files.empty())
    pasteboard_.write(asFiles(files));
}

void FileActions::copyPicture(const std::filesystem::path& file) {
  const auto formats = std::make_shared<std::vector<Pasteboard::Format>>();
  runLoop_.background(
      [file, formats] {
        *formats = asFiles({file});
        if (const std::string bytes = asPNG(file); !bytes.empty())
          formats->insert(formats->begin(), offered(Pasteboard::pngType, bytes));
      },
      alive_, [this, formats] { pasteboard_.write(std::move(*formats)); });
}

void FileActions::moveToTrash(const std::filesystem::path& file,
                              std::function<void(bool isDone)> done) {
  const auto isDone = std::make_shared<bool>(false);
  runLoop_.background([&files = files_, file, isDone] { *isDone = files.moveToTrash(file); },
                      alive_, [isDone, done = std::move(done)] { done(*isDone); });
}

void FileActions::restoreFromTrash(const std::filesystem::path& file,
                                   std::function<void(bool isDone)> done) {
  const auto isDone = std::make_shared<bool>(false);
  runLoop_.background([&files = files_, file, isDone] { *isDone = files.restoreFromTrash(file); },
                      alive_, [isDone, done = std::move(done)] { done(*isDone); });
}

} // namespace tavrin
