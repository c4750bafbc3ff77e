#include <memory>
#include <mutex>
#include <thread>

#include "Depth.h"
#include "DeskWork.h"
#include "RandomCases.h"
#include "ServerTest.h"
#include "StoreWriter.h"
#include "WithinSeconds.h"

using namespace workbench;
using test_support::within_seconds;

namespace {

constexpr int workbenches = 20;

/// Twenty workbenches that change the rules and settings of one store.
class ManyWorkbenches : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    if (IsSkipped()) return;
    StoreContent content;
    for (int i = 1; i <= 5; ++i) content.rules.push_back({.name = L"rule-" + std::to_wstring(i)});
    store_ = schema_->open({.first_content = content});
    for (int i = 1; i <= 5; ++i) history_.add({.number = i, .revision = 1, .name = "rule-" + std::to_string(i)});
  }

  const int changes_ = test_support::repetitions(200, 20);
  test_support::RandomCases random_;
  std::shared_ptr<RuleStore> store_;
  DeskHistory history_;
};

TEST_F(ManyWorkbenches, ResultIsWhatTheyWereAcknowledged) {
  std::vector<std::vector<DeskChange>> acknowledged(workbenches);
  std::vector<std::jthread> threads;
  for (std::vector<DeskChange>& own : acknowledged)
    threads.emplace_back(
        [&, name = "workbench" + std::to_string(threads.size()), seed = static_cast<unsigned>(random_.bits())] {
          try {
            const auto store = schema_->open();
            const auto keep = [&](const DeskChange& change, bool is_acknowledged) {
              if (is_acknowledged) own.push_back(change);
            };
            DeskWorker(*store, name, seed, keep).work(changes_);
          } catch (const StoreError& error) {
            ADD_FAILURE() << "a workbench met " << error.what();
          }
        });
  threads.clear();
  for (const std::vector<DeskChange>& own : acknowledged) {
    EXPECT_EQ(own.size(), static_cast<std::size_t>(changes_));
    for (const DeskChange& change : own) history_.add(change);
  }
  history_.expect_content_of(*store_);
  EXPECT_TRUE(store_->poll_for_changes());
}

/// A workbench in a process of its own, and what it has said.
class Process {
 public:
  explicit Process(const std::wstring& arguments) : writer(arguments, L"desk_writer.exe") {}

  /// Whether it has saved something and goes on.
  bool is_at_work() {
    const std::scoped_lock lock(mutex_);
    return !acknowledged_.empty() && !killed && !writer.ends_within(0);
  }

  /// Adds what it was acknowledged, and what it had begun at its end.
  void add_to(DeskHistory& history) {
    listener_.join();
    for (const DeskChange& change : acknowledged_) history.add(change);
    if (begun_) history.add_unknown(*begun_);
  }

  StoreWriter writer;
  bool killed = false;

 private:
  void listen() {
    while (const auto line = writer.next_line()) {
      const DeskChange change = change_of(line->substr(1));
      const std::scoped_lock lock(mutex_);
      begun_.reset();
      if (line->starts_with('!'))
        acknowledged_.push_back(change);
      else
        begun_ = change;
    }
  }

  std::mutex mutex_;
  std::vector<DeskChange> acknowledged_;
  std::optional<DeskChange> begun_;  // a change that is not acknowledged
  std::jthread listener_{[this] { listen(); }};
};

TEST_F(ManyWorkbenches, NothingAcknowledgedIsLostWhileOneIsKilledEverySecond) {
  std::vector<std::unique_ptr<Process>> processes;
  const unsigned seed = static_cast<unsigned>(random_.bits() % 1'000'000);
  for (int i = 0; i < workbenches; ++i)
    processes.push_back(std::make_unique<Process>(schema_->name() + L' ' + std::to_wstring(seed + i) + L' ' +
                                                  std::to_wstring(changes_)));
  int killed = 0;
  for (; killed < workbenches / 2; ++killed) {
    Process* victim = nullptr;
    EXPECT_TRUE(within_seconds(60, [&] {
      const auto found = std::ranges::find_if(processes, [](const auto& process) { return process->is_at_work(); });
      if (found != processes.end()) victim = found->get();
      return victim ||
             std::ranges::all_of(processes, [](const auto& process) { return process->writer.ends_within(0); });
    }));
    if (!victim) break;
    victim->writer.kill();
    victim->killed = true;
    Sleep(1000);
  }
  EXPECT_GE(killed, 1);
  for (const auto& process : processes) {
    EXPECT_EQ(process->writer.exit_code(), process->killed ? StoreWriter::killed : 0u);
    process->add_to(history_);
  }
  history_.expect_content_of(*store_);
}

}  // namespace
