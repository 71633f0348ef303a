#include "TavrinWidgetsUI/Emoji/EmojiGlyphs.h"

#include <QPainter>
#include <algorithm>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb-ft.h>

namespace tavrin {

struct EmojiRasteriser::Font {
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  hb_font_t* shaper = nullptr;
  hb_buffer_t* buffer = nullptr;

  Font() = default;
  Font(const Font&) = delete;
  Font& operator=(const Font&) = delete;
  ~Font() {
    hb_buffer_destroy(buffer);
    hb_font_destroy(shaper);
    if (face != nullptr)
      FT_Done_Face(face);
    if (library != nullptr)
      FT_Done_FreeType(library);
  }

  bool open(const char* file, int index) {
    if (FT_Init_FreeType(&library) != 0 || FT_New_Face(library, file, index, &face) != 0 ||
        !FT_HAS_COLOR(face))
      return false;
    selectSize();
    shaper = hb_ft_font_create_referenced(face);
    buffer = hb_buffer_create();
    return hb_buffer_allocation_successful(buffer) != 0;
  }

  /// The largest of the pictures that the font holds; where it holds outlines, as large as theirs.
  void selectSize() {
    constexpr unsigned outlineSize = 128;
    if (!FT_HAS_FIXED_SIZES(face)) {
      FT_Set_Pixel_Sizes(face, 0, outlineSize);
      return;
    }
    int best = 0;
    for (int i = 1; i < face->num_fixed_sizes; ++i)
      if (face->available_sizes[i].height > face->available_sizes[best].height)
        best = i;
    FT_Select_Size(face, best);
  }

  QImage glyph(hb_codepoint_t index) const {
    if (FT_Load_Glyph(face, index, FT_LOAD_COLOR | FT_LOAD_RENDER) != 0)
      return {};
    const FT_Bitmap& bitmap = face->glyph->bitmap;
    if (bitmap.pixel_mode != FT_PIXEL_MODE_BGRA || bitmap.width == 0 || bitmap.rows == 0)
      return {};
    return QImage(bitmap.buffer, static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows),
                  bitmap.pitch, QImage::Format_ARGB32_Premultiplied)
        .copy();
  }
};

namespace {

/// A picture in the middle of a square, its proportions kept.
QImage fitted(const QImage& image, int side) {
  const QImage small = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
  QImage square(side, side, QImage::Format_ARGB32_Premultiplied);
  square.fill(Qt::transparent);
  QPainter painter(&square);
  painter.drawImage((side - small.width()) / 2, (side - small.height()) / 2, small);
  return square;
}

} // namespace

EmojiRasteriser::EmojiRasteriser() {
  FcPattern* wanted = FcPatternCreate();
  FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>("emoji"));
  FcPatternAddBool(wanted, FC_COLOR, FcTrue);
  FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
  FcDefaultSubstitute(wanted);
  FcResult result = FcResultMatch;
  FcPattern* match = FcFontMatch(nullptr, wanted, &result);
  FcPatternDestroy(wanted);
  if (match == nullptr)
    return;
  FcChar8* file = nullptr;
  int index = 0;
  FcPatternGetInteger(match, FC_INDEX, 0, &index);
  if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) {
    auto font = std::make_unique<Font>();
    if (font->open(reinterpret_cast<const char*>(file), index))
      font_ = std::move(font);
  }
  FcPatternDestroy(match);
}

EmojiRasteriser::~EmojiRasteriser() = default;

QImage EmojiRasteriser::image(const std::string& emoji, int side) {
  constexpr unsigned mostGlyphs = 4;
  if (!font_ || emoji.empty() || side <= 0)
    return {};
  hb_buffer_t* buffer = font_->buffer;
  hb_buffer_reset(buffer);
  hb_buffer_add_utf8(buffer, emoji.data(), static_cast<int>(emoji.size()), 0, -1);
  hb_buffer_guess_segment_properties(buffer);
  hb_shape(font_->shaper, buffer, nullptr, 0);
  unsigned count = 0;
  const hb_glyph_info_t* glyphs = hb_buffer_get_glyph_infos(buffer, &count);
  std::vector<QImage> parts;
  int width = 0;
  int height = 0;
  for (unsigned i = 0; i < std::min(count, mostGlyphs); ++i) {
    if (glyphs[i].codepoint == 0)
      return {};
    const QImage part = font_->glyph(glyphs[i].codepoint);
    if (part.isNull())
      continue;
    width += part.width();
    height = std::max(height, part.height());
    parts.push_back(part);
  }
  if (parts.empty())
    return {};
  if (parts.size() == 1)
    return fitted(parts.front(), side);
  // A sequence that the font does not join stands side by side.
  QImage row(width, height, QImage::Format_ARGB32_Premultiplied);
  row.fill(Qt::transparent);
  QPainter painter(&row);
  int x = 0;
  for (const QImage& part : parts) {
    painter.drawImage(x, 0, part);
    x += part.width();
  }
  painter.end();
  return fitted(row, side);
}

} // namespace tavrin
