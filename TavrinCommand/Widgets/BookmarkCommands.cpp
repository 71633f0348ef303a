#include "TavrinCommand/Base/Completers.h"
#include "TavrinCommand/Widgets/WidgetCommands.h"
#include "TavrinCore/Kinds/Bookmarks/BookmarkFiles.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinHost/Widgets/WidgetLibrary.h"
#include "TavrinPlatform/Files/AtomicFile.h"

#include <CLI/App.hpp>
#include <filesystem>
#include <fmt/format.h>

namespace tavrin {
namespace {

constexpr std::size_t largestFile = 64 * 1024 * 1024;

/// `one` or `many`, which has a place for the number.
std::string counted(std::size_t count, const char* one, const char* many) {
  return plural(one, many, static_cast<long long>(count));
}

const BookmarkSettings& bookmarksOf(const DockWidget& widget) {
  const auto* settings = widget.kind.get<BookmarkSettings>();
  if (settings == nullptr)
    throw HostError(ExitCode::refusedValue, translated("\"{name}\" is no widget of bookmarks",
                                                       {{"name", printable(widget.name)}}));
  return *settings;
}

BookmarkImport readFrom(const std::string& file) {
  const auto text = readFile(std::filesystem::absolute(file), largestFile);
  if (!text)
    throw HostError(ExitCode::notFound,
                    translated("there is no file \"{file}\"", {{"file", printable(file)}}));
  auto read = readBookmarks(*text);
  if (!read)
    throw HostError(
        ExitCode::refusedValue,
        translated("\"{file}\" holds no bookmarks; export them from the browser as HTML, "
                   "or as a backup in JSON",
                   {{"file", printable(file)}}));
  return *std::move(read);
}

void importBookmarks(CommandContext& context, const std::string& reference,
                     const std::string& file) {
  WidgetLibrary library(context);
  const auto id = library.find(reference).id;
  bookmarksOf(library.find(reference));
  const auto read = readFrom(file);
  const auto merge = library.change([&](WidgetStore& store) {
    auto widget = store.widget(id);
    if (!widget)
      throw HostError(ExitCode::notFound,
                      translated("\"{reference}\" is gone", {{"reference", printable(reference)}}));
    BookmarkSettings settings = bookmarksOf(*widget);
    const auto result = mergeBookmarks(settings, read.found);
    widget->kind = settings;
    store.update(*widget);
    return result;
  });
  context.say(counted(merge.added, "One link was added.", "{count} links were added."));
  if (merge.known > 0)
    context.remark(
        counted(merge.known, "One link was there already.", "{count} links were there already."));
  if (read.refused > 0)
    context.remark(counted(read.refused, "One link was left out: it is no address of the web.",
                           "{count} links were left out: they are no addresses of the web."));
  if (merge.left > 0)
    context.remark(counted(merge.left, "One link was left out: there is room for 500.",
                           "{count} links were left out: there is room for 500."));
}

void exportBookmarks(CommandContext& context, const std::string& reference,
                     const std::string& file) {
  const WidgetLibrary library(context);
  const auto& widget = library.find(reference);
  const std::string page = bookmarksPage(bookmarksOf(widget), widget.name);
  if (file.empty() || file == "-") {
    context.say(page);
    return;
  }
  writeFileAtomically(std::filesystem::absolute(file), page);
  context.say(translated("Written to \"{file}\".", {{"file", printable(file)}}));
}

} // namespace

void addBookmarkCommands(CLI::App& group, CommandContext& context) {
  auto reference = std::make_shared<std::string>();
  auto file = std::make_shared<std::string>();
  auto* importing =
      group.add_subcommand("import", translated("Add a browser's bookmarks to a widget"));
  context.complete(importing->add_option("NAME", *reference, translated("The widget"))->required(),
                   completeWidgets(context));
  importing
      ->add_option("FILE", *file,
                   translated("What the browser exported: HTML, or a backup in JSON"))
      ->required();
  importing->callback([&context, reference, file] { importBookmarks(context, *reference, *file); });
  CommandContext::examples(
      *importing, {{"tavrin widgets import Links bookmarks.html", translated("from any browser")},
                   {"tavrin widgets import Links ~/.config/chromium/Default/Bookmarks",
                    translated("as Chromium keeps them")}});

  auto* exporting =
      group.add_subcommand("export", translated("Write a widget's bookmarks for a browser"));
  context.complete(exporting->add_option("NAME", *reference, translated("The widget"))->required(),
                   completeWidgets(context));
  exporting->add_option("FILE", *file, translated("Otherwise they are printed"));
  exporting->callback([&context, reference, file] { exportBookmarks(context, *reference, *file); });
  CommandContext::examples(*exporting, {{"tavrin widgets export Links bookmarks.html",
                                         translated("to be imported by a browser")}});
}

} // namespace tavrin
