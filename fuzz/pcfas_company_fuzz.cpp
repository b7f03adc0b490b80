// Reads arbitrary bytes as a PC/FAS company header (COMPANY1.FAS) and checks that what it
// gives stays within the header's slots.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "import/pcfas/pcfas_source.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::optional<nv::PcFasCompany> company = nv::ParsePcFasCompany(bytes);
  if (company.has_value() != (size >= nv::kPcFasHeaderSize)) std::abort();
  if (!company) return 0;
  if (company->name.size() > nv::kPcFasNameWidth) std::abort();
  if (company->round_dollars != (bytes[nv::kPcFasRoundDollarsOffset] == 'Y')) std::abort();
  for (size_t i = 0; i < company->labels.size(); ++i) {
    const std::string& label = company->labels[i];
    const nv::PcFasTextSlot& slot = nv::kPcFasLabelSlots[i];
    if (label.size() > slot.width || bytes.substr(slot.offset, label.size()) != label) std::abort();
    if (!label.empty() && label.back() == ' ') std::abort();
    if (label.find('\0') != std::string::npos) std::abort();
  }
  return 0;
}
