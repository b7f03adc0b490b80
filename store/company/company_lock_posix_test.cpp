// The company lock against other processes, started with fork.
#include "store/company/company_lock.h"

#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <new>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "base/file_util.h"
#include "base/temp_dir_testing.h"

namespace nv {
namespace {

const LockTime kMorning{Date{3, 7, 2025}, 9, 5, 1};
const LockTime kEvening{Date{12, 31, 1999}, 23, 59, 58};

// ---- Several processes ----

// Memory shared with forked children, holding one T.
template <typename T>
class Shared {
 public:
  Shared() {
    void* memory =
        ::mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory != MAP_FAILED) value_ = new (memory) T{};
  }
  ~Shared() {
    if (value_ != nullptr) ::munmap(value_, sizeof(T));
  }
  Shared(const Shared&) = delete;
  Shared& operator=(const Shared&) = delete;
  T* operator->() { return value_; }
  bool ok() const { return value_ != nullptr; }

 private:
  T* value_ = nullptr;
};

// Runs body(index) in `count` forked processes and returns their exit statuses (128 +
// signal for a killed one). Children report through exit codes and shared memory only.
std::vector<int> RunProcesses(int count, const std::function<int(int)>& body) {
  std::vector<pid_t> pids;
  for (int i = 0; i < count; ++i) {
    pid_t pid = ::fork();
    if (pid == 0) ::_exit(body(i));
    pids.push_back(pid);
  }
  std::vector<int> statuses;
  for (pid_t pid : pids) {
    int status = 0;
    if (pid < 0 || ::waitpid(pid, &status, 0) != pid) {
      statuses.push_back(-1);
    } else {
      statuses.push_back(WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status));
    }
  }
  return statuses;
}

// A worker runs until it has taken the lock `takes` times or its time is up, so that a
// scheduler favouring one process cannot use up the others' turns while it holds the lock.
class WorkerBudget {
 public:
  WorkerBudget(int takes, std::chrono::milliseconds time)
      : takes_left_(takes), until_(std::chrono::steady_clock::now() + time) {}
  bool more() const { return takes_left_ > 0 && std::chrono::steady_clock::now() < until_; }
  void Took() { --takes_left_; }

 private:
  int takes_left_;
  std::chrono::steady_clock::time_point until_;
};

std::string WorkerName(int index) {
  return "WORKER " + std::to_string(index);
}

// A refusal must name some other worker, or nobody ("*") when the line could not be read.
bool IsFairRefusal(const std::string& line, int self) {
  if (line.empty()) return false;
  std::string name = ParseLockHolderLine(line).name;
  return name == "*" || (name.rfind("WORKER ", 0) == 0 && name != WorkerName(self));
}

class CompanyLockProcesses : public ::testing::TestWithParam<int> {};

// That two opens of the file never hold its lock at once, whatever the timing, is the lock
// file's own test (base/lock_file_test); here the company lock's Take on top of it.
// In each round the last winner lets go at a random moment (or keeps the lock) while the
// others keep trying: exactly one must end up holding it, never none and never two.
TEST_P(CompanyLockProcesses, EachRoundHasExactlyOneWinner) {
  constexpr int kRounds = 150;
  struct Board {
    std::atomic<int> arrived;
    std::atomic<int> winners[kRounds];
    std::atomic<int> unfair;
  };
  Shared<Board> board;
  ASSERT_TRUE(board.ok());
  TempDir dir;
  const std::string path = CompanyLockPath(dir.path(), "ACME");
  const int workers = GetParam();
  using Clock = std::chrono::steady_clock;

  // Waits until all workers have reached barrier `n`; false after five seconds.
  auto barrier = [&](int n) {
    board->arrived++;
    auto until = Clock::now() + std::chrono::seconds(5);
    while (board->arrived.load() < n * workers) {
      if (Clock::now() > until) return false;
      ::sched_yield();
    }
    return true;
  };
  std::vector<int> statuses = RunProcesses(workers, [&](int self) {
    std::mt19937 random(2000 + self);
    CompanyInUseLock lock;
    for (int round = 0; round < kRounds; ++round) {
      if (!barrier(2 * round + 1)) return 3;
      if (lock.held() && random() % 4 != 0) {
        ::usleep(random() % 40);
        lock.Release();
      } else if (random() % 2 == 0) {
        ::usleep(random() % 30);
      }
      auto until = Clock::now() + std::chrono::seconds(5);
      for (;;) {
        std::string holder = lock.Take(path, WorkerName(self), kMorning);
        if (holder.empty()) {
          board->winners[round]++;
          break;
        }
        if (!IsFairRefusal(holder, self)) board->unfair++;
        if (board->winners[round].load() > 0) break;
        if (Clock::now() > until) return 4;  // nobody got it
        ::sched_yield();
      }
      if (!barrier(2 * round + 2)) return 3;
    }
    return 0;
  });
  for (int status : statuses) EXPECT_EQ(status, 0);
  for (int round = 0; round < kRounds; ++round) {
    EXPECT_EQ(board->winners[round].load(), 1) << "round " << round;
  }
  EXPECT_EQ(board->unfair.load(), 0);
}

INSTANTIATE_TEST_SUITE_P(Workers, CompanyLockProcesses, ::testing::Values(2, 4));

// A third process keeps deleting the lock file while two workers take and release it. The
// deletion voids a holder's claim, but a worker must still never be told it holds a lock
// whose file carries someone else's line, nor be refused with no holder line at all.
TEST(CompanyLockProcessesWithDeleter, TakingSurvivesTheFileVanishing) {
  struct Board {
    std::atomic<int> workers_done, takes, faults;
  };
  Shared<Board> board;
  ASSERT_TRUE(board.ok());
  TempDir dir;
  const std::string path = CompanyLockPath(dir.path(), "ACME");

  std::vector<int> statuses = RunProcesses(3, [&](int self) {
    std::mt19937 random(3000 + self);
    if (self == 2) {
      while (board->workers_done.load() < 2) {
        ::unlink(path.c_str());
        ::usleep(random() % 200);
      }
      return 0;
    }
    CompanyInUseLock lock;
    const std::string own_line =
        WorkerName(self) + std::string(18, ' ') + "03/07/2025 09:05:01\r\n";
    for (WorkerBudget budget(60, std::chrono::seconds(3)); budget.more();) {
      std::string holder = lock.Take(path, WorkerName(self), kMorning);
      if (!holder.empty()) {
        if (!IsFairRefusal(holder, self)) board->faults++;
        ::usleep(random() % 50);
        continue;
      }
      board->takes++;
      budget.Took();
      // Read only what is certainly our own file: still ours before and after the read.
      if (!lock.lost()) {
        std::optional<std::string> content = ReadFileBytes(path);
        if (content && !lock.lost() && *content != own_line) board->faults++;
      }
      ::usleep(random() % 60);
      lock.Release();
    }
    board->workers_done++;
    return 0;
  });
  for (int status : statuses) EXPECT_EQ(status, 0);
  EXPECT_EQ(board->faults.load(), 0);
  EXPECT_GE(board->takes.load(), 50);

  CompanyInUseLock after;  // nothing is left holding it
  EXPECT_EQ(after.Take(path, "ALICE", kMorning), "");
}

TEST(CompanyLockProcessesCrash, KilledHoldersFileIsTakenOver) {
  struct Board {
    std::atomic<int> ready;
  };
  Shared<Board> board;
  ASSERT_TRUE(board.ok());
  TempDir dir;
  const std::string path = CompanyLockPath(dir.path(), "ACME");

  pid_t holder = ::fork();
  if (holder == 0) {
    CompanyInUseLock lock;
    board->ready = lock.Take(path, "CRASHED", kEvening).empty() ? 1 : 2;
    for (;;) ::pause();
  }
  ASSERT_GT(holder, 0);
  auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (board->ready.load() == 0 && std::chrono::steady_clock::now() < until) ::usleep(1000);
  ASSERT_EQ(board->ready.load(), 1);

  const std::string crashed_line = "CRASHED                   12/31/1999 23:59:58\r\n";
  CompanyInUseLock next;
  EXPECT_EQ(next.Take(path, "ALICE", kMorning), crashed_line);
  ASSERT_EQ(::kill(holder, SIGKILL), 0);
  int status = 0;
  ASSERT_EQ(::waitpid(holder, &status, 0), holder);
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(ReadFileBytes(path), crashed_line);  // left behind

  // Another process takes it over.
  std::vector<int> statuses = RunProcesses(1, [&](int) {
    CompanyInUseLock lock;
    if (!lock.Take(path, "BOB", kMorning).empty()) return 1;
    return ReadFileBytes(path) == "BOB                       03/07/2025 09:05:01\r\n" ? 0 : 2;
  });
  EXPECT_EQ(statuses, std::vector<int>{0});
  EXPECT_EQ(ReadFileBytes(path), std::nullopt);  // its normal exit released and deleted it
}

}  // namespace
}  // namespace nv
