#pragma once

namespace tavrin {

/// Tells which texts do not stand whole, on every tile at the sizes that docks have and on every
/// panel; how many. In the pseudo-language ellipses count, in all others what is past its edge.
int tellAllCut();

/// Tells which texts have a contrast of less than 4.5 on what they stand on, on every tile and on
/// every panel in four palettes, and the least of each; how many.
int tellContrast();

} // namespace tavrin
