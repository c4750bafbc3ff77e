#pragma once

#include <cstddef>
#include <string>

namespace faults_test {

/// What the page on faults says in a table below a heading: the `column`th number, counted from 0, of the row of a
/// scenario, or of the row "together". Throws `std::runtime_error` when it says nothing there.
std::size_t documented_number(const std::string& heading, const std::string& scenario, std::size_t column);

}  // namespace faults_test
