#pragma once

class QPainter;
class QRectF;

namespace tavrin {

/// Marks over the picture of a tile, which fills `picture`. `painter` smooths edges.

/// The tile asks for attention.
void paintAttentionRing(QPainter& painter, const QRectF& picture);
/// What comes next goes to this tile: a drop, or a key.
void paintAccentRing(QPainter& painter, const QRectF& picture);
/// A drop would be a copy.
void paintCopySign(QPainter& painter, const QRectF& picture);
/// The tile does not take what is dragged over it.
void paintRefusal(QPainter& painter, const QRectF& picture);

} // namespace tavrin
