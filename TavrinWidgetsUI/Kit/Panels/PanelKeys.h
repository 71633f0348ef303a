#pragma once

class QWidget;

namespace tavrin {

/// Left and Right on `from` are meant for `to`, such as a position beside a play button, while that
/// one can be used.
void passArrowKeys(QWidget& from, QWidget& to);

} // namespace tavrin
