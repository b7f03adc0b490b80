// Reads arbitrary bytes as a comma-separated installation file, field by field and line
// by line, and checks that every field fits and that written fields read back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "base/comma_text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);

  nv::CommaTextReader fields(text);
  size_t count = 0;
  while (std::optional<std::string> field = fields.ReadField()) {
    if (field->size() > nv::kMaxCommaField) std::abort();
    if (++count > size + 1) std::abort();  // every field consumes at least one byte
  }
  if (!fields.at_end()) std::abort();

  nv::CommaTextReader lines(text);
  nv::CommaTextWriter writer;
  std::vector<std::vector<std::string>> read;
  while (std::optional<std::vector<std::string>> line = lines.ReadLine()) {
    for (const std::string& field : *line) writer.Text(field);
    writer.EndLine(58);
    read.push_back(std::move(*line));
  }

  // The writer's quoting keeps what the reader can hold, minus the characters it replaces.
  nv::CommaTextReader again(writer.text());
  for (const std::vector<std::string>& expected : read) {
    std::optional<std::vector<std::string>> line = again.ReadLine();
    if (!line || line->size() != expected.size()) std::abort();
    for (size_t i = 0; i < expected.size(); ++i) {
      const std::string& a = expected[i];
      const std::string& b = (*line)[i];
      if (a.size() != b.size()) std::abort();
      for (size_t j = 0; j < a.size(); ++j) {
        const bool replaced = a[j] == '"' || a[j] == '\r' || a[j] == '\n' || a[j] == 26;
        if (!replaced && a[j] != b[j]) std::abort();
      }
    }
  }
  return 0;
}
