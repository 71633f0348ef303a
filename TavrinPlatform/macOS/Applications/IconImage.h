#pragma once

#import <AppKit/AppKit.h>

#include <QImage>

namespace tavrin {

/// A square of `pixels`, drawn from the representation nearest to it; a null image where there is
/// none. From any thread.
QImage makeImage(NSImage* _Nullable image, int pixels);

} // namespace tavrin
