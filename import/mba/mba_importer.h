// The MBA Software importer (the import window's command 108, nvtool import mba): reads the
// fixed-column export (import/mba/mba_source.h), numbers its IDs (mba_numbering.h) and
// adds every line as an asset (mba_convert.h) through the import frame.
//
// A new company gets the single schedule T, sort order "ACL", business category 1 and no
// global code lists. The copy names user field 1 "MBA Asset Status" and user field 2 "MBA
// Asset ID", and keeps the account groups that the lines' accounts call for in the
// company's account group file, which it reads before the first line that has an account
// and writes after the last line.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "import/frame/import_frame.h"
#include "import/mba/mba_source.h"

namespace nv {

inline constexpr char kMbaUnreadableMessage[] = "Unable to read the MBA file\n%s";
inline constexpr char kMbaNoAssetsMessage[] =
    "The file %s\nholds no asset lines.  Choose the text file\nthat MBA Software exported.";
inline constexpr char kMbaAccountGroupsNotSaved[] =
    "The assets were added, but their account groups\ncould not be written to %s.";

ImportDescriptor MbaDescriptor();

class MbaImporter final : public Importer {
 public:
  MbaImporter() : descriptor_(MbaDescriptor()) {}
  const ImportDescriptor& descriptor() const override { return descriptor_; }

  bool CheckSource(ImportRun& run) override;
  // The source file's name without its extension (the entry cuts it to 8 characters).
  std::string DefaultCompanyNumber(const ImportRun& run) const override;
  bool FillCompanyRecord(ImportRun& run, NvCompanyRecord& record) override;
  bool CopyAssets(ImportRun& run, AddStep& add) override;

 private:
  ImportDescriptor descriptor_;
  std::string bytes_;                 // the source file
  std::vector<MbaSourceLine> lines_;  // its asset lines, pointing into bytes_
};

std::unique_ptr<Importer> MakeMbaImporter();

}  // namespace nv
