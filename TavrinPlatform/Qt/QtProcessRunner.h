#pragma once

#include "TavrinPlatform/ProcessRunner.h"

namespace tavrin {

/// Each child leads a process group of its own. A child that outlives its limit or its token is
/// asked to end, together with what it started, and killed when it has not after a moment.
class QtProcessRunner final : public ProcessRunner {
public:
  [[nodiscard]] TokenPtr run(ProcessRequest request,
                             std::function<void(const ProcessResult&)> done) override;
};

} // namespace tavrin
