#include "TavrinCore/Kinds/Bookmarks/BookmarkSettings.h"
#include "TavrinCore/Kinds/Collection/CollectionSettings.h"
#include "TavrinCore/Kinds/Files/FilesSettings.h"
#include "TavrinCore/Kinds/System/ClockSettings.h"
#include "Tests/Form/FormRig.h"

#include <QDir>
#include <QPixmap>

/// Writes a picture of every kind's form, light and dark: FormGallery FOLDER [SCALE].
int main(int argc, char** argv) {
  using namespace tavrin;
  if (argc > 2)
    qputenv("QT_SCALE_FACTOR", argv[2]);
  QApplication application(argc, argv);
  const QDir folder(argc > 1 ? argv[1] : ".");
  for (const bool isDark : {false, true})
    for (const auto& info : allKinds()) {
      auto kind = *freshKind(info.key, Date::fromUnixSeconds(1'772'362'800));
      if (auto* bookmarks = kind.get<BookmarkSettings>())
        bookmarks->bookmarks = {{"News", "https://example.org/news"}, {"", "https://example.org"}};
      if (auto* collection = kind.get<CollectionSettings>())
        collection->apps = {{"/usr/share/applications/mail.desktop", {}, "Mail", {}}};
      if (auto* files = kind.get<FilesSettings>())
        files->folders = {"/home/ann/Downloads", "/gone"};
      if (auto* clock = kind.get<ClockSettings>())
        clock->timeZoneID = "Asia/Tokyo";
      test::FormRig rig(kind, isDark);
      QPalette palette = rig.form.palette();
      rig.form.setAutoFillBackground(true);
      QApplication::processEvents();
      rig.form.grab().save(folder.filePath(
          QStringLiteral("%1-%2.png")
              .arg(QString::fromUtf8(info.key.data(), static_cast<qsizetype>(info.key.size())),
                   isDark ? QStringLiteral("dark") : QStringLiteral("light"))));
    }
  return 0;
}
