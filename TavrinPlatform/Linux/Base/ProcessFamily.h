#pragma once

#include <functional>

namespace tavrin {

/// Slots started together are forked from one process that has loaded and relocated the libraries
/// and read the font configuration: the pages that this writes are then shared, and each slot
/// starts without doing it again. A slot started alone is the same program, a megabyte dearer.
///
///     TavrinSlot --family DESCRIPTOR PROGRAM LOG [PROGRAM LOG]...
///
/// The number of each slot's process, or 0 where it could not be forked, is written to DESCRIPTOR
/// as an int. Each PROGRAM is a link to the running program, in the bundle of one slot; what that slot prints
/// is appended to its LOG. To be called first thing in `main`. In each child `argc` and `argv`
/// become those of `PROGRAM --background`, and the answer is true; also when no family was asked
/// for. In the process that has forked them the answer is false, and `main` returns.
/// `prepare` does once, before the forks, what each of them would do.
bool joinFamily(int& argc, char**& argv, const std::function<void()>& prepare);

} // namespace tavrin
