#pragma once

namespace vuro {

// Builds one visitor for std::visit out of a lambda per alternative.
template <typename... Lambdas>
struct Overloaded : Lambdas... {
    using Lambdas::operator()...;
};

}  // namespace vuro
