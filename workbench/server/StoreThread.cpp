#include "StoreThread.h"

#include <atomic>
#include <condition_variable>
#include <exception>
#include <utility>

#include "Hresult.h"
#include "Owned.h"

namespace workbench {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

/// How long the end of a store waits for a call of the driver.
constexpr milliseconds timeout_at_exit{2000};

std::atomic<int> abandoned = 0;

milliseconds until(Clock::time_point end) {
  return std::max(milliseconds(0), std::chrono::duration_cast<milliseconds>(end - Clock::now()));
}

base::KernelHandle create_event() {
  base::KernelHandle event(CreateEventW(nullptr, FALSE, FALSE, nullptr));
  if (!event) base::throw_last_failure();
  return event;
}

}  // namespace

struct StoreThread::State {
  State(odbc::ConnectionString connection, ServerStoreOptions store_settings, ChangeId unsettled_change)
      : options(std::move(connection)), settings(std::move(store_settings)), unsettled(std::move(unsettled_change)) {
    // The thread may outlive the caller's copy.
    if (settings.copied) settings.copied = &copied.emplace(*settings.copied);
  }

  const odbc::ConnectionString options;
  ServerStoreOptions settings;
  std::optional<StoreCopy> copied;
  const ChangeId unsettled;
  const std::shared_ptr<CommitUnderWay> commit = std::make_shared<CommitUnderWay>();
  std::unique_ptr<DirectServerStore> store;  // of the thread

  std::mutex mutex;  // of what follows
  std::condition_variable wake;
  base::KernelHandle news = create_event();   // the task has ended, or reports its progress
  base::KernelHandle ended = create_event();  // the thread has
  Task task;
  bool busy = false;  // from when a task is given to its end
  std::exception_ptr failure;
  bool stopping = false;
  bool abandoned = false;
  bool has_ended = false;

  std::optional<std::pair<std::size_t, std::size_t>> progress;
  std::optional<bool> go_on;  // what `progress` returned

  std::optional<Clock::time_point> poll_began;
  bool changed = false;
  std::exception_ptr poll_failure;

  /// Runs `work` on the store, which is opened first, and returns what it throws.
  std::exception_ptr attempt(const Task& work) noexcept;
  void poll(Lock& lock);
  bool wait_for_reply(std::size_t done, std::size_t all);
};

std::exception_ptr StoreThread::State::attempt(const Task& work) noexcept {
  try {
    if (!store) store = std::make_unique<DirectServerStore>(options, settings, commit, unsettled);
    work(*store);
    return nullptr;
  } catch (...) {
    return std::current_exception();
  }
}

void StoreThread::State::poll(Lock& lock) {
  poll_began = Clock::now();
  lock.unlock();
  bool found = false;
  const std::exception_ptr poll_refused =
      attempt([&](DirectServerStore& polled) { found = polled.poll_for_changes(); });
  lock.lock();
  poll_began.reset();
  poll_failure = poll_refused;
  if (found) changed = true;
}

bool StoreThread::State::wait_for_reply(std::size_t done, std::size_t all) {
  Lock lock(mutex);
  if (abandoned) return false;
  go_on.reset();
  progress = {done, all};
  SetEvent(news.get());
  wake.wait(lock, [&] { return go_on || abandoned; });
  return !abandoned && *go_on;
}

StoreThread::StoreThread(odbc::ConnectionString options, ServerStoreOptions settings, const ChangeId& unsettled)
    : state_(std::make_shared<State>(std::move(options), std::move(settings), unsettled)),
      thread_([state = state_] { run_tasks(state); }) {}

StoreThread::~StoreThread() {
  if (!thread_.joinable()) return;
  {
    const Lock lock(state_->mutex);
    state_->stopping = true;
    state_->wake.notify_all();
  }
  const auto limit = std::min(timeout_at_exit, state_->settings.time_limit);
  if (WaitForSingleObject(state_->ended.get(), static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0)
    thread_.join();
  else
    abandon();
}

void StoreThread::run_tasks(const std::shared_ptr<State>& state) noexcept {
  const milliseconds interval = state->settings.poll_interval;
  Lock lock(state->mutex);
  const auto is_due = [&] { return state->task || state->stopping || state->abandoned; };
  for (;;) {
    // A server that refuses is not asked as often.
    if (interval.count() == 0)
      state->wake.wait(lock, is_due);
    else
      state->wake.wait_for(lock, state->poll_failure ? 4 * interval : interval, is_due);
    if (state->stopping || state->abandoned) break;
    const Task task = std::exchange(state->task, nullptr);
    if (!task) {
      state->poll(lock);
      continue;
    }
    lock.unlock();
    const std::exception_ptr failure = state->attempt(task);
    lock.lock();
    state->failure = failure;
    state->busy = false;
    SetEvent(state->news.get());
  }
  lock.unlock();
  state->store.reset();
  lock.lock();
  state->has_ended = true;
  if (state->abandoned) --abandoned;
  SetEvent(state->ended.get());
}

StoreThread::End StoreThread::run(Task task, ServerWait& wait, const schedule::Progress& progress) {
  const milliseconds limit = state_->settings.time_limit;
  Lock lock(state_->mutex);
  state_->task = std::move(task);
  state_->busy = true;
  ResetEvent(state_->news.get());
  state_->wake.notify_all();
  Clock::time_point end = Clock::now() + limit;
  bool waits = true;
  while (state_->busy && waits && Clock::now() < end) {
    lock.unlock();
    waits = wait.wait(state_->news.get(), until(end));
    lock.lock();
    if (state_->busy && forward_progress(lock, progress)) end = Clock::now() + limit;
  }
  if (!state_->busy) {
    const std::exception_ptr failure = std::exchange(state_->failure, nullptr);
    if (const std::exception_ptr thrown = std::exchange(thrown_by_progress_, nullptr)) std::rethrow_exception(thrown);
    if (failure) std::rethrow_exception(failure);
    return End::done;
  }
  return waits ? End::timed_out : End::cancelled;
}

/// Returns whether the task had reported something.
bool StoreThread::forward_progress(Lock& lock, const schedule::Progress& progress) {
  const auto reported = std::exchange(state_->progress, std::nullopt);
  if (!reported) return false;
  lock.unlock();
  bool go_on = false;
  try {
    go_on = progress(reported->first, reported->second);
  } catch (...) {
    thrown_by_progress_ = std::current_exception();
  }
  lock.lock();
  state_->go_on = go_on;
  state_->wake.notify_all();
  return true;
}

schedule::Progress StoreThread::report_progress() const {
  return [state = state_](std::size_t done, std::size_t all) { return state->wait_for_reply(done, all); };
}

std::optional<Commit> StoreThread::last_commit() const { return state_->commit->last(); }

std::optional<bool> StoreThread::take_news() {
  const Lock lock(state_->mutex);
  if (state_->poll_began && *state_->poll_began + state_->settings.time_limit < Clock::now()) return std::nullopt;
  if (const std::exception_ptr failure = std::exchange(state_->poll_failure, nullptr)) std::rethrow_exception(failure);
  return std::exchange(state_->changed, false);
}

std::optional<Commit> StoreThread::abandon() {
  {
    const Lock lock(state_->mutex);
    state_->abandoned = true;
    // It may have ended just after its end was waited for.
    if (!state_->has_ended) ++abandoned;
    state_->wake.notify_all();
  }
  thread_.detach();
  return state_->commit->abandon();
}

int abandoned_connections() noexcept { return abandoned; }

}  // namespace workbench
