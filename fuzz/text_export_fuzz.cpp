// Reads the input as a company's block file and writes the whole-company text file from
// it: the walk in record-number order reads every block, those that no index names too.
//
// Input: one byte choosing the record type (its value modulo 4), then the block file.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "export/text_file_export.h"
#include "fuzz/scratch_company.h"
#include "store/file/block_chain.h"
#include "ui/scripted_ui.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 1) return 0;
  nv::InstallationContext ctx;
  ctx.run.product_name = "NORVANE";
  ctx.installation_folder = nv::fuzzing::ScratchFolder("company");
  ctx.current.slot.data_path = ctx.installation_folder;
  ctx.user_name = "FUZZER";

  nv::NvCompany company(ctx);
  if (nv::fuzz::PutCompanyFile(&company, "A", data + 1, size - 1).empty()) return 0;
  std::string errors;
  std::unique_ptr<nv::ScriptedUi> ui =
      nv::ScriptedUi::FromString("choose " + std::to_string(data[0] % 4) + "\n", &errors);
  nv::TextFileRequest request;
  request.folder = ctx.installation_folder;
  request.company_number = "FUZZ";
  request.file_name = "FUZZ.DBS";
  const nv::TextFileResult result = nv::WriteTextFile(ctx, request, *ui);
  // Every record counts once at most, and only blocks after the company record's first.
  const size_t blocks = (size - 1) / nv::kBlockLength;
  nv::fuzz::Check(result.copied + result.erroneous <= (blocks > 0 ? blocks - 1 : 0) ||
                  !result.written);
  return 0;
}
