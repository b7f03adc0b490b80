#include "shell/configuration.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <vector>

#include "base/ascii.h"
#include "base/comma_text.h"
#include "base/file.h"
#include "base/file_util.h"
#include "base/path.h"
#include "base/str_format.h"
#include "store/company/master_file.h"

namespace nv {
namespace {

constexpr int kSlotCount = 10;
constexpr unsigned long kMaxTerminalNumber = 999999;  // keeps "highest + 1" from wrapping

struct Header {
  std::string format;
  std::string folder;
  std::string third;
};

// The first line: exactly three fields, the line ending after the third.
std::optional<Header> ReadHeader(CommaTextReader& reader) {
  Header header;
  std::string* fields[] = {&header.format, &header.folder, &header.third};
  for (int i = 0; i < 3; ++i) {
    std::optional<std::string> field = reader.ReadField();
    if (!field) return std::nullopt;
    *fields[i] = std::move(*field);
    if (reader.line_ended() != (i == 2)) return std::nullopt;
  }
  return header;
}

bool IsNetworkFormat(std::string_view format) {
  return !format.empty() && format.back() == 'N';
}

unsigned ParseTerminalNumber(const std::string& text) {
  const long value = std::strtol(text.c_str(), nullptr, 10);
  if (value < 0) return 0;
  return static_cast<unsigned>(std::min<unsigned long>(value, kMaxTerminalNumber));
}

// "3" or "3B": the current slot (0 when it is not one of the ten) and the base flag.
void ParseCurrentSlot(const std::string& text, NvConfiguration* config) {
  const size_t last = text.find_last_not_of(" \t");
  config->base = last != std::string::npos && (text[last] == 'B' || text[last] == 'b');
  const long current = std::strtol(text.c_str(), nullptr, 10);
  config->current = current >= 0 && current < kSlotCount ? static_cast<int>(current) : 0;
}

std::string AsDataPath(std::string path) {
  return WithTrailingSeparator(std::move(path));
}

struct TerminalMatch {
  bool found = false;
  unsigned number = 0;   // the matched user's number
  unsigned highest = 0;  // highest number in the list
};

TerminalMatch FindTerminal(CommaTextReader& reader, const std::string& user_name, bool exact) {
  TerminalMatch match;
  while (std::optional<std::vector<std::string>> line = reader.ReadLine()) {
    if (line->size() < 2) continue;
    const unsigned number = ParseTerminalNumber((*line)[1]);
    match.highest = std::max(match.highest, number);
    const std::string& name = (*line)[0];
    if (exact ? name == user_name : EqualIgnoringCase(name, user_name)) {
      match.found = true;
      match.number = number;
      return match;
    }
  }
  return match;
}

// Appends the user's line to the terminal list. A list that lacks its last line end gets
// one first; a list closed by byte 26 gets the line before that mark, where readers see it.
bool AppendTerminalLine(const std::string& path, const std::string& user_name, unsigned number) {
  CommaTextWriter writer;
  writer.Text(user_name);
  writer.Number(static_cast<long>(number));
  writer.EndLine();
  std::string existing = ReadFileBytes(path).value_or(std::string());
  if (const size_t mark = existing.find(kEndOfFileMark); mark != std::string::npos) {
    std::string line = writer.text();
    if (mark > 0 && existing[mark - 1] != '\n') line.insert(0, "\r\n");
    existing.insert(mark, line);
    return WriteFileAtomically(path, existing);
  }
  std::optional<File> file = File::Open(path, File::Mode::kAppend);
  if (!file) return false;
  std::string line = writer.text();
  if (!existing.empty() && existing.back() != '\n') line.insert(0, "\r\n");
  const bool written = file->Append(line);
  return file->Close() == 0 && written;
}

// Reads the ten slot lines of a file whose header was read; `fields` is how many fields
// a complete slot line of this form has.
bool ReadSlots(CommaTextReader& reader, size_t fields, NvConfiguration* config) {
  for (int slot = 0; slot < kSlotCount; ++slot) {
    std::optional<std::vector<std::string>> line = reader.ReadLine();
    if (!line || line->size() < fields) return false;
    ConfigurationSlot& s = config->slots[slot];
    s.name = (*line)[0];
    s.data_path = AsDataPath((*line)[1]);
    s.enabled = fields < 3 || EqualIgnoringCase((*line)[2], "Y");
    s.options = fields >= 8 ? (*line)[7] : std::string();
  }
  return true;
}

}  // namespace

NvConfiguration DefaultConfiguration(const std::string& installation_folder) {
  NvConfiguration config;
  for (int slot = 0; slot < kSlotCount; ++slot) {
    config.slots[slot] = ConfigurationSlot{slot == 0 ? "Standard" : "Undefined",
                                           slot == 0 ? installation_folder : "", true, ""};
  }
  return config;
}

std::string TerminalFileName(const std::string& folder, unsigned number) {
  return StrPrintf("%sTERM.%3.3u", folder.c_str(), number);
}

ConfigurationFileForm ReadConfigurationFile(const std::string& path, NvConfiguration* config) {
  std::optional<CommaTextReader> reader = CommaTextReader::Open(path);
  if (!reader) return ConfigurationFileForm::kUnusable;
  std::optional<Header> header = ReadHeader(*reader);
  if (!header) return ConfigurationFileForm::kUnusable;
  NvConfiguration read;
  ParseCurrentSlot(header->third, &read);
  ConfigurationFileForm form;
  size_t fields;
  if (header->format.starts_with(kConfigurationVersion)) {
    form = ConfigurationFileForm::kCurrent;
    fields = 8;
  } else if (header->format == "6") {
    form = ConfigurationFileForm::kOlder;
    fields = 3;
    read.base = false;
  } else if (header->format == "0") {
    form = ConfigurationFileForm::kOlder;
    fields = 2;
    read.base = false;
  } else {
    return ConfigurationFileForm::kUnusable;
  }
  if (!ReadSlots(*reader, fields, &read)) return ConfigurationFileForm::kUnusable;
  *config = std::move(read);
  return form;
}

std::string FormatConfigurationFile(const std::string& installation_folder,
                                    const NvConfiguration& config) {
  CommaTextWriter writer;
  writer.Text(kSingleUserFormat);
  writer.Text(installation_folder);
  writer.Bare(std::to_string(config.current) + (config.base ? "B" : ""));
  writer.EndLine();
  for (const ConfigurationSlot& slot : config.slots) {
    writer.Text(slot.name);
    writer.Text(slot.data_path);
    writer.Text(slot.enabled ? "Y" : "N");
    writer.Text("C");
    writer.Number(31);
    writer.Number(113);
    writer.Number(111);
    writer.Text(slot.options);
    writer.EndLine();
  }
  return writer.text();
}

bool WriteConfigurationFile(const std::string& path, const std::string& installation_folder,
                            const NvConfiguration& config) {
  return WriteFileAtomically(path, FormatConfigurationFile(installation_folder, config));
}

int LoadConfiguration(InstallationContext* ctx, bool load_company_list, Ui& ui, int* exit_code) {
  const std::string& folder = ctx->installation_folder;
  ctx->configuration = DefaultConfiguration(folder);
  ctx->network_mode = false;

  // Which file holds this copy's configuration, and does it exist yet.
  const std::string terminal_file = PathIgnoringCase(folder, kTerminalFileName);
  int result = kConfigurationFound;
  std::string config_file = terminal_file;
  unsigned terminal = 0;
  if (std::optional<CommaTextReader> reader = CommaTextReader::Open(terminal_file); !reader) {
    result = kConfigurationCreated;
  } else {
    std::optional<Header> header = ReadHeader(*reader);
    if (!header) return kConfigurationMalformed;
    if (IsNetworkFormat(header->format)) {
      ctx->network_mode = true;
      const TerminalMatch match = FindTerminal(*reader, ctx->user_name, ctx->exact_name_match);
      terminal = match.found ? match.number : match.highest + 1;
      config_file = PathIgnoringCase(folder, TerminalFileName("", terminal));
      if (!match.found) {
        result = kTerminalAdded;
      } else if (std::optional<CommaTextReader> own = CommaTextReader::Open(config_file); !own) {
        result = kTerminalAdded;  // listed, but the file is gone: list and write it anew
      } else if (!ReadHeader(*own)) {
        return kConfigurationMalformed;
      }
    }
  }

  NvConfiguration config = DefaultConfiguration(folder);
  if (result == kConfigurationFound) {
    const ConfigurationFileForm form = ReadConfigurationFile(config_file, &config);
    if (form != ConfigurationFileForm::kCurrent) {
      if (form == ConfigurationFileForm::kUnusable) config = DefaultConfiguration(folder);
      if (ctx->configuration_locked) {
        ui.Message(kRewriteLockedMessage, "Program Error");
        *exit_code = kLockedExitCode;
        return kConfigurationMalformed;
      }
      // A file that cannot be written still leaves this run its configuration.
      WriteConfigurationFile(config_file, folder, config);
    }
    if (ctx->network_mode && config.base) {
      // The shared base configuration supplies the slots; a user never writes it.
      NvConfiguration base;
      const std::string base_file = PathIgnoringCase(folder, kBaseConfigurationName);
      if (ReadConfigurationFile(base_file, &base) == ConfigurationFileForm::kUnusable) {
        base = DefaultConfiguration(folder);
      }
      config.slots = base.slots;
    }
  } else {
    if (ctx->configuration_locked) {
      ui.Message(kWriteLockedMessage, "Program Error");
      *exit_code = kLockedExitCode;
      return kConfigurationMalformed;
    }
    if (result == kTerminalAdded) AppendTerminalLine(terminal_file, ctx->user_name, terminal);
    WriteConfigurationFile(config_file, folder, config);
  }
  ctx->configuration = config;

  ctx->current = CurrentConfiguration{};
  ctx->current.slot = config.slots[config.current];
  ctx->current.subfolders = ctx->current.slot.options.find('S') != std::string::npos;
  if (load_company_list) {
    // An empty data path (an undefined slot) must not fall back on the working directory.
    MasterFile master;
    const std::string& data_path = ctx->current.slot.data_path;
    if (data_path.empty() || ReadMasterFile(data_path, &master) != MasterFileStatus::kOk) {
      ui.Message(kMasterFileMessage, "Error");
      return kMasterFileFailed;
    }
    ctx->current.subfolders = master.subfolders;
    ctx->current.companies = std::move(master.companies);
  }
  return result;
}

}  // namespace nv
