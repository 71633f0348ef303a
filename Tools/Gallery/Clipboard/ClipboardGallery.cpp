#include "TavrinCore/Kinds/Clipboard/ClipboardSettings.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardPanelView.h"
#include "TavrinWidgetsUI/Clipboard/ClipboardViews.h"
#include "Tests/Support/FakePlatform.h"
#include "Tools/Gallery/Gallery.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QPainter>

namespace tavrin {
namespace {

Data picture(const QColor& from, const QColor& to, QSize size) {
  QImage image(size, QImage::Format_RGB32);
  QLinearGradient gradient(0, 0, size.width(), size.height());
  gradient.setColorAt(0, from);
  gradient.setColorAt(1, to);
  QPainter(&image).fillRect(image.rect(), gradient);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  image.save(&buffer, "PNG");
  return Data::fromText({bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

ClipboardList sample() {
  ClipboardList list;
  const auto add = [&](ClipboardItem item, const char* app, double ago, bool isPinned = false) {
    item.id = UUID::random();
    item.capturedAt = {galleryNow - ago};
    item.isPinned = isPinned;
    if (*app != 0)
      item.sourceAppName = app;
    list.push_back(std::make_shared<const ClipboardEntry>(std::move(item)));
  };
  add(ClipboardItem::ofText("The tide tables for March, and the ferry's two departures on Sunday"),
      "Firefox", 40);
  add(ClipboardItem::ofText("correctHorse7battery"), "KeePassXC", 300);
  add(ClipboardItem::ofImage(picture(QColor("#2E9BD6"), QColor("#F2603C"), {320, 200}), 84'213),
      "Screenshot", 900);
  add(ClipboardItem::ofFile("file:///home/ada/Documents/Harbour%20plan%20(final).pdf", 2'413'000),
      "Files", 4000, true);
  ClipboardItem link = ClipboardItem::ofText("https://www.quellby.dev/guide/tides");
  link.ogTitle = "Tides and how to read them";
  link.ogDescription = "Twice a day, but never at the same hour: a guide for walkers and sailors.";
  link.ogImageData = picture(QColor("#14506E"), QColor("#9BD6C0"), {128, 128});
  link.ogFetchedAt = {galleryNow - 4999};
  add(link, "Firefox", 5000);
  add(ClipboardItem::ofText("https://quellby.dev/guide/harbours"), "Firefox", 5100);
  add(ClipboardItem::ofImage(picture(Qt::white, QColor("#F4F4F6"), {300, 200}), 61'000),
      "Screenshot", 6000);
  add(ClipboardItem::ofImage(std::nullopt, 3'100'000), "GIMP", 90'000);
  add(ClipboardItem::ofText("for (const auto& entry : list)\n  total += entry.size();"), "Kate",
      190'000);
  add(ClipboardItem::ofText("Grüße aus Ærøskøbing, 你好, שלום"), "", 190'500);
  add(ClipboardItem::ofText(std::string(120'000, 'x')), "Terminal", 260'000);
  return list;
}

struct Rig {
  test::FakePlatform platform{galleryNow};
  LinkPreviewSource ogSource{
      {platform.loop, platform.fakeClock, [this]() -> HTTPClient& { return platform.fakeHTTP; }}};
  std::unique_ptr<ClipboardSource> source;
  std::unique_ptr<ClipboardModel> model;
};

enum class Show { list, empty, loading, nothingFound, trouble, unsupported, thousands };

GalleryPanel panelOf(const char* name, Show show) {
  return {name, clipboardTint, [show](const PanelAppearance& look) {
            static std::vector<std::unique_ptr<Rig>> kept;
            kept.push_back(std::make_unique<Rig>());
            Rig& rig = *kept.back();
            auto& platform = rig.platform;
            platform.fakePasteboard.observable = show != Show::unsupported;
            ClipboardSettings settings;
            settings.historyLimit = 20'000;
            const auto file = std::filesystem::temp_directory_path() /
                              ("tavrin-gallery-" + UUID::random().text());
            ClipboardList items;
            if (show == Show::list || show == Show::nothingFound || show == Show::trouble)
              items = sample();
            while (show == Show::thousands && items.size() < 10'000)
              for (const auto& entry : sample())
                items.push_back(entry);
            ClipboardVault(file, platform.fakeKeychain).save(items, settings, galleryNow);
            rig.source = std::make_unique<ClipboardSource>(
                ClipboardSource::Services{platform.fakeClock, platform.loop,
                                          platform.fakePasteboard, platform.fakeKeychain,
                                          platform.fakeWorkspace, rig.ogSource},
                file, settings);
            rig.model = std::make_unique<ClipboardModel>(
                DockWidget(UUID(), "Clipboard", 1, settings, 1), *rig.source);
            if (show != Show::loading)
              rig.source->start();
            platform.loop.runBackground();
            if (show == Show::trouble) {
              platform.fakeKeychain.status = Keychain::interactionNotAllowed;
              rig.source->togglePin(rig.model->items().front()->item.id);
              platform.loop.advance(1);
              platform.loop.runBackground();
            }
            std::filesystem::remove(file);
            if (show == Show::nothingFound)
              rig.model->setSearchText("zebra");
            auto* view = new ClipboardPanelView(
                look, *rig.model,
                {platform.loop, platform.fakeClock, [](const ClipboardItem&) {}, [] {}});
            // Painted once, so that the pictures are asked for and made.
            view->setAttribute(Qt::WA_DontShowOnScreen);
            view->show();
            view->grab();
            platform.loop.runBackground();
            return view;
          }};
}

} // namespace

GallerySheet clipboardGallery() {
  GallerySheet sheet;
  const auto show = [&](const char* name, const ClipboardReading& reading) {
    sheet.push_back(
        {name, 1, [reading](const TileSize& size) { return clipboardTileIcon(reading, size); }});
  };
  show("loading", {.hasRead = false});
  show("empty", {});
  show("one", {.count = 1, .unseen = 1});
  show("42", {.count = 42});
  show("200", {.count = 200, .unseen = 12});
  show("10000", {.count = 10'000, .unseen = 1234});
  show("1234", {.count = 1234});
  show("preview", {.count = 7, .unseen = 2, .preview = "The tide tables for March, and the ferry"});
  show("masked", {.count = 7, .preview = "••••••"});
  show("trouble", {.count = 7, .hasTrouble = true});
  return sheet;
}

GalleryPanels clipboardPanels() {
  return {panelOf("list", Show::list),          panelOf("empty", Show::empty),
          panelOf("loading", Show::loading),    panelOf("nothing found", Show::nothingFound),
          panelOf("trouble", Show::trouble),    panelOf("unsupported", Show::unsupported),
          panelOf("thousands", Show::thousands)};
}

const GalleryEntry clipboardEntries[] = {{"clipboard", clipboardGallery},
                                         {"clipboard-panels", clipboardPanels}};

} // namespace tavrin
