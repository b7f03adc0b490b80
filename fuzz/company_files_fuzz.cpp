// Reads the input as the three files of a company (block file, asset-number index, sort
// index) and goes through everything that reads them: open, both walks, the whole check.
// Then the same files are opened for writing after an interrupted run, which rebuilds the
// free list and the indexes; a company that opened that way must check clean.
//
// Input: u16 length of the block file, u16 length of the .I1 file, then the block file,
// the .I1 file and, in what remains, the .I2 file.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include "base/coding.h"
#include "base/file_util.h"
#include "fuzz/scratch_company.h"
#include "store/asset/asset.h"
#include "store/company/company_check.h"
#include "store/file/status.h"
#include "ui/scripted_ui.h"

namespace {

using nv::NvCompany;

nv::InstallationContext Context() {
  nv::InstallationContext ctx;
  ctx.run.product_name = "NORVANE";
  ctx.installation_folder = nv::fuzzing::ScratchFolder("company");
  ctx.current.slot.data_path = ctx.installation_folder;
  ctx.user_name = "FUZZER";
  return ctx;
}

void Walk(NvCompany& company, nv::AssetOrder order) {
  company.ResetAssetWalk();
  nv::NvAsset asset;
  // Walks end by themselves; the bound only keeps a slow input short.
  for (int i = 0; i < 5000; ++i) {
    if (company.NextAsset(order, &asset) != nv::kOk || asset.record_number == 0) break;
  }
}

}  // namespace

// Statuses dropped with static_cast<void> are dropped on purpose: on arbitrary bytes any
// outcome is fine; only crashes, hangs and the checks count.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 4) return 0;
  const size_t a_size = std::min<size_t>(nv::DecodeU16(data), size - 4);
  const size_t i1_size = std::min<size_t>(nv::DecodeU16(data + 2), size - 4 - a_size);
  const uint8_t* a = data + 4;
  const uint8_t* i1 = a + a_size;
  const uint8_t* i2 = i1 + i1_size;
  const size_t i2_size = size - 4 - a_size - i1_size;

  const nv::InstallationContext ctx = Context();
  std::string errors;
  std::unique_ptr<nv::ScriptedUi> ui = nv::ScriptedUi::FromString("", &errors);
  NvCompany company(ctx);
  nv::fuzz::PutCompanyFile(&company, "A", a, a_size);
  nv::fuzz::PutCompanyFile(&company, "I1", i1, i1_size);
  nv::fuzz::PutCompanyFile(&company, "I2", i2, i2_size);

  constexpr int kBoth = NvCompany::kOpenI1 | NvCompany::kOpenI2;
  if (company.Open("FUZZ", kBoth | NvCompany::kReadOnly, *ui) == 1) {
    Walk(company, nv::AssetOrder::kNumber);
    Walk(company, nv::AssetOrder::kSort);
    nv::CheckCompany(company);
    static_cast<void>(company.Close());
  }

  // An interrupted run: the next open for writing repairs the company.
  const std::string marker = company.FilePath(nv::kChangingMarkerExtension);
  static_cast<void>(nv::WriteFileAtomically(marker, ""));
  if (company.Open("FUZZ", kBoth, *ui) == 1 && company.Close() == 0 &&
      company.Open("FUZZ", kBoth | NvCompany::kReadOnly, *ui) == 1) {
    nv::CompanyCheck check = nv::CheckCompany(company);
    nv::fuzz::Check(check.problems.empty());
    static_cast<void>(company.Close());
  }
  // The open for writing took the company's lock; closed or failed, it let go of it.
  nv::fuzz::Check(!company.is_open() && ::access(company.FilePath("LOK").c_str(), F_OK) != 0);
  for (const char* ext : {"A", "I1", "I2", "DTY", "ini", "LOG"}) {
    std::remove(company.FilePath(ext).c_str());
  }
  return 0;
}
