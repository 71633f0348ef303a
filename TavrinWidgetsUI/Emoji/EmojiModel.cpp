#include "TavrinWidgetsUI/Emoji/EmojiModel.h"

#include "TavrinPlatform/Files/AtomicFile.h"

namespace tavrin {
namespace {

constexpr std::size_t largestFile = 8 * 1024 * 1024;

std::string contents(const std::filesystem::path& file) {
  try {
    return readFile(file, largestFile).value_or("");
  } catch (const FileError&) {
    return {};
  }
}

} // namespace

std::vector<std::filesystem::path> EmojiSources::annotationFiles() const {
  std::vector<std::string> names;
  const auto add = [&](const std::string& name) {
    const bool isPlain = !name.empty() && name.find_first_not_of(
                                              "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                              "0123456789_") == std::string::npos;
    if (isPlain && std::find(names.begin(), names.end(), name) == names.end())
      names.push_back(name);
  };
  std::string locale = localeID.substr(0, localeID.find_first_of(".@"));
  while (!locale.empty()) {
    add(locale);
    // The data keep both written languages of Norway under one of their names.
    if (locale == "nb")
      add("no");
    const auto end = locale.rfind('_');
    locale = end == std::string::npos ? "" : locale.substr(0, end);
  }
  add("en");
  std::vector<std::filesystem::path> files;
  for (const auto& name : names)
    for (const char* part : {"annotations", "annotationsDerived"})
      files.push_back(folder / "cldr" / "common" / part / (name + ".xml"));
  return files;
}

EmojiTable EmojiSources::read() const {
  const std::string test = contents(folder / "emoji" / "emoji-test.txt");
  if (test.empty())
    return {};
  std::vector<std::string> annotations;
  for (const auto& file : annotationFiles())
    if (std::string xml = contents(file); !xml.empty())
      annotations.push_back(std::move(xml));
  return EmojiTable(test, annotations);
}

EmojiModel::EmojiModel(RunLoop& runLoop, EmojiSources sources)
    : runLoop_(runLoop), sources_(std::move(sources)), glyphs_(runLoop) {}

void EmojiModel::load() {
  if (state_ != State::unread)
    return;
  state_ = State::reading;
  alive_.renew();
  const auto table = std::make_shared<EmojiTable>();
  runLoop_.background([table, sources = sources_] { *table = sources.read(); }, alive_,
                      [this, table] {
                        state_ = State::read;
                        table_ = table;
                        if (onChange)
                          onChange();
                      });
}

void EmojiModel::release() {
  alive_.end();
  state_ = State::unread;
  table_ = std::make_shared<const EmojiTable>();
  glyphs_.release();
}

} // namespace tavrin
