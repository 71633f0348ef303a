#pragma once

namespace tavrin::test {

/// How many sounds were begun with the stand-in for the sound library, none of which ever ends.
int lastingSoundsBegun();

} // namespace tavrin::test
