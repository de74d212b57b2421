#pragma once

namespace cq {

// A whole number from low to high, both ends possible.
int RandomNumberBetween(int low, int high);

} // namespace cq
