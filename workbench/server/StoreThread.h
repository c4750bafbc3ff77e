#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "DirectServerStore.h"

namespace workbench {

/// A thread that owns a store on a server and runs one task after the other on it. A driver may keep a thread for ever;
/// then the thread and its connection are abandoned, and end by themselves if the driver ever returns.
class StoreThread {
 public:
  /// What runs on the thread. It owns everything that it uses, because it may outlast its caller.
  using Task = std::function<void(DirectServerStore& store)>;

  enum class End {
    done,
    timed_out,  ///< the server was silent for too long
    cancelled,  ///< the user gave up
  };

  /// Begins the thread, which opens the store with its first task. With `unsettled`, it is not known whether the change
  /// with this id happened.
  StoreThread(odbc::ConnectionString options, ServerStoreOptions settings, const ChangeId& unsettled = {});

  /// Ends the thread, or abandons it when it does not end soon.
  ~StoreThread();
  StoreThread(const StoreThread&) = delete;
  StoreThread& operator=(const StoreThread&) = delete;

  /// Runs a task and lets `wait` wait for its end; throws what the task throws. `progress` is called here when the task
  /// calls `report_progress`. Unless the end is `done`, the thread must be abandoned.
  End run(Task task, ServerWait& wait, const schedule::Progress& progress = {});

  /// What a task on this thread gives to a work that takes long.
  schedule::Progress report_progress() const;

  /// The last commit that the thread began.
  std::optional<Commit> last_commit() const;

  /// Whether others have changed the store since the last call, as far as the thread has found out by itself. Throws
  /// why it could not. Never waits. Nothing when the thread has been asking the server for too long.
  std::optional<bool> take_news();

  /// Gives the thread and its connection up. Nothing is committed that was not about to be. Returns the last commit.
  std::optional<Commit> abandon();

 private:
  struct State;
  using Lock = std::unique_lock<std::mutex>;

  static void run_tasks(const std::shared_ptr<State>& state) noexcept;
  bool forward_progress(Lock& lock, const schedule::Progress& progress);

  std::shared_ptr<State> state_;
  std::exception_ptr thrown_by_progress_;
  std::thread thread_;
};

/// How many threads of stores, each with its connection, are given up and have not come back from their driver.
int abandoned_connections() noexcept;

}  // namespace workbench
