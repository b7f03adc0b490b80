// A run of adds killed at random moments: afterwards the company opens, its check finds no
// problem, and every asset whose add had returned reads back.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <random>
#include <set>
#include <thread>

#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::MakeAsset;
using testing::TwoBookCompany;

constexpr int kKills = 60;

std::unique_ptr<ScriptedUi> NoAnswers() {
  std::string errors;
  return ScriptedUi::FromString("", &errors);
}

// The child: adds assets from `first` on and reports each returned add on the pipe.
[[noreturn]] void AddForever(const InstallationContext& ctx, long first, int report_fd) {
  auto ui = NoAnswers();
  NvCompany company(ctx);
  if (company.Open("CRASH", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui) != 1) _exit(3);
  for (long n = first;; ++n) {
    NvAsset asset = MakeAsset(company.record(), n);
    if (company.AddAsset(&asset) != kOk) _exit(4);
    int32_t reported = static_cast<int32_t>(n);
    if (write(report_fd, &reported, sizeof reported) != sizeof reported) _exit(5);
  }
}

TEST(CompanyCrashTest, KilledAddsLoseNothingThatReturned) {
  testing::TempDir dir;
  const InstallationContext ctx = ContextFor(dir.path());
  {
    NvCompany company(ctx);
    company.record() = TwoBookCompany();
    ASSERT_EQ(company.Create({"CRASH", "Crash Co"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  }
  std::mt19937 random(20261123);
  std::set<long> returned;
  long next = 1;
  for (int round = 0; round < kKills; ++round) {
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      close(fds[0]);
      AddForever(ctx, next, fds[1]);
    }
    close(fds[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(500 + random() % 20000));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself with " << WEXITSTATUS(status);
    int32_t n = 0;
    while (read(fds[0], &n, sizeof n) == sizeof n) {
      returned.insert(n);
      next = std::max<long>(next, n + 1);
    }
    close(fds[0]);
    // The add in flight may have come back whole; start the next run past it.
    next += 1;

    auto ui = NoAnswers();
    NvCompany company(ctx);
    ASSERT_EQ(company.Open("CRASH", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui), 1);
    ASSERT_EQ(company.Close(), 0);
    ASSERT_EQ(
        company.Open("CRASH", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly, *ui),
        1);
    CompanyCheck check = CheckCompany(company);
    ASSERT_TRUE(check.problems.empty()) << "after kill " << round << ": " << check.problems[0];
    ASSERT_GE(check.assets, returned.size());
    for (long r : returned) {
      NvAsset expected = MakeAsset(company.record(), r);
      NvAsset found;
      ASSERT_EQ(company.FindAsset(expected.number.Text(), &found), kOk) << "asset " << r;
      EXPECT_EQ(found.description, expected.description);
    }
  }
  EXPECT_GT(returned.size(), 100u) << "the runs were too short to mean anything";
}

}  // namespace
}  // namespace nv
