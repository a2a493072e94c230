#pragma once

#include <atomic>

namespace tbtest {

// The number of operator new calls in the foundation test program, so that a
// test can show that an operation allocates nothing.
long allocationCount();

}  // namespace tbtest
