// The PC/FAS importer (the import window's command 102, nvtool import pcfas): the company
// header COMPANY1.FAS gives a new company its record and the matching panel its labels,
// and every active asset of MASTER.ASC beside it becomes an asset with its five books
// (import/pcfas/pcfas_convert.h) in the company's schedules.
#pragma once

#include <memory>
#include <string>

#include "import/frame/import_frame.h"
#include "import/pcfas/pcfas_source.h"

namespace nv {

inline constexpr char kPcFasWrongFileMessage[] = "You must select a file called COMPANY1.FAS";
inline constexpr char kPcFasNoAsciiMessage[] =
    "You must use PC/FAS to produce ASCII files\nbefore importing company ";
inline constexpr char kPcFasUnreadableMessage[] = "Unable to read PC/FAS company files.";

ImportDescriptor PcFasDescriptor();

class PcFasImporter : public Importer {
 public:
  PcFasImporter() : descriptor_(PcFasDescriptor()) {}
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool CheckSource(ImportRun& run) override;
  // The name of the folder that holds COMPANY1.FAS.
  std::string DefaultCompanyNumber(const ImportRun& run) const override;
  bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) override;
  bool Match(ImportRun& run) override;
  bool CopyAssets(ImportRun& run, AddStep& add) override;

 private:
  ImportDescriptor descriptor_;
  PcFasCompany company_;
  std::string master_path_;
};

std::unique_ptr<Importer> MakePcFasImporter();

}  // namespace nv
