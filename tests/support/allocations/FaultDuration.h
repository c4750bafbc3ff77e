#pragma once

namespace test_support {

/// How long something is missing: for one call, or for every call from that one on.
enum class FaultDuration { once, lasting };

}  // namespace test_support
