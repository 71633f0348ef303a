#include "TavrinWidgetsUI/Kit/Views/FontFile.h"

#include <QFile>
#include <QFontDatabase>
#include <QGuiApplication>
#include <fontconfig/fontconfig.h>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace tavrin {

namespace {

struct DestroyPattern {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DestroyPattern>;

const FcChar8* bytes(const QByteArray& text) {
  return reinterpret_cast<const FcChar8*>(text.constData());
}

bool toolkitAsksFontconfig() {
  const QString name = QGuiApplication::platformName();
  return name == u"xcb" || name.startsWith(u"wayland") || name == u"offscreen";
}

bool isCalled(FcPattern* face, const QString& family) {
  FcChar8* name = nullptr;
  for (int i = 0; FcPatternGetString(face, FC_FAMILY, i, &name) == FcResultMatch; ++i)
    if (!family.compare(QString::fromUtf8(reinterpret_cast<const char*>(name)),
                        Qt::CaseInsensitive))
      return true;
  return false;
}

bool isInteger(FcPattern* face, const char* property, int wanted) {
  int value = 0;
  return FcPatternGetInteger(face, property, 0, &value) == FcResultMatch && value == wanted;
}

bool isWeight(FcPattern* face, double wanted) {
  double value = 0;
  return FcPatternGetDouble(face, FC_WEIGHT, 0, &value) == FcResultMatch && value == wanted;
}

bool isTrue(FcPattern* face, const char* property) {
  FcBool value = FcFalse;
  return FcPatternGetBool(face, property, 0, &value) == FcResultMatch && value != FcFalse;
}

/// Slanted, widened or thickened by the configuration.
bool isChanged(FcPattern* face) {
  FcMatrix* matrix = nullptr;
  return isTrue(face, FC_EMBOLDEN) ||
         FcPatternGetMatrix(face, FC_MATRIX, 0, &matrix) == FcResultMatch;
}

/// Null where there is none.
QString pathOf(const QString& family, FontWeight weight) {
  const double wanted = FcWeightFromOpenTypeDouble(static_cast<double>(weight));
  const QByteArray name = family.toUtf8();
  const Pattern pattern(FcPatternCreate());
  FcPatternAddString(pattern.get(), FC_FAMILY, bytes(name));
  FcPatternAddDouble(pattern.get(), FC_WEIGHT, wanted);
  FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
  FcPatternAddInteger(pattern.get(), FC_WIDTH, FC_WIDTH_NORMAL);
  FcConfigSubstitute(nullptr, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  FcResult result = FcResultMatch;
  const Pattern face(FcFontMatch(nullptr, pattern.get(), &result));
  FcChar8* file = nullptr;
  const bool isIt = face && isCalled(face.get(), family) && isWeight(face.get(), wanted) &&
                    isInteger(face.get(), FC_SLANT, FC_SLANT_ROMAN) &&
                    isInteger(face.get(), FC_WIDTH, FC_WIDTH_NORMAL) &&
                    isInteger(face.get(), FC_INDEX, 0) && isTrue(face.get(), FC_SCALABLE) &&
                    !isTrue(face.get(), FC_VARIABLE) && !isChanged(face.get()) &&
                    FcPatternGetString(face.get(), FC_FILE, 0, &file) == FcResultMatch;
  return isIt ? QFile::decodeName(reinterpret_cast<const char*>(file)) : QString();
}

/// What was found, also that nothing was.
class Found {
public:
  QByteArray get(const QString& family, FontWeight weight) {
    const std::lock_guard lock(mutex_);
    const auto [place, isNew] = bytes_.try_emplace({family, weight});
    if (!isNew)
      return place->second;
    const QString path = pathOf(family, weight);
    if (path.isNull())
      return {};
    auto file = std::make_unique<QFile>(path);
    const uchar* start = file->open(QIODevice::ReadOnly) ? file->map(0, file->size()) : nullptr;
    if (start == nullptr)
      return {};
    place->second = QByteArray::fromRawData(reinterpret_cast<const char*>(start), file->size());
    file->close();
    files_.push_back(std::move(file));
    return place->second;
  }

private:
  std::mutex mutex_;
  std::map<std::pair<QString, FontWeight>, QByteArray> bytes_;
  /// Each keeps its map.
  std::vector<std::unique_ptr<QFile>> files_;
};

} // namespace

QByteArray fontFile(const QString& family, FontWeight weight) {
  // Never destroyed: threads of the pool may draw to the end.
  static auto* found = new Found;
  return toolkitAsksFontconfig() ? found->get(family, weight) : QByteArray();
}

bool canLayOut(const QRawFont& face, const QString& text) {
  auto script = QChar::Script_Common;
  for (const uint character : text.toUcs4()) {
    if (character != QChar::LineSeparator && !face.supportsCharacter(character))
      return false;
    const auto its = QChar::script(character);
    // The others are of the script they stand in.
    if (its <= QChar::Script_Common || its == script)
      continue;
    if (script != QChar::Script_Common)
      return false;
    script = its;
  }
  return true;
}

bool hasFontFamily(const QString& family) {
  return !fontFile(family, FontWeight::regular).isNull() || QFontDatabase::hasFamily(family);
}

} // namespace tavrin
