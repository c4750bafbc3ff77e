#pragma once

namespace workbench {

/// Does what the arguments of this process ask for, and returns its exit code, one of `schedule::ExitCode`.
int run_program() noexcept;

}  // namespace workbench
