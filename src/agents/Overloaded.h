#pragma once

namespace vuro {

// Builds one visitor for std::visit out of a lambda per alternative.
template <typename... Lambdas>
struct Overloaded : Lambdas... {
    using Lambdas::operator()...;
};
template <typename... Lambdas>
Overloaded(Lambdas...) -> Overloaded<Lambdas...>;  // clang 14 doesn't deduce aggregates yet

}  // namespace vuro
