#pragma once

namespace tavrin {

/// Several lambdas as one, for `std::visit`.
template <class... F> struct Overloaded : F... { using F::operator()...; };
template <class... F> Overloaded(F...) -> Overloaded<F...>;

} // namespace tavrin
