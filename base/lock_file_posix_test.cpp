// Lock files against other processes, which fork makes cheaply here; the tests that hold
// on every platform are in lock_file_test.cpp.
#include "base/lock_file.h"

#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "base/temp_dir_testing.h"

namespace nv {
namespace {

// A forked process running `body` with a pipe each way; it ends with body's result.
class Child {
 public:
  explicit Child(const std::function<int(Child&)>& body) {
    int down[2];
    int up[2];
    if (::pipe(down) != 0 || ::pipe(up) != 0) return;
    pid_ = ::fork();
    if (pid_ == 0) {
      ::close(down[1]);
      ::close(up[0]);
      in_ = down[0];
      out_ = up[1];
      ::_exit(body(*this));
    }
    ::close(down[0]);
    ::close(up[1]);
    in_ = up[0];
    out_ = down[1];
  }
  ~Child() {
    if (pid_ > 0) {
      ::kill(pid_, SIGKILL);
      Wait();
    }
    if (in_ >= 0) ::close(in_);
    if (out_ >= 0) ::close(out_);
  }

  // The next byte from the other side; 0 on end of input or after five seconds.
  char Receive() {
    struct pollfd p = {in_, POLLIN, 0};
    char c = 0;
    if (::poll(&p, 1, 5000) != 1 || ::read(in_, &c, 1) != 1) return 0;
    return c;
  }
  void Send(char c) { (void)!::write(out_, &c, 1); }
  void CloseOutput() {
    ::close(out_);
    out_ = -1;
  }
  // Exit status of the child, or -1.
  int Wait() {
    int status = 0;
    pid_t pid = pid_;
    pid_ = -1;
    if (pid <= 0 || ::waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  }
  pid_t pid() const { return pid_; }

 private:
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
};

// A child that takes the lock, writes `content`, says 'R' (or 'F' on failure) and then
// answers commands: 'S' asks whether its file is stale ('Y'/'N'), 'X' releases and removes
// it ('D'); end of input ends it.
int HoldLock(Child& self, const std::string& path, const std::string& content) {
  LockFile lock;
  if (lock.TryAcquire(path) != LockStatus::kAcquired || !lock.WriteContent(content)) {
    self.Send('F');
    return 1;
  }
  self.Send('R');
  for (;;) {
    char c = self.Receive();
    if (c == 'S') self.Send(lock.IsStale() ? 'Y' : 'N');
    if (c == 'X') {
      lock.ReleaseAndRemove();
      self.Send('D');
    }
    if (c == 0) return 0;
  }
}

TEST(LockFile, OtherProcessIsShutOutUntilHolderExits) {
  TempDir dir;
  std::string path = dir.File("COMPANY1.LOK");
  Child holder([&](Child& self) { return HoldLock(self, path, "ALICE\r\n"); });
  ASSERT_EQ(holder.Receive(), 'R');

  LockFile mine;
  EXPECT_EQ(mine.TryAcquire(path), LockStatus::kHeldByOther);
  EXPECT_FALSE(mine.held());
  EXPECT_TRUE(LockFile::IsHeldByOther(path));
  EXPECT_EQ(LockFile::ReadContent(path), "ALICE\r\n");

  holder.CloseOutput();
  EXPECT_EQ(holder.Wait(), 0);
  EXPECT_FALSE(LockFile::IsHeldByOther(path));
  ASSERT_EQ(mine.TryAcquire(path), LockStatus::kAcquired);
  EXPECT_TRUE(mine.WriteContent("BOB\r\n"));
  EXPECT_EQ(LockFile::ReadContent(path), "BOB\r\n");  // shorter text: old bytes truncated
}

TEST(LockFile, KilledHolderFreesTheLock) {
  TempDir dir;
  std::string path = dir.File("X.LOK");
  Child holder([&](Child& self) { return HoldLock(self, path, "held"); });
  ASSERT_EQ(holder.Receive(), 'R');
  LockFile mine;
  EXPECT_EQ(mine.TryAcquire(path), LockStatus::kHeldByOther);
  ASSERT_EQ(::kill(holder.pid(), SIGKILL), 0);
  EXPECT_EQ(holder.Wait(), 128 + SIGKILL);
  EXPECT_EQ(mine.TryAcquire(path), LockStatus::kAcquired);
}

TEST(LockFile, DeletedFileIsTakenAgainAndHolderNoticesIt) {
  TempDir dir;
  std::string path = dir.File("X.LOK");
  Child holder([&](Child& self) { return HoldLock(self, path, "first"); });
  ASSERT_EQ(holder.Receive(), 'R');
  holder.Send('S');
  EXPECT_EQ(holder.Receive(), 'N');

  ASSERT_EQ(::unlink(path.c_str()), 0);  // a third party deletes the held file
  EXPECT_FALSE(LockFile::IsHeldByOther(path));
  LockFile mine;
  ASSERT_EQ(mine.TryAcquire(path), LockStatus::kAcquired);
  holder.Send('S');
  EXPECT_EQ(holder.Receive(), 'Y');

  // The old holder's removal must not take the new holder's file with it.
  holder.Send('X');
  EXPECT_EQ(holder.Receive(), 'D');
  EXPECT_FALSE(mine.IsStale());
  EXPECT_TRUE(LockFile::IsHeldByOther(path));
}

// Processes take and drop the lock at random moments, often deleting the file as they let
// go, which is the moment a careless lock lets two holders in.
TEST(LockFile, ManyProcessesNeverHoldAtOnce) {
  struct Shared {
    std::atomic<int> holders;
    std::atomic<int> overlaps;
    std::atomic<int> acquisitions;
  };
  void* memory =
      ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(memory, MAP_FAILED);
  Shared* shared = new (memory) Shared{};
  TempDir dir;
  std::string path = dir.File("X.LOK");

  auto contend = [&](Child&) {
    std::mt19937 random(static_cast<unsigned>(::getpid()));
    auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(2000);
    while (std::chrono::steady_clock::now() < until) {
      LockFile lock;
      if (lock.TryAcquire(path) == LockStatus::kAcquired) {
        shared->acquisitions++;
        if (shared->holders.fetch_add(1) != 0) shared->overlaps++;
        ::usleep(random() % 200);
        shared->holders.fetch_sub(1);
        if (random() % 4 != 0) lock.ReleaseAndRemove();
      } else {
        if (random() % 2 == 0) ::usleep(random() % 50);
      }
    }
    return 0;
  };
  {
    Child a(contend), b(contend), c(contend), d(contend), e(contend), f(contend);
    for (Child* child : {&a, &b, &c, &d, &e, &f}) EXPECT_EQ(child->Wait(), 0);
  }
  EXPECT_EQ(shared->overlaps.load(), 0);
  EXPECT_GT(shared->acquisitions.load(), 100);
  RecordProperty("acquisitions", shared->acquisitions.load());
  ::munmap(memory, sizeof(Shared));
}

}  // namespace
}  // namespace nv
