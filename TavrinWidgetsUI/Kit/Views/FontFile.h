#pragma once

#include "TavrinWidgetsUI/Kit/Views/Text.h"

#include <QByteArray>
#include <QRawFont>

namespace tavrin {

/// The bytes of the upright face of exactly this family and weight, where it has a file to itself
/// and is drawn as it is; null for any other, and where the toolkit does not go by fontconfig
/// itself. From any thread. They are mapped, and stay for as long as the process lives.
///
/// The toolkit finds the same face by a list of all fonts, which it makes for each process: half a
/// kilobyte and five microseconds a font, of which a desktop may have some thousand.
QByteArray fontFile(const QString& family, FontWeight weight);

/// Whether `text` can be laid out with `face` alone: it has all characters, and they are of one
/// script. For each further one the toolkit keeps an engine, and forgets the one before.
bool canLayOut(const QRawFont& face, const QString& text);

/// Whether there is a font of that family, by the same short way where it leads there.
bool hasFontFamily(const QString& family);

} // namespace tavrin
