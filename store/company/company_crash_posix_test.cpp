// A run of adds killed at random moments: afterwards the company opens, its check finds no
// problem, and every asset whose add had returned reads back. A run killed between two
// operations leaves a company that reads whole without any repair.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "store/company/asset_testing.h"
#include "store/company/company_check.h"
#include "store/file/status.h"
#include "store/store_testing.h"
#include "ui/scripted_ui_testing.h"

namespace nv {
namespace {

using testing::ContextFor;
using testing::MakeAsset;
using testing::TwoBookCompany;

constexpr int kKills = 60;

// The child: adds assets from `first` on and reports each returned add on the pipe.
[[noreturn]] void AddForever(NvCompany& company, long first, int report_fd) {
  for (long n = first;; ++n) {
    NvAsset asset = MakeAsset(company.record(), n);
    if (company.AddAsset(&asset) != kOk) _exit(4);
    int32_t reported = static_cast<int32_t>(n);
    if (write(report_fd, &reported, sizeof reported) != sizeof reported) _exit(5);
  }
}

class CompanyCrashTest : public ::testing::Test {
 protected:
  void SetUp() override {
    NvCompany company(ctx_);
    company.record() = TwoBookCompany();
    ASSERT_EQ(company.Create({"CRASH", "Crash Co"}, NvCompany::kOpenI1 | NvCompany::kOpenI2), 0);
  }

  // Starts a writer process: it opens the company for writing and hands it to `work` with
  // the write end of a pipe, whose read end *report_fd receives. `work` never returns.
  template <typename Work>
  pid_t StartWriter(Work work, int* report_fd) {
    int fds[2];
    if (pipe(fds) != 0) return -1;
    pid_t child = fork();
    if (child == 0) {
      close(fds[0]);
      auto ui = testing::Script("");
      NvCompany company(ctx_);
      if (company.Open("CRASH", NvCompany::kOpenI1 | NvCompany::kOpenI2, *ui) != 1) _exit(3);
      work(company, fds[1]);
    }
    close(fds[1]);
    *report_fd = fds[0];
    return child;
  }

  // Kills the writer and returns its wait status.
  static int Kill(pid_t child) {
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  }

  testing::TempDir dir_;
  const InstallationContext ctx_ = ContextFor(dir_.path());
};

TEST_F(CompanyCrashTest, KilledAddsLoseNothingThatReturned) {
  std::mt19937 random(20261123);
  std::set<long> returned;
  long next = 1;
  for (int round = 0; round < kKills; ++round) {
    int report = -1;
    pid_t child =
        StartWriter([next](NvCompany& company, int fd) { AddForever(company, next, fd); }, &report);
    ASSERT_GE(child, 0);
    std::this_thread::sleep_for(std::chrono::microseconds(500 + random() % 20000));
    const int status = Kill(child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself with " << WEXITSTATUS(status);
    int32_t n = 0;
    while (read(report, &n, sizeof n) == sizeof n) {
      returned.insert(n);
      next = std::max<long>(next, n + 1);
    }
    close(report);
    // The add in flight may have come back whole; start the next run past it.
    next += 1;

    auto ui = testing::Script("");
    NvCompany company(ctx_);
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

// Asset n in the form `variant` gives it; every third form carries long user fields, so
// that a replace grows or shrinks the asset's chain.
NvAsset Variant(const NvCompanyRecord& company, long n, int variant) {
  NvAsset asset = MakeAsset(company, n, variant);
  if (variant % 3 == 0) {
    for (std::string& field : asset.user_fields) field = std::string(20, char('a' + variant % 26));
  }
  return asset;
}

// Number of each asset -> its variant.
using Assets = std::map<long, int>;

// A batch of adds, replaces (new sort fields, a longer or shorter chain) and deletes drawn
// from `random`. With a company it carries them out (false when one fails); without, it
// only follows them in `assets`, the same way.
bool RunBatch(std::mt19937& random, long* next_number, Assets* assets, NvCompany* company) {
  const int operations = 20 + static_cast<int>(random() % 150);
  for (int i = 0; i < operations; ++i) {
    const unsigned kind = random() % 10;
    if (kind < 6 || assets->size() < 5) {
      const long n = (*next_number)++;
      const int variant = static_cast<int>(random() % 30);
      (*assets)[n] = variant;
      if (company == nullptr) continue;
      NvAsset asset = Variant(company->record(), n, variant);
      if (company->AddAsset(&asset) != kOk) return false;
      continue;
    }
    auto it = std::next(assets->begin(), static_cast<long>(random() % assets->size()));
    const long n = it->first;
    if (kind < 8) {
      const int variant = static_cast<int>(random() % 30);
      it->second = variant;
      if (company == nullptr) continue;
      NvAsset asset;
      if (company->FindAsset(MakeAsset(company->record(), n).number.Text(), &asset) != kOk) {
        return false;
      }
      NvAsset changed = Variant(company->record(), n, variant);
      changed.record_number = asset.record_number;
      changed.stored_number_key = asset.stored_number_key;
      changed.stored_sort_key = asset.stored_sort_key;
      if (company->ReplaceAsset(&changed) != kOk) return false;
    } else {
      assets->erase(it);
      if (company == nullptr) continue;
      NvAsset asset;
      if (company->FindAsset(MakeAsset(company->record(), n).number.Text(), &asset) != kOk ||
          company->DeleteAsset(asset) != kOk) {
        return false;
      }
    }
  }
  return true;
}

// Each round a writer runs a batch and is killed while it waits before the next operation.
// A read-only open, which repairs nothing, must then see exactly the assets of the batches,
// and the check must find no problem. The marker is removed before the next writer, as the
// main program knows nothing of it: the counters on disk must be right for it to go on.
TEST_F(CompanyCrashTest, KilledBetweenOperationsReadsWholeWithoutRepair) {
  constexpr int kRounds = 12;
  std::mt19937 random(20261124);
  Assets assets;
  long next_number = 1;
  for (int round = 0; round < kRounds; ++round) {
    SCOPED_TRACE(round);
    int report = -1;
    pid_t child = StartWriter(
        [&, batch_random = random](NvCompany& company, int fd) mutable {
          if (!RunBatch(batch_random, &next_number, &assets, &company)) _exit(4);
          const char done = 1;
          if (write(fd, &done, 1) != 1) _exit(5);
          for (;;) pause();
        },
        &report);
    ASSERT_GE(child, 0);
    char done = 0;
    const bool reported = read(report, &done, 1) == 1;
    close(report);
    const int status = Kill(child);
    ASSERT_TRUE(reported) << "the writer failed with " << WEXITSTATUS(status);
    RunBatch(random, &next_number, &assets, nullptr);

    auto ui = testing::Script("");
    NvCompany company(ctx_);
    ASSERT_EQ(
        company.Open("CRASH", NvCompany::kOpenI1 | NvCompany::kOpenI2 | NvCompany::kReadOnly, *ui),
        1);
    ASSERT_TRUE(std::filesystem::exists(company.FilePath(kChangingMarkerExtension)))
        << "the writer closed the company before it was killed";
    CompanyCheck check = CheckCompany(company);
    ASSERT_TRUE(check.problems.empty()) << check.problems[0];
    EXPECT_EQ(check.assets, assets.size());
    for (const auto& [n, variant] : assets) {
      NvAsset found;
      ASSERT_EQ(company.FindAsset(MakeAsset(company.record(), n).number.Text(), &found), kOk)
          << "asset " << n;
      const NvAsset expected = Variant(company.record(), n, variant);
      EXPECT_EQ(found.description, expected.description);
      EXPECT_EQ(found.user_fields, expected.user_fields);
    }
    for (AssetOrder order : {AssetOrder::kNumber, AssetOrder::kSort}) {
      company.ResetAssetWalk();
      size_t walked = 0;
      NvAsset asset;
      while (company.NextAsset(order, &asset) == kOk && asset.record_number != 0) ++walked;
      EXPECT_EQ(walked, assets.size());
    }
    ASSERT_TRUE(std::filesystem::remove(company.FilePath(kChangingMarkerExtension)));
  }
}

}  // namespace
}  // namespace nv
