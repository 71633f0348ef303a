#include "TavrinCommand/Completers.h"
#include "TavrinCommand/Widgets/WidgetCommands.h"
#include "TavrinCore/Kinds/Bookmarks/BookmarkFiles.h"
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
  return count == 1 ? one : fmt::format(fmt::runtime(many), count);
}

const BookmarkSettings& bookmarksOf(const DockWidget& widget) {
  const auto* settings = widget.kind.get<BookmarkSettings>();
  if (settings == nullptr)
    throw HostError(ExitCode::refusedValue,
                    fmt::format("\"{}\" is no widget of bookmarks", printable(widget.name)));
  return *settings;
}

BookmarkImport readFrom(const std::string& file) {
  const auto text = readFile(std::filesystem::absolute(file), largestFile);
  if (!text)
    throw HostError(ExitCode::notFound, fmt::format("there is no file \"{}\"", printable(file)));
  auto read = readBookmarks(*text);
  if (!read)
    throw HostError(ExitCode::refusedValue,
                    fmt::format("\"{}\" holds no bookmarks; export them from the browser as HTML, "
                                "or as a backup in JSON",
                                printable(file)));
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
      throw HostError(ExitCode::notFound, fmt::format("\"{}\" is gone", printable(reference)));
    BookmarkSettings settings = bookmarksOf(*widget);
    const auto result = mergeBookmarks(settings, read.found);
    widget->kind = settings;
    store.update(*widget);
    return result;
  });
  context.say(counted(merge.added, "One link was added.", "{} links were added."));
  if (merge.known > 0)
    context.remark(
        counted(merge.known, "One link was there already.", "{} links were there already."));
  if (read.refused > 0)
    context.remark(counted(read.refused, "One link was left out: it is no address of the web.",
                           "{} links were left out: they are no addresses of the web."));
  if (merge.left > 0)
    context.remark(counted(merge.left, "One link was left out: there is room for 500.",
                           "{} links were left out: there is room for 500."));
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
  context.say(fmt::format("Written to \"{}\".", printable(file)));
}

} // namespace

void addBookmarkCommands(CLI::App& group, CommandContext& context) {
  auto reference = std::make_shared<std::string>();
  auto file = std::make_shared<std::string>();
  auto* importing = group.add_subcommand("import", "Add a browser's bookmarks to a widget");
  context.complete(importing->add_option("NAME", *reference, "The widget")->required(),
                   completeWidgets(context));
  importing->add_option("FILE", *file, "What the browser exported: HTML, or a backup in JSON")
      ->required();
  importing->callback([&context, reference, file] { importBookmarks(context, *reference, *file); });
  CommandContext::examples(*importing,
                           {{"tavrin widgets import Links bookmarks.html", "from any browser"},
                            {"tavrin widgets import Links ~/.config/chromium/Default/Bookmarks",
                             "as Chromium keeps them"}});

  auto* exporting = group.add_subcommand("export", "Write a widget's bookmarks for a browser");
  context.complete(exporting->add_option("NAME", *reference, "The widget")->required(),
                   completeWidgets(context));
  exporting->add_option("FILE", *file, "Otherwise they are printed");
  exporting->callback([&context, reference, file] { exportBookmarks(context, *reference, *file); });
  CommandContext::examples(
      *exporting, {{"tavrin widgets export Links bookmarks.html", "to be imported by a browser"}});
}

} // namespace tavrin
